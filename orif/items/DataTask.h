// DataTask, the item for a task.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// The status of one entry in the task list of the controller, as the last refresh of the table
/// brought it. Read only. Register it with DataTable::AddTask.
class ORIF_EXPORT DataTask : public DataItem {
 public:
  /// The number of the entry in the task list, from 1 on. Programs that the kind of the item leaves
  /// out are not counted.
  std::int32_t Index() const noexcept;

  /// The status at the last refresh: the program that runs, its current line, its state and the
  /// program that called it. `State` is the number that the controller gives it. A name that fills
  /// its 16 characters is read on into the words behind it.
  ///
  /// Returns false if the item is invalid, if the last refresh of the table failed or none was
  /// made, and if the item begins at word 16361 or above, because the names are read 8 words past
  /// its end. What could be read is written all the same.
  bool GetValue(std::string& ProgName, std::int16_t& LineNumber, std::int16_t& State,
                std::string& ParentProgName) noexcept;

 protected:
  DataTask() = default;
};

}  // namespace orif

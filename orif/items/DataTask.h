// The status of one entry of the controller's task list at the table's last refresh: the program
// that runs there, its line, its state and the program that called it; read only. Registered with
// DataTable::AddTask.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataTask : public DataItem {
 public:
  /// The position in the task list, from 1 on, counted without the programs that the item's kind
  /// leaves out.
  std::int32_t Index() const noexcept;

  /// The status at the last refresh. `State` is the controller's number. A name of exactly 16
  /// characters brings the words behind it along. False for an invalid item, before a
  /// good refresh, and for a block that begins at word 16361 or above: the names are read 8 words
  /// past the block. What could be read is written.
  bool GetValue(std::string& ProgName, std::int16_t& LineNumber, std::int16_t& State,
                std::string& ParentProgName) noexcept;

 protected:
  DataTask() = default;
};

}  // namespace orif

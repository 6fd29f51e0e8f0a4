// DataCurPos, the item for the current position.
#pragma once

#include <cstdint>

#include "orif/items/SinglePosition.h"
#include "orif/orif_export.h"

namespace orif {

/// The current position of one motion group, as the last refresh of the table brought it. Read
/// only. Register it with DataTable::AddCurPos or AddCurPosUF; read it with the members of
/// SinglePosition.
class ORIF_EXPORT DataCurPos : public SinglePosition {
 public:
  /// The number of the motion group, 1 or more.
  std::int32_t Group() const noexcept;

 protected:
  DataCurPos() = default;
};

}  // namespace orif

// The current position of one motion group, as it was at the table's last refresh; read only.
// Registered with DataTable::AddCurPos or AddCurPosUF. Shapes and units: PositionRecord.h.
#pragma once

#include <cstdint>

#include "orif/items/SinglePosition.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataCurPos : public SinglePosition {
 public:
  /// The motion group, from 1 on.
  std::int32_t Group() const noexcept;

 protected:
  DataCurPos() = default;
};

}  // namespace orif

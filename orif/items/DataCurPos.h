// The current position of one motion group, as it was at the table's last refresh; read only.
// Registered with DataTable::AddCurPos or AddCurPosUF. Shapes and units: PositionItem.h.
#pragma once

#include <cstdint>

#include "orif/items/SinglePosition.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataCurPos : public SinglePosition {
 public:
  /// The motion group, from 1 on.
  std::int32_t Group() const noexcept { return group_; }

 protected:
  friend class orif::DataTable;

  DataCurPos() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t UF = 0) noexcept;

 private:
  std::string Designation() const override;

  std::int32_t group_ = 0;
  std::int32_t userFrame_ = 0;
};

}  // namespace orif

// CurPos, the private part of a DataCurPos.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/DataCurPos.h"
#include "orif/items/PositionItem.h"
#include "orif/items/SingleRecord.h"

namespace orif {

struct CurPos final : SingleRecord<Hidden<DataCurPos, PositionItem>> {
  CurPos() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t UF) noexcept;
  std::string Designation() const override;

  std::int32_t group = 0;
  std::int32_t userFrame = 0;
};

}  // namespace orif

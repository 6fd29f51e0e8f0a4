// PosReg, the private part of a DataPosReg.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/DataPosReg.h"
#include "orif/items/PositionItem.h"
#include "orif/items/RegisterRange.h"

namespace orif {

struct PosReg final : Hidden<DataPosReg, WritablePositionItem> {
  PosReg() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t StartIndex,
            std::int32_t EndIndex) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;
  std::int32_t RecordAddress(std::int32_t index) const override;

  RegisterRange range;
};

}  // namespace orif

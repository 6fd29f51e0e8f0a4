// PosRegXyzwpr, the private part of a DataPosRegXyzwpr.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orif/items/BlockItem.h"
#include "orif/items/DataPosRegXyzwpr.h"
#include "orif/items/RegisterRange.h"

namespace orif {

struct PosRegXyzwpr final : Hidden<DataPosRegXyzwpr, BlockItem> {
  PosRegXyzwpr() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t StartIndex,
            std::int32_t EndIndex) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;

  RegisterRange range;
  PendingRange pending;
  /// Nine a register.
  std::vector<float> xyzwpr;
  /// Seven a register.
  std::vector<std::int16_t> config;
};

}  // namespace orif

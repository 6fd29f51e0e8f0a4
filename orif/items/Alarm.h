// Alarm, the private part of a DataAlarm.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/BlockItem.h"
#include "orif/items/DataAlarm.h"

namespace orif {

struct Alarm final : Hidden<DataAlarm, BlockItem> {
  Alarm() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
            std::int32_t AlarmMessageMode) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;

  std::int32_t count = 0;
  std::int32_t messageMode = 0;
};

}  // namespace orif

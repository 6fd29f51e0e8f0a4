// Task, the private part of a DataTask.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/BlockItem.h"
#include "orif/items/DataTask.h"

namespace orif {

struct Task final : Hidden<DataTask, BlockItem> {
  Task() noexcept : Hidden("DataTask", {}) {}
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t Index) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;

  std::int32_t index = 0;
};

}  // namespace orif

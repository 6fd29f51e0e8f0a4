// String, the private part of a DataString.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orif/items/BlockItem.h"
#include "orif/items/DataString.h"
#include "orif/items/IndexRange.h"

namespace orif {

struct String final : Hidden<DataString, BlockItem> {
  String() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::string_view DataSymbol, std::int32_t StartIndex,
            std::int32_t EndIndex) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;
  bool Covers(std::int32_t index) const noexcept;

  std::string symbol;
  IndexRange texts;
  PendingRange pending;
  /// One more than the texts need.
  std::vector<std::int16_t> words;
};

}  // namespace orif

// NumReg, the private part of a DataNumReg.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/BlockItem.h"
#include "orif/items/DataNumReg.h"
#include "orif/items/IndexRange.h"

namespace orif {

struct NumReg final : Hidden<DataNumReg, BlockItem> {
  NumReg() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t StartIndex, std::int32_t EndIndex) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;

  bool Covers(std::int32_t index) const noexcept;
  bool CoversRun(std::int32_t index, std::int32_t count) const;
  std::int32_t Address(std::int32_t index) const;
  template <class T>
  bool Write(const Trail<Item>& trail, std::int32_t address, ArrayView<const T> values,
             std::int32_t count);
  template <class T>
  bool WriteCopy(const Trail<Item>& trail, std::int32_t index, const Variant& value,
                 std::int32_t count);
  template <class T>
  bool SetRun(std::string_view member, std::int32_t index, ArrayView<const T> values,
              std::int32_t count) noexcept;

  IndexRange registers;
};

}  // namespace orif

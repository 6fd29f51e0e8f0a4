// A range of the controller's numeric registers, carried as integers or as reals. Values are those
// of the table's last refresh; the setters write to the controller at once, and what they write is
// seen after the next refresh. Registered with DataTable::AddNumReg.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/base/Variant.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataNumReg : public DataItem {
 public:
  /// The number of the first and of the last register of the range.
  std::int32_t StartIndex() const noexcept;
  std::int32_t EndIndex() const noexcept;

  /// The value of register `Index` at the last refresh, as a 32-bit integer or real by the item's
  /// kind. False, with `Value` untouched, for an index outside the range, an invalid item, or
  /// before a good refresh.
  bool GetValue(std::int32_t Index, Variant& Value) noexcept;

  /// Writes register `Index`. False for an index outside the range, an invalid item, a value that
  /// does not convert to the item's kind, without a connection, and when the controller refuses.
  bool SetValue(std::int32_t Index, const Variant& Value) noexcept;

  /// Writes `Count` registers from `Index` on with the elements of the array in `Value`, from its
  /// lower bound: an array of 32-bit integers or reals, as the item's kind is, of `Count` elements
  /// (1 or more) or more. False as for SetValue.
  bool SetValues(std::int32_t Index, const Variant& Value, std::int32_t Count) noexcept;

  /// Writes `Count` registers from `Index` on with the first elements of `Value`, `Count` or more.
  /// Each serves its own kind of item only. A `Count` of 0 or less is handed on for the controller
  /// to refuse. False as for SetValue.
  bool SetValuesInt(std::int32_t Index, ArrayView<const std::int32_t> Value,
                    std::int32_t Count) noexcept;
  bool SetValuesReal(std::int32_t Index, ArrayView<const float> Value, std::int32_t Count) noexcept;

 protected:
  DataNumReg() = default;
};

}  // namespace orif

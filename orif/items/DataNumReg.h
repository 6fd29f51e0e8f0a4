// DataNumReg, the item for numeric registers.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/base/Variant.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// A range of the numeric registers of the controller, as integers or as reals. Register it with
/// DataTable::AddNumReg. Reads take their value from the last refresh of the table; writes go to
/// the controller at once, and a read shows them after the next refresh.
class ORIF_EXPORT DataNumReg : public DataItem {
 public:
  /// The number of the first register of the range.
  std::int32_t StartIndex() const noexcept;

  /// The number of the last register of the range.
  std::int32_t EndIndex() const noexcept;

  /// The value of register `Index` at the last refresh: a 32-bit integer for NUMREG_INT, a 32-bit
  /// real for NUMREG_REAL. Returns false, with `Value` untouched, if `Index` is outside the range,
  /// if the item is invalid, if the last refresh of the table failed or none was made, and after
  /// Core::Disconnect.
  bool GetValue(std::int32_t Index, Variant& Value) noexcept;

  /// Writes `Value` to register `Index`, converted to the kind of the item: to a 32-bit integer,
  /// halves to the even number, or to a 32-bit real. Returns false if `Index` is outside the range,
  /// if the item is invalid, if the value does not convert, after Core::Disconnect, and if the
  /// controller refuses, for example because it is not connected.
  bool SetValue(std::int32_t Index, const Variant& Value) noexcept;

  /// Writes `Count` (1 or more) registers from `Index` on with the first `Count` elements of the
  /// array in `Value`, whatever its lower bound. It must be an array of 32-bit integers for
  /// NUMREG_INT, of 32-bit reals for NUMREG_REAL. Returns false if there are fewer elements, for
  /// another kind of value, and in the cases of SetValue.
  bool SetValues(std::int32_t Index, const Variant& Value, std::int32_t Count) noexcept;

  /// Writes `Count` registers from `Index` on with the first elements of `Value`, whatever its
  /// lower bound. For an item of kind NUMREG_INT only. A `Count` of 0 or less is handed on for the
  /// controller to refuse. Returns false if `Value` is empty or has fewer than `Count` elements,
  /// for an item of another kind, and in the cases of SetValue.
  bool SetValuesInt(std::int32_t Index, ArrayView<const std::int32_t> Value,
                    std::int32_t Count) noexcept;

  /// Writes `Count` registers from `Index` on. As SetValuesInt, but for an item of kind
  /// NUMREG_REAL.
  bool SetValuesReal(std::int32_t Index, ArrayView<const float> Value, std::int32_t Count) noexcept;

 protected:
  DataNumReg() = default;
};

}  // namespace orif

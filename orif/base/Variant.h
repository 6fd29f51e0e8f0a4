// Variant, the type in which items give and take values.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "orif/base/ArrayView.h"
#include "orif/orif_export.h"

namespace orif {

/// A value whose type is known at run time: empty, a boolean, a 16-bit or 32-bit integer, a 32-bit
/// or 64-bit real, a text, or an array of 32-bit integers or 32-bit reals with its own lower bound.
/// It converts by the rules of automation; an empty value converts to 0, False and an empty text.
class ORIF_EXPORT Variant {
 public:
  /// An array as a value. `T` is std::int32_t or float.
  template <class T>
  struct Array {
    std::vector<T> elements;                        ///< the elements, first one first
    std::int32_t lowerBound = 0;                    ///< the index of the first element, any number
    bool operator==(const Array&) const = default;  ///< compares elements and bounds
  };

  // NOLINTBEGIN(google-explicit-constructor, hicpp-explicit-conversions): meant to convert
  /// The empty value.
  Variant() = default;

  /// A boolean.
  Variant(std::same_as<bool> auto value) : value_(value) {}

  /// A 16-bit integer.
  Variant(std::int16_t value) : value_(value) {}

  /// A 32-bit integer.
  Variant(std::int32_t value) : value_(value) {}

  /// A 32-bit real.
  Variant(float value) : value_(value) {}

  /// A 64-bit real.
  Variant(double value) : value_(value) {}

  /// A text: bytes in the narrow code page of the system.
  Variant(std::string value) : value_(std::move(value)) {}

  /// A copy of a text.
  Variant(std::string_view value) : value_(std::string(value)) {}

  /// A copy of a text that ends at its zero byte; not null.
  Variant(const char* value) : value_(std::string(value)) {}

  /// An array of 32-bit integers; its first element has the index `lowerBound`.
  Variant(std::vector<std::int32_t> elements, std::int32_t lowerBound = 0)
      : value_(Array<std::int32_t>{std::move(elements), lowerBound}) {}

  /// An array of 32-bit reals; its first element has the index `lowerBound`.
  Variant(std::vector<float> elements, std::int32_t lowerBound = 0)
      : value_(Array<float>{std::move(elements), lowerBound}) {}
  // NOLINTEND(google-explicit-constructor, hicpp-explicit-conversions)

  /// Whether the value has exactly the type `T`: std::monostate (empty), bool, std::int16_t,
  /// std::int32_t, float, double, std::string, Array<std::int32_t> or Array<float>.
  template <class T>
  bool Is() const {
    return std::holds_alternative<T>(value_);
  }

  /// Whether the value is a boolean, an integer or a real. Text is not, even if it reads as a
  /// number.
  bool IsNumeric() const;

  /// The value as a 32-bit integer. Halves round to the even number, text is read as a number, True
  /// is -1, empty is 0. Throws a Fault: "Overflow" out of range, "Type mismatch" for other text and
  /// for arrays.
  std::int32_t ToInt32() const;

  /// The value as a 32-bit real. Throws a Fault as ToInt32.
  float ToFloat() const;

  /// The value as a 64-bit real. Throws a Fault as ToInt32.
  double ToDouble() const;

  /// The value as a boolean: "True" and "False" are read in any case, and a number is true unless
  /// it is 0. Throws a Fault as ToInt32.
  bool ToBoolean() const;

  /// The value as text: "True" or "False", integers in decimal, reals with 7 (32-bit) or 15
  /// (64-bit) significant digits. Throws a Fault, "Type mismatch", for arrays.
  std::string ToText() const;

  /// The array of `T` (std::int32_t or float) with its bounds; it refers to the elements of this
  /// value. Throws a Fault, "Type mismatch", if the value is anything else.
  template <class T>
  ArrayView<const T> ToArray() const;

  /// Whether type and value are the same.
  bool operator==(const Variant&) const = default;

 private:
  std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, double, std::string,
               Array<std::int32_t>, Array<float>>
      value_;
};

extern template ArrayView<const std::int32_t> Variant::ToArray<std::int32_t>() const;
extern template ArrayView<const float> Variant::ToArray<float>() const;

}  // namespace orif

// A value whose type is known at run time: empty, a boolean, a 16-bit or 32-bit integer, a 32-bit
// or 64-bit real, a text, or an array of 32-bit integers or reals with its own lower bound. Items
// hand out and take values in it. It converts as automation does; an empty value converts to 0,
// False and an empty text.
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

class ORIF_EXPORT Variant {
 public:
  /// An array as a value; its first element has the index `lowerBound`.
  template <class T>
  struct Array {
    std::vector<T> elements;                        ///< of std::int32_t or float
    std::int32_t lowerBound = 0;                    ///< any number
    bool operator==(const Array&) const = default;  ///< bounds and elements
  };

  // NOLINTBEGIN(google-explicit-constructor, hicpp-explicit-conversions): meant to convert
  /// The empty value, and a value of exactly the type that is given; a text is copied.
  Variant() = default;
  Variant(std::same_as<bool> auto value) : value_(value) {}
  Variant(std::int16_t value) : value_(value) {}
  Variant(std::int32_t value) : value_(value) {}
  Variant(float value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(std::vector<std::int32_t> elements, std::int32_t lowerBound = 0)
      : value_(Array<std::int32_t>{std::move(elements), lowerBound}) {}
  Variant(std::vector<float> elements, std::int32_t lowerBound = 0)
      : value_(Array<float>{std::move(elements), lowerBound}) {}
  // NOLINTEND(google-explicit-constructor, hicpp-explicit-conversions)

  /// Whether the value is of exactly the type `T`: std::monostate (empty), bool, std::int16_t,
  /// std::int32_t, float, double, std::string, Array<std::int32_t> or Array<float>.
  template <class T>
  bool Is() const {
    return std::holds_alternative<T>(value_);
  }

  /// A boolean, an integer or a real; text that reads as a number is not one.
  bool IsNumeric() const;

  /// The value converted: halves round to the even number, numeric text is read, True is -1. Throws
  /// a Fault: "Overflow" out of range, "Type mismatch" for what does not convert.
  std::int32_t ToInt32() const;
  float ToFloat() const;
  double ToDouble() const;
  bool ToBoolean() const;
  std::string ToText() const;

  /// The array of `T` (std::int32_t or float) with its bounds. Throws a Fault, "Type mismatch", for
  /// anything else.
  template <class T>
  ArrayView<const T> ToArray() const;

  /// The same type and the same value.
  bool operator==(const Variant&) const = default;

 private:
  std::variant<std::monostate, bool, std::int16_t, std::int32_t, float, double, std::string,
               Array<std::int32_t>, Array<float>>
      value_;
};

extern template ArrayView<const std::int32_t> Variant::ToArray<std::int32_t>() const;
extern template ArrayView<const float> Variant::ToArray<float>() const;

}  // namespace orif

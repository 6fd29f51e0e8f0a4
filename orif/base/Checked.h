// Integer arithmetic and narrowing that throw "Overflow" instead of wrapping. All addresses, sizes
// and counts in the library use them.
#pragma once

#include <cstdint>
#include <utility>

#include "orif/base/Fault.h"

namespace orif {

/// `value` as a `To`. Throws a Fault if it does not fit.
template <class To, class From>
constexpr To Narrow(From value) {
  if (!std::in_range<To>(value)) throw Fault(Fault::Overflow);
  return static_cast<To>(value);
}

constexpr std::int32_t Add(std::int32_t a, std::int32_t b) {
  return Narrow<std::int32_t>(std::int64_t{a} + b);
}

constexpr std::int32_t Subtract(std::int32_t a, std::int32_t b) {
  return Narrow<std::int32_t>(std::int64_t{a} - b);
}

constexpr std::int32_t Multiply(std::int32_t a, std::int32_t b) {
  return Narrow<std::int32_t>(std::int64_t{a} * b);
}

/// How many numbers there are from `first` to `last`, both included.
constexpr std::int32_t RangeLength(std::int32_t first, std::int32_t last) {
  return Narrow<std::int32_t>(std::int64_t{last} - first + 1);
}

/// The address of element `index` in a row of elements of `stride` words each, of which element
/// `first` is at address `start`.
constexpr std::int32_t ElementAddress(std::int32_t start, std::int32_t index, std::int32_t first,
                                      std::int32_t stride) {
  return Add(start, Multiply(Subtract(index, first), stride));
}

}  // namespace orif

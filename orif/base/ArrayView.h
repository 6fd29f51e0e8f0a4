// An array that is passed by reference with its own bounds: its first element, the index of that
// element and the index of the last one. Every member that takes an array takes one of these; it
// does not own the elements.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>
#include <vector>

#include "orif/base/Fault.h"

namespace orif {

template <class T>
class ArrayView {
  using Element = std::remove_const_t<T>;

 public:
  /// An array without elements, bounds 0 to -1.
  constexpr ArrayView() = default;

  /// `upper` - `lower` + 1 elements from `first` on. Throws a Fault for an `upper` below `lower` -
  /// 1 and for elements without a `first`.
  constexpr ArrayView(T* first, std::int32_t lower, std::int32_t upper)
      : first_(first), lower_(lower), upper_(upper) {
    if (Count() < 0 || (Count() > 0 && first == nullptr)) throw Fault(Fault::SubscriptOutOfRange);
  }

  // NOLINTBEGIN(google-explicit-constructor, hicpp-explicit-conversions): meant to convert
  /// The forms that a C++ program has at hand; their lower bound is 0.
  constexpr ArrayView(std::span<T> elements) : ArrayView(elements.data(), elements.size()) {}
  template <std::size_t N>
  constexpr ArrayView(T (&elements)[N]) : ArrayView(elements, N) {}
  template <std::size_t N>
  constexpr ArrayView(std::array<Element, N>& elements) : ArrayView(elements.data(), N) {}
  template <std::size_t N>
  constexpr ArrayView(const std::array<Element, N>& elements) requires std::is_const_v<T>
      : ArrayView(elements.data(), N) {}
  constexpr ArrayView(std::vector<Element>& elements)
      : ArrayView(elements.data(), elements.size()) {}
  constexpr ArrayView(const std::vector<Element>& elements) requires std::is_const_v<T>
      : ArrayView(elements.data(), elements.size()) {}
  /// An input taken from an array that could be written; the bounds stay.
  template <std::same_as<Element> U>
  constexpr ArrayView(const ArrayView<U>& other) requires std::is_const_v<T>
      : first_(other.First()), lower_(other.LowerBound()), upper_(other.UpperBound()) {}
  // NOLINTEND(google-explicit-constructor, hicpp-explicit-conversions)

  /// The index of the first element, and of the last.
  constexpr std::int32_t LowerBound() const { return lower_; }
  constexpr std::int32_t UpperBound() const { return upper_; }

  /// The number of elements; up to 2^32, hence 64 bits.
  constexpr std::int64_t Count() const { return std::int64_t{upper_} - lower_ + 1; }

  /// The first element, the one at the lower bound; null where there is none.
  constexpr T* First() const { return first_; }

  /// The element at `index`, counted in the array's own bounds. Throws a Fault outside them.
  constexpr T& operator()(std::int32_t index) const {
    if (index < lower_ || index > upper_) throw Fault(Fault::SubscriptOutOfRange);
    return first_[std::int64_t{index} - lower_];
  }

 private:
  constexpr ArrayView(T* first, std::size_t count)
      : first_(first), upper_(static_cast<std::int32_t>(count) - 1) {
    if (count > std::numeric_limits<std::int32_t>::max()) throw Fault(Fault::Overflow);
  }

  T* first_ = nullptr;
  std::int32_t lower_ = 0;
  std::int32_t upper_ = -1;
};

}  // namespace orif

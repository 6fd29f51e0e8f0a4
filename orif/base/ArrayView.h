// ArrayView: how members take and fill the arrays of their caller.
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

/// A caller's array, passed by reference with its own bounds: a pointer to the first element, the
/// index of that element and the index of the last one. `T` is the element type, const for an array
/// that is only read. The view does not own the elements; they must outlive it.
template <class T>
class ArrayView {
  using Element = std::remove_const_t<T>;

 public:
  /// An array without elements, with bounds 0 to -1.
  constexpr ArrayView() = default;

  /// The `upper` - `lower` + 1 elements that begin at `first`. Throws a Fault, "Subscript out of
  /// range", if `upper` is below `lower` - 1, or if there are elements but `first` is null.
  constexpr ArrayView(T* first, std::int32_t lower, std::int32_t upper)
      : first_(first), lower_(lower), upper_(upper) {
    if (Count() < 0 || (Count() > 0 && first == nullptr)) throw Fault(Fault::SubscriptOutOfRange);
  }

  // NOLINTBEGIN(google-explicit-constructor, hicpp-explicit-conversions): meant to convert
  /// The elements of a span, with lower bound 0.
  constexpr ArrayView(std::span<T> elements) : ArrayView(elements.data(), elements.size()) {}

  /// The elements of a C array, with lower bound 0.
  template <std::size_t N>
  constexpr ArrayView(T (&elements)[N]) : ArrayView(elements, N) {}

  /// The elements of a std::array, with lower bound 0.
  template <std::size_t N>
  constexpr ArrayView(std::array<Element, N>& elements) : ArrayView(elements.data(), N) {}

  /// The elements of a constant std::array, to be read only, with lower bound 0.
  template <std::size_t N>
  constexpr ArrayView(const std::array<Element, N>& elements) requires std::is_const_v<T>
      : ArrayView(elements.data(), N) {}

  /// The elements of a vector, with lower bound 0. Resizing the vector invalidates the view.
  constexpr ArrayView(std::vector<Element>& elements)
      : ArrayView(elements.data(), elements.size()) {}

  /// The elements of a constant vector, to be read only, with lower bound 0.
  constexpr ArrayView(const std::vector<Element>& elements) requires std::is_const_v<T>
      : ArrayView(elements.data(), elements.size()) {}

  /// A read-only view of the same elements with the same bounds.
  template <std::same_as<Element> U>
  constexpr ArrayView(const ArrayView<U>& other) requires std::is_const_v<T>
      : first_(other.First()), lower_(other.LowerBound()), upper_(other.UpperBound()) {}
  // NOLINTEND(google-explicit-constructor, hicpp-explicit-conversions)

  /// The index of the first element.
  constexpr std::int32_t LowerBound() const { return lower_; }

  /// The index of the last element; `LowerBound()` - 1 if there are no elements.
  constexpr std::int32_t UpperBound() const { return upper_; }

  /// The number of elements. It can reach 2^32, hence 64 bits.
  constexpr std::int64_t Count() const { return std::int64_t{upper_} - lower_ + 1; }

  /// The first element, the one at the lower bound; may be null if there are no elements.
  constexpr T* First() const { return first_; }

  /// The element at `index`, counted in the bounds of this array. Throws a Fault, "Subscript out of
  /// range", outside them.
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

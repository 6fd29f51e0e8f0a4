// Copies a caller's array into the staged values of an item.
#pragma once

#include <cstddef>
#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/base/Checked.h"
#include "orif/items/Item.h"

namespace orif {

/// Stores the elements of `array` with `store(place, element)`, one after the other from `target`
/// on, `stride` places each. Stops at the first element that does not lie wholly within the
/// `places` places, and writes `line` about it; those before it stay.
template <class T, class Store>
bool Stage(const Trail<Item>& trail, const char* line, ArrayView<const T> array,
           std::int32_t target, std::int32_t stride, std::size_t places, const Store& store) {
  const auto upper = Narrow<std::int32_t>(std::int64_t(places) - 1);
  for (std::int64_t k = 0; k < array.Count(); ++k) {
    const auto place = Narrow<std::int32_t>(target + k * stride);
    if (place < 0 || std::int64_t{place} + stride - 1 > upper) {
      return trail.Refuse(line, place, ", ", upper);
    }
    store(static_cast<std::size_t>(place), array.First()[k]);
  }
  return true;
}

}  // namespace orif

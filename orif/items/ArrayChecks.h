// The tests that position members make of a caller's arrays, and how their entry lines show these.
// They are loose on purpose: six cartesian values pass, although a position has nine.
#pragma once

#include <cstdint>
#include <string>

#include "orif/base/ArrayView.h"
#include "orif/base/Convert.h"

namespace orif {

constexpr std::int32_t LeastXyzwpr = 6;
constexpr std::int32_t LeastConfig = 7;

/// Whether an array begins at index 0 or below.
template <class T>
bool BeginsAtZero(ArrayView<T> array) {
  return array.LowerBound() <= 0;
}

/// Whether an array begins at index 0 or below and has at least `least` elements.
template <class T>
bool Holds(ArrayView<T> array, std::int32_t least) {
  return BeginsAtZero(array) && array.Count() >= least;
}

/// A part of an entry line: the name of the array with its bounds, for example "Joint(0to8)".
template <class T>
auto Shown(const char* name, ArrayView<T> array) {
  return [=] {
    return std::string(name) + "(" + convert::ToText(array.LowerBound()) + "to" +
           convert::ToText(array.UpperBound()) + ")";
  };
}

}  // namespace orif

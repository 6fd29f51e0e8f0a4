// The arguments of one operation, checked before anything is done with them: their number, the kind
// of each, and that every reference reaches as far as the call names. Used by SimulatedCore during
// one call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "orif/lowerlayer/orvex_commlib.h"

namespace orif::sim {

/// How many elements a reference must reach.
enum class Extent {
  None,             // passed by value
  Text,             // a text: as many bytes as it says that it has
  One,              // a single variable
  Two,              // two elements
  Next,             // as many as the argument behind it says
  NextPerRegister,  // as many, for each of the registers that the second argument counts
};

struct Parameter {
  std::uint16_t kind = ORVEX_EMPTY;
  Extent extent = Extent::None;
};

class Arguments {
 public:
  /// Throws a Fault unless `values` are what `parameters` ask for.
  Arguments(std::span<const Parameter> parameters, std::span<const OrvexValue> values);

  /// The value of an integer argument of any kind.
  std::int32_t Integer(std::size_t index) const;
  std::string_view Text(std::size_t index) const;

  /// The elements of a reference, `count` of them; none when `count` is not positive.
  std::span<std::int16_t> Shorts(std::size_t index, std::int64_t count) const {
    return Elements(values_[index].as.i2Ref, count);
  }
  std::span<std::int32_t> Longs(std::size_t index, std::int64_t count) const {
    return Elements(values_[index].as.i4Ref, count);
  }
  std::span<float> Reals(std::size_t index, std::int64_t count) const {
    return Elements(values_[index].as.r4Ref, count);
  }

 private:
  template <class T>
  static std::span<T> Elements(T* first, std::int64_t count) {
    return count < 1 ? std::span<T>() : std::span<T>(first, static_cast<std::size_t>(count));
  }

  std::int64_t Needed(Extent extent, std::size_t index) const;

  std::span<const OrvexValue> values_;
};

}  // namespace orif::sim

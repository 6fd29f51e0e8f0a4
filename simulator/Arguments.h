// The arguments of one call, checked before anything is done with them: how many there are, what
// kind each is, and that every reference reaches as many elements as the call names. SimulatedCore
// makes them for each call.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "orif/lowerlayer/orvex_commlib.h"

namespace orif::sim {

/// How many elements a reference must reach.
enum class Extent {
  None,             // passed by value
  Text,             // a text: as many bytes as its count says
  One,              // a single variable
  Two,              // two elements
  Next,             // as many as the next argument says
  NextPerRegister,  // the same for each register; the second argument says how many registers
};

struct Parameter {
  std::uint16_t kind = ORVEX_EMPTY;
  Extent extent = Extent::None;
};

class Arguments {
 public:
  /// Throws a Fault unless `values` match `parameters`.
  Arguments(std::span<const Parameter> parameters, std::span<const OrvexValue> values);

  /// How many elements, or bytes of a text, the call uses behind the argument at `index`.
  std::size_t Used(Extent extent, std::size_t index) const {
    return static_cast<std::size_t>(std::max<std::int64_t>(Needed(extent, index), 0));
  }

  /// An integer argument: short or long, by value or by reference.
  std::int32_t Integer(std::size_t index) const;
  std::string_view Text(std::size_t index) const;

  /// The first `count` elements of a reference; none if `count` is not positive.
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

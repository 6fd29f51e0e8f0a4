// The numeric registers of a controller. Each holds an integer or a real, whichever was written
// last; an assignment piece shows a run of them as integers or as reals. Owned by a Controller, one
// thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "simulator/WordSource.h"

namespace orif::sim {

struct Piece;

using NumericValue = std::variant<std::int32_t, float>;

class NumericRegisters {
 public:
  /// Registers 1 to `count`, all integer 0.
  explicit NumericRegisters(std::size_t count) : values_(count) {}

  /// Register `index`, from 1 on; throws std::out_of_range beyond the last.
  NumericValue& At(std::int32_t index) { return values_.at(static_cast<std::size_t>(index) - 1); }

  /// Opens "R[n]": as integers with factor 1 (a real rounds half to even and saturates), as reals
  /// with factor 0.
  OpenedSource Open(const Piece& piece);

 private:
  std::vector<NumericValue> values_;
};

}  // namespace orif::sim

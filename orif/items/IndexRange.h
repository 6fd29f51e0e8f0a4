// A range of numbers, first and last one included: of registers, of texts.
#pragma once

#include <cstdint>

#include "orif/base/Checked.h"

namespace orif {

struct IndexRange {
  std::int32_t first = 0;
  std::int32_t last = 0;

  /// Numbers count from 1; there is no upper limit here, the controller rejects the piece.
  bool Valid() const { return first >= 1 && last >= 1 && first <= last; }
  bool Covers(std::int32_t index) const { return index >= first && index <= last; }
  /// Throws a Fault when it does not fit 32 bits.
  std::int32_t Length() const { return RangeLength(first, last); }
};

/// The range from the lowest to the highest number that was staged; 0 to 0 while none is.
struct PendingRange : IndexRange {
  void Widen(std::int32_t index) {
    if (first <= 0 || first > index) first = index;
    if (last <= 0 || last < index) last = index;
  }
};

}  // namespace orif

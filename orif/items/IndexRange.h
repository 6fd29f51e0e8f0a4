// IndexRange: the numbers of registers or texts from the first to the last, both included.
#pragma once

#include <cstdint>

#include "orif/base/Checked.h"

namespace orif {

struct IndexRange {
  std::int32_t first = 0;
  std::int32_t last = 0;

  /// Whether the range begins at 1 or above and is not empty. The controller knows the upper limit.
  bool Valid() const { return first >= 1 && last >= 1 && first <= last; }
  bool Covers(std::int32_t index) const { return index >= first && index <= last; }
  /// Throws a Fault if it does not fit 32 bits.
  std::int32_t Length() const { return RangeLength(first, last); }
};

/// The range from the lowest to the highest staged number; 0 to 0 if nothing is staged.
struct PendingRange : IndexRange {
  void Widen(std::int32_t index) {
    if (first <= 0 || first > index) first = index;
    if (last <= 0 || last < index) last = index;
  }
};

}  // namespace orif

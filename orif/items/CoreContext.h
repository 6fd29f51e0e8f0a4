// What a Core shares with its tables and their items: the lower core object that they all call, and
// whether they write traced lines. The Core owns it; whoever has lost his Core sees the null
// object, which has neither.
#pragma once

#include <string>

#include "orif/base/Fault.h"
#include "orif/lowerlayer/LowerCore.h"

namespace orif {

struct CoreContext {
  Ref<LowerCore> lowerCore;
  bool debugLog = false;

  /// The lower core object for one call. Throws a Fault when there is none.
  Ref<LowerCore> Lower() const {
    if (!lowerCore) throw Fault(Fault::ObjectNotSet);
    return lowerCore;
  }

  /// The lower layer's text for its last failure, empty without a lower core object.
  std::string LastErrorText() const { return lowerCore ? Lower()->LastErrorText() : std::string(); }
};

extern const CoreContext NoCore;

}  // namespace orif

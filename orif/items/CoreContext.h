// CoreContext: what a Core shares with its tables and their items. Tables without a Core point to
// NoCore, which has no lower core object and never traces.
#pragma once

#include <string>

#include "orif/base/Fault.h"
#include "orif/lowerlayer/LowerCore.h"

namespace orif {

struct CoreContext {
  Ref<LowerCore> lowerCore;
  bool debugLog = false;

  /// The lower core object, held during one call. Throws a Fault if there is none.
  Ref<LowerCore> Lower() const {
    if (!lowerCore) throw Fault(Fault::ObjectNotSet);
    return lowerCore;
  }

  /// The text of the lower layer for its last failure; empty without a lower core object.
  std::string LastErrorText() const { return lowerCore ? Lower()->LastErrorText() : std::string(); }
};

extern const CoreContext NoCore;

}  // namespace orif

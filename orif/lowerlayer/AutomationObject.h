// A lower core object as an automation object: the far side of the boundary that the library
// crosses on Windows. It needs nothing of the library, so that components can contain it too.
#pragma once

#include <memory>

#include "orif/lowerlayer/Dispatch.h"

struct IDispatch;

namespace orif {

/// Makes an automation object around `core`; the caller owns the only reference. Operations can be
/// called by number and by name. What the core throws becomes the exception of the call.
///
/// Automation does not say how far a reference reaches, so the core is told that it reaches far
/// enough for any call. The core has to trust the count in the call.
IDispatch* MakeAutomationObject(std::shared_ptr<Dispatch> core);

}  // namespace orif

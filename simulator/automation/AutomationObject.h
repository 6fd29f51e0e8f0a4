// A lower core object as an automation object: the other side of the boundary that the library
// crosses on Windows. Made by the component's class factory, and by tests over objects of their
// own.
#pragma once

#include <memory>

#include "orif/lowerlayer/Dispatch.h"

struct IDispatch;

namespace orif::sim {

/// A new automation object over `core`; the caller has the one reference to it. Operations are
/// answered by number and by name. What the core throws becomes the exception of the call.
///
/// A reference among the arguments carries no extent: the core is told that it reaches as far as
/// any call may name, and has to trust the count that comes with the call.
IDispatch* MakeAutomationObject(std::shared_ptr<Dispatch> core);

}  // namespace orif::sim

// The lower core object as an automation object: late-bound calls by number and by name, arguments
// and results as variants. Used where the component is registered with the system (Windows), and by
// hosts that have such an object already.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"
#include "orif/orif_export.h"

struct IDispatch;

namespace orif {

/// A new object of the registered class `name`: a program identifier, or a class identifier in
/// braces. Throws a Fault with the system's reason, also for an object that does not live in the
/// calling thread's apartment: it could not reach the library's buffers.
std::shared_ptr<Dispatch> CreateAutomationCore(const std::string& name);

/// The adapter of an object that there is; it takes a reference of its own. The object is called
/// and released on the calling thread, whose apartment it must belong to.
ORIF_EXPORT std::shared_ptr<Dispatch> AdaptAutomation(IDispatch& object);

}  // namespace orif

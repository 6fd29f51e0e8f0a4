// Automation: lower core objects that are automation objects.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"
#include "orif/orif_export.h"

struct IDispatch;

namespace orif {

/// Makes a new object of the registered class `name`: a program identifier, or a class identifier
/// in braces. Throws a Fault with the reason of the system, also if the object does not live in the
/// apartment of the calling thread, from where it could not reach the buffers of the library.
std::shared_ptr<Dispatch> CreateAutomationCore(const std::string& name);

/// Makes an adapter for an object that a host already has; the adapter takes a reference of its
/// own. The object is called and released on the calling thread, to whose apartment it must belong.
ORIF_EXPORT std::shared_ptr<Dispatch> AdaptAutomation(IDispatch& object);

/// The way back: a lower core object for a host that wants an automation object. It is the object
/// that was adapted, or one around `core`. The caller gets a reference; null for an empty `core`.
ORIF_EXPORT IDispatch* OfferAutomation(std::shared_ptr<Dispatch> core);

}  // namespace orif

// Finding the lower communication component and making core objects of it: the component that the
// environment variable ORVEX_COMMLIB names, or else the one installed in the system. A component
// stays loaded. The current directory is never searched.
#pragma once

#include <memory>

#include "orif/lowerlayer/Dispatch.h"

namespace orif {

/// A new core object of the component. Throws a Fault with the reason when there is no component,
/// when it cannot be loaded, has another version or no entry point, or makes no object.
std::shared_ptr<Dispatch> CreateComponentCore();

}  // namespace orif

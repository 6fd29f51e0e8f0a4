// Core objects of the lower communication component: the one that is named, or else the one that is
// installed in the system. A component stays loaded. The current directory is never searched.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"
#include "orif/orif_export.h"

namespace orif {

/// The environment variable that names the component of a Core without a factory.
constexpr const char* ComponentVariable = "ORVEX_COMMLIB";

/// A new core object of the component `named`: the absolute path of a shared object, on Windows
/// also the program or class identifier of a registered class; empty for the installed one. Throws
/// a Fault with the reason when there is no such component, when it cannot be loaded, has another
/// version or no entry point, or makes no object.
ORIF_EXPORT std::shared_ptr<Dispatch> CreateComponentCore(const std::string& named);

}  // namespace orif

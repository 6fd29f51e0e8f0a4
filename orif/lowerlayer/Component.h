// Component: the lower core objects of a loaded or installed component.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"
#include "orif/orif_export.h"

namespace orif {

/// The environment variable that names the component of a Core that is given no factory.
constexpr const char* ComponentVariable = "ORVEX_COMMLIB";

/// Makes a new core object of the component `named`: the absolute path of a shared object, on
/// Windows also the program identifier or class identifier of a registered class; empty for the
/// installed one. The component stays loaded. The current directory is never searched. Throws a
/// Fault with the reason if there is no such component, if it cannot be loaded, if it has another
/// version or no entry point, and if it makes no object.
ORIF_EXPORT std::shared_ptr<Dispatch> CreateComponentCore(const std::string& named);

/// The same for the component that a Core takes which is given no factory: the one that
/// ComponentVariable names, or the installed one.
ORIF_EXPORT std::shared_ptr<Dispatch> CreateComponentCore();

}  // namespace orif

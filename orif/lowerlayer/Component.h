// Finding the lower communication component and making core objects of it: the component that the
// environment variable ORVEX_COMMLIB names, or else the one installed in the system. A component
// stays loaded. The current directory is never searched.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"

namespace orif {

/// The variable that names a component.
constexpr const char* ComponentVariable = "ORVEX_COMMLIB";

/// A new core object of the component. Throws a Fault with the reason when there is no component,
/// when it cannot be loaded, has another version or no entry point, or makes no object.
std::shared_ptr<Dispatch> CreateComponentCore();

/// The same of the shared object at `path`, an absolute one.
std::shared_ptr<Dispatch> CreateLoadedCore(const std::string& path);

/// The same of the component that is installed as the platform installs such things
/// (Component_posix.cpp and its siblings; the build chooses one). `named` is what the variable says
/// if that is not a path, empty when it says nothing.
std::shared_ptr<Dispatch> CreateInstalledCore(const std::string& named);

}  // namespace orif

// How components are installed on the platform. Component_posix.cpp and Component_windows.cpp
// implement it; the build chooses one.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"

namespace orif {

/// A new core object of the installed component; of the one that `named` means, which is no path,
/// if that is not empty. Throws a Fault with the reason.
std::shared_ptr<Dispatch> CreateInstalledCore(const std::string& named);

/// A new core object of the shared object at `path`, which is absolute. Throws a Fault with the
/// reason.
std::shared_ptr<Dispatch> CreateLoadedCore(const std::string& path);

}  // namespace orif

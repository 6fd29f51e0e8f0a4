// How the platform has components installed (Component_posix.cpp and its siblings; the build
// chooses one).
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"

namespace orif {

/// A new core object of the installed component, or of the one that `named` means if that is no
/// path. Throws a Fault with the reason.
std::shared_ptr<Dispatch> CreateInstalledCore(const std::string& named);

/// The same of the shared object at `path`, an absolute one.
std::shared_ptr<Dispatch> CreateLoadedCore(const std::string& path);

}  // namespace orif

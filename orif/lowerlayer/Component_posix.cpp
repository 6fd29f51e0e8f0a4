#include <filesystem>

#include "orif/base/Fault.h"
#include "orif/lowerlayer/Component.h"
#include "orif/lowerlayer/InstalledComponent.h"

namespace orif {
namespace {

constexpr const char* ComponentName = "OrvexCommLib";

}  // namespace

// Looks for a shared object in the library directories of the system, the likeliest one first.
std::shared_ptr<Dispatch> CreateInstalledCore(const std::string& named) {
  if (!named.empty()) {
    throw Fault(std::string(ComponentVariable) + " is not an absolute path: " + named);
  }
  for (const std::string directory : {"/usr/local/lib/", "/usr/lib/", "/lib/"}) {
    for (const std::string architecture : {ORIF_LIBRARY_ARCHITECTURE "/", ""}) {
      std::string path = directory;
      path.append(architecture).append("lib").append(ComponentName).append(".so");
      std::error_code error;
      if (std::filesystem::exists(path, error)) return CreateLoadedCore(path);
    }
  }
  throw Fault(std::string(ComponentName) + " is not installed and " + ComponentVariable +
              " is not set");
}

}  // namespace orif

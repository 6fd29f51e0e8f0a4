#include "orif/lowerlayer/Automation.h"
#include "orif/lowerlayer/InstalledComponent.h"

namespace orif {
namespace {

constexpr const char* RegisteredClass = "OrvexCommLib.Core";

}  // namespace

std::shared_ptr<Dispatch> CreateInstalledCore(const std::string& named) {
  return CreateAutomationCore(named.empty() ? RegisteredClass : named);
}

}  // namespace orif

#include <cstdint>
#include <type_traits>

#include "orif/lowerlayer/Automation.h"
#include "orif/lowerlayer/InstalledComponent.h"
#include "orif/lowerlayer/orvex_commlib.h"

namespace orif {
namespace {

// 32 bit has several calling conventions, and compilers that align a double to 4 bytes.
static_assert(std::is_same_v<OrvexCommLibEntryFunction,
                             const OrvexCommLib*(__cdecl*)(std::uint32_t version)>);
static_assert(alignof(OrvexValue) == 8);

constexpr const char* RegisteredClass = "OrvexCommLib.Core";

}  // namespace

std::shared_ptr<Dispatch> CreateInstalledCore(const std::string& named) {
  return CreateAutomationCore(named.empty() ? RegisteredClass : named);
}

}  // namespace orif

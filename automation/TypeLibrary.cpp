#include "automation/TypeLibrary.h"

#include "automation/Values.h"
#include "orif/platform/WindowsRegistry.h"

namespace orif::automation {

std::wstring ModulePath() {
  return platform::ModulePath(reinterpret_cast<const void*>(&DescriptionOf));
}

ITypeInfo* DescriptionOf(const IID& interfaceId) {
  static ITypeLib* const library = [] {
    ITypeLib* loaded = nullptr;
    Demand(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &loaded));
    return loaded;
  }();
  ITypeInfo* description = nullptr;
  Demand(library->GetTypeInfoOfGuid(interfaceId, &description));
  return description;
}

}  // namespace orif::automation

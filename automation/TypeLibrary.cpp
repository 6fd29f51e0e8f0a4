#include "automation/TypeLibrary.h"

#include "automation/Values.h"

namespace orif::automation {

std::wstring ModulePath() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&ModulePath), &module);
  std::wstring path(32768, L'\0');  // no path is longer
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
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

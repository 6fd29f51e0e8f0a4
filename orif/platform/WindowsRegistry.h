// What a module that registers itself needs of Windows: its own path, and keys with values.
// Header-only, because the component of the simulated controller uses it without the library.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace orif::platform {

/// The path of the module that contains the address.
inline std::wstring ModulePath(const void* address) {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      static_cast<LPCWSTR>(address), &module);
  std::wstring path(32768, L'\0');  // no path is longer
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

/// Sets a value of a key, which is made if it is missing; without a name its default value. False
/// if it cannot.
inline bool WriteKey(HKEY root, const std::wstring& key, const std::wstring& value,
                     const wchar_t* name = nullptr) {
  const std::size_t bytes = (value.size() + 1) * sizeof(wchar_t);
  return RegSetKeyValueW(root, key.c_str(), name, REG_SZ, value.c_str(),
                         static_cast<DWORD>(bytes)) == ERROR_SUCCESS;
}

/// Removes a key with all below it. False if it is there and stays.
inline bool RemoveKey(HKEY root, const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(root, key.c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

}  // namespace orif::platform

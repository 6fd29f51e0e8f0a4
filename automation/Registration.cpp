#include "automation/Registration.h"

#include <olectl.h>

#include <array>
#include <span>
#include <string>

#include "automation/Object.h"
#include "automation/TypeLibrary.h"
#include "orif/platform/WindowsRegistry.h"

extern "C" {
extern const CLSID CLSID_OrifCore;
extern const IID LIBID_Orif;
}

namespace orif::automation {
namespace {

using Key = std::wstring;

const Key Classes = L"Software\\Classes\\";
const Key Program = L"Orif.Core";
const Key ProgramVersion = L"Orif.Core.1";
const Key Title = L"orif robot controller";
const Key LibraryVersion = L"1.0";
const Key OtherWidth = sizeof(void*) == 8 ? L"win32" : L"win64";
const Key ThisWidth = sizeof(void*) == 8 ? L"win64" : L"win32";
// The system's own, which carries calls of interfaces that stand in a type library.
const Key TypeLibraryProxy = L"{00020424-0000-0000-C000-000000000046}";

Key Text(const GUID& id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

Key ClassKey() { return Classes + L"CLSID\\" + Text(CLSID_OrifCore); }
Key LibraryKey() { return Classes + L"TypeLib\\" + Text(LIBID_Orif); }
Key InterfaceKey(const Class& itsClass) {
  return Classes + L"Interface\\" + Text(itsClass.Interface());
}

std::vector<const Class*> AllClasses() {
  std::vector<const Class*> classes{&ClassOf<Core>(), &ClassOf<DataTable>()};
  ForEachItemClass([&]<class T>(const T* /*kind*/) { classes.push_back(&ClassOf<T>()); });
  return classes;
}

void Write(HKEY root, const Key& key, const Key& value, const wchar_t* name = nullptr) {
  if (!platform::WriteKey(root, key, value, name)) throw Refusal{SELFREG_E_CLASS};
}

void Remove(HKEY root, const Key& key) {
  if (!platform::RemoveKey(root, key)) throw Refusal{SELFREG_E_CLASS};
}

bool IsThere(HKEY root, const Key& key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

void WriteAll(HKEY root) {
  const Key path = ModulePath();
  Write(root, Classes + Program, Title);
  Write(root, Classes + Program + L"\\CLSID", Text(CLSID_OrifCore));
  Write(root, Classes + Program + L"\\CurVer", ProgramVersion);
  Write(root, Classes + ProgramVersion, Title);
  Write(root, Classes + ProgramVersion + L"\\CLSID", Text(CLSID_OrifCore));

  Write(root, ClassKey(), Title);
  Write(root, ClassKey() + L"\\InprocServer32", path);
  Write(root, ClassKey() + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
  Write(root, ClassKey() + L"\\ProgID", ProgramVersion);
  Write(root, ClassKey() + L"\\VersionIndependentProgID", Program);
  Write(root, ClassKey() + L"\\TypeLib", Text(LIBID_Orif));
  Write(root, ClassKey() + L"\\Version", LibraryVersion);
  Write(root, ClassKey() + L"\\Programmable", L"");

  const Key version = LibraryKey() + L"\\" + LibraryVersion;
  Write(root, version, Title);
  Write(root, version + L"\\0\\" + ThisWidth, path);
  Write(root, version + L"\\FLAGS", L"0");
  Write(root, version + L"\\HELPDIR", path.substr(0, path.rfind(L'\\')));

  for (const Class* each : AllClasses()) {
    BSTR name = nullptr;
    Demand(each->Description()->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr));
    const Key title(name, SysStringLen(name));
    SysFreeString(name);
    Write(root, InterfaceKey(*each), title);
    Write(root, InterfaceKey(*each) + L"\\ProxyStubClsid32", TypeLibraryProxy);
    Write(root, InterfaceKey(*each) + L"\\TypeLib", Text(LIBID_Orif));
    Write(root, InterfaceKey(*each) + L"\\TypeLib", LibraryVersion, L"Version");
  }
}

}  // namespace

void Register(HKEY root) {
  try {
    WriteAll(root);
  } catch (...) {
    Unregister(root);
    throw;
  }
}

void Unregister(HKEY root) {
  Remove(root, ClassKey());
  for (const Class* each : AllClasses()) Remove(root, InterfaceKey(*each));
  const Key files = LibraryKey() + L"\\" + LibraryVersion + L"\\0\\";
  Remove(root, files + ThisWidth);
  if (IsThere(root, files + OtherWidth)) return;
  Remove(root, LibraryKey());
  Remove(root, Classes + Program);
  Remove(root, Classes + ProgramVersion);
}

}  // namespace orif::automation

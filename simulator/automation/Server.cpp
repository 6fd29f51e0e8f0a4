// The simulated controller as a registered automation component: core objects of the demonstration
// cell, in the process of whoever creates them, under a program identifier of its own. One network
// serves every object of the process, each in the apartment that created it. The module is never
// unloaded, since the cell's data lives in it.
#include <windows.h>

#include <objbase.h>
#include <olectl.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <string>

#include "orif/lowerlayer/AutomationObject.h"
#include "orif/platform/WindowsRegistry.h"
#include "simulator/Demo.h"
#include "simulator/served/RemoteCore.h"

namespace orif::sim {
namespace {

// {E3DE6720-D863-4286-8295-326B99EEFAD0}
constexpr CLSID ClassIdentifier{
    0xE3DE6720, 0xD863, 0x4286, {0x82, 0x95, 0x32, 0x6B, 0x99, 0xEE, 0xFA, 0xD0}};

class ClassFactory final : public IClassFactory {
 public:
  virtual ~ClassFactory() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    const bool known = wanted == IID_IUnknown || wanted == IID_IClassFactory;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  // The one factory stays, and the module with it.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    try {
      static const DispatchFactory& factory = *new DispatchFactory(RemoteFactory(DemoNetwork()));
      IDispatch* const made = MakeAutomationObject(factory());
      const HRESULT result = made->QueryInterface(wanted, object);
      made->Release();
      return result;
    } catch (const std::exception&) {
      return E_OUTOFMEMORY;
    }
  }
};

// For the current user, which needs no administrator rights.
const std::wstring Classes = L"Software\\Classes\\";
const std::wstring Program = Classes + L"OrvexCommLibSimulator.Core";
const std::wstring Identifier = L"{E3DE6720-D863-4286-8295-326B99EEFAD0}";
const std::wstring Class = Classes + L"CLSID\\" + Identifier;

bool Register() {
  struct Entry {
    std::wstring key;
    const wchar_t* name;
    std::wstring value;
  };
  const std::array entries{
      Entry{Program, nullptr, L"Simulated robot controller"},
      Entry{Program + L"\\CLSID", nullptr, Identifier},
      Entry{Class, nullptr, L"Simulated robot controller"},
      Entry{Class + L"\\ProgID", nullptr, L"OrvexCommLibSimulator.Core"},
      Entry{Class + L"\\InprocServer32", nullptr, platform::ModulePath(&ClassIdentifier)},
      Entry{Class + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
  };
  return std::ranges::all_of(entries, [](const Entry& entry) {
    return platform::WriteKey(HKEY_CURRENT_USER, entry.key, entry.value, entry.name);
  });
}

bool Unregister() {
  const bool program = platform::RemoveKey(HKEY_CURRENT_USER, Program);
  return platform::RemoveKey(HKEY_CURRENT_USER, Class) && program;
}

// The module stays loaded from now on.
void Stay() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<LPCWSTR>(&ClassIdentifier), &module);
}

}  // namespace
}  // namespace orif::sim

STDAPI DllGetClassObject(REFCLSID identifier, REFIID wanted, LPVOID* object) {
  static orif::sim::ClassFactory factory;
  *object = nullptr;
  if (identifier != orif::sim::ClassIdentifier) return CLASS_E_CLASSNOTAVAILABLE;
  orif::sim::Stay();
  return factory.QueryInterface(wanted, object);
}

STDAPI DllCanUnloadNow() { return S_FALSE; }

// If registering fails half-way, what was registered is removed.
STDAPI DllRegisterServer() {
  try {
    if (orif::sim::Register()) return S_OK;
    orif::sim::Unregister();
  } catch (const std::exception&) {
    return E_OUTOFMEMORY;
  }
  return SELFREG_E_CLASS;
}

STDAPI DllUnregisterServer() { return orif::sim::Unregister() ? S_OK : SELFREG_E_CLASS; }

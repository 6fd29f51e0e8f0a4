// What the system calls: the class factory of Core, and the registration of this module. Tables and
// items come from their Core alone.
#include <windows.h>

#include <olectl.h>

#include <string_view>

#include "automation/Object.h"
#include "automation/Registration.h"

extern "C" {
extern const CLSID CLSID_OrifCore;
}

namespace orif::automation {
namespace {

class CoreFactory final : public IClassFactory {
 public:
  CoreFactory() = default;
  CoreFactory(const CoreFactory&) = delete;
  CoreFactory& operator=(const CoreFactory&) = delete;
  virtual ~CoreFactory() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    const bool known = wanted == IID_IUnknown || wanted == IID_IClassFactory;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    HRESULT found = E_OUTOFMEMORY;
    const HRESULT made = Answered([&] {
      const auto core = std::make_shared<Core>();
      Object* const its = std::make_shared<Unit>(core)->ObjectFor(core);
      found = its->Interface()->QueryInterface(wanted, object);
      its->Release();
    });
    return FAILED(made) ? made : found;
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock != FALSE)
      ModuleUse::Add();
    else
      ModuleUse::Remove();
    return S_OK;
  }

 private:
  std::atomic<ULONG> references_ = 1;  // of any apartment
  ModuleUse use_;
};

HRESULT MakeFactory(REFIID wanted, void** object) {
  HRESULT found = E_OUTOFMEMORY;
  const HRESULT made = Answered([&] {
    auto* const factory = new CoreFactory;
    found = factory->QueryInterface(wanted, object);
    factory->Release();
  });
  return FAILED(made) ? made : found;
}

// Where to register: for the user, or for the machine where that is asked for.
HKEY RootOf(LPCWSTR how) {
  const std::wstring_view word = how == nullptr ? L"" : how;
  if (word.empty() || _wcsicmp(how, L"user") == 0) return HKEY_CURRENT_USER;
  if (_wcsicmp(how, L"machine") == 0) return HKEY_LOCAL_MACHINE;
  throw Refusal{E_INVALIDARG};
}

HRESULT SetRegistration(LPCWSTR how, bool registered) {
  return Answered([&] {
    if (registered)
      Register(RootOf(how));
    else
      Unregister(RootOf(how));
  });
}

}  // namespace
}  // namespace orif::automation

STDAPI DllGetClassObject(REFCLSID identifier, REFIID wanted, LPVOID* object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (identifier != CLSID_OrifCore) return CLASS_E_CLASSNOTAVAILABLE;
  return orif::automation::MakeFactory(wanted, object);
}

STDAPI DllCanUnloadNow() { return orif::automation::ModuleUse::IsOver() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return orif::automation::SetRegistration(nullptr, true); }

STDAPI DllUnregisterServer() { return orif::automation::SetRegistration(nullptr, false); }

// regsvr32 /n /i:machine registers for all users, which needs administrator's rights.
STDAPI DllInstall(BOOL install, LPCWSTR how) {
  return orif::automation::SetRegistration(how, install != FALSE);
}

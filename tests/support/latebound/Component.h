// The automation component and what stands below it: Core objects straight from the component's
// file, which need not be registered, over lower core objects of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "Orif.h"
#include "orif/lowerlayer/AutomationObject.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif::host {

struct ReleaseObject {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <class I>
using Reference = std::unique_ptr<I, ReleaseObject>;

/// A function that the component exports.
template <class Function>
Function* Exported(const char* name) {
  static const HMODULE module = LoadLibraryA(ORIF_AUTOMATION);
  EXPECT_NE(module, nullptr) << ORIF_AUTOMATION;
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// A new Core, over the lower core object that ORVEX_COMMLIB names.
inline Reference<::Core> NewCore() {
  static const auto getClass =
      Exported<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
  void* made = nullptr;
  void* found = nullptr;
  EXPECT_EQ(getClass(__uuidof(::OrifCore), IID_IClassFactory, &found), S_OK);
  const Reference<IClassFactory> factory(static_cast<IClassFactory*>(found));
  EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(::Core), &made), S_OK);
  return Reference<::Core>(static_cast<::Core*>(made));
}

/// A class of lower core objects, registered in this thread's apartment as long as this lives.
class LowerClass final : IClassFactory {
 public:
  /// None: a Core looks for the component that it would find without a test.
  LowerClass() = default;
  explicit LowerClass(DispatchFactory factory) : factory_(std::move(factory)) {
    static LONG count = 0;
    CLSID identifier{0x8F1D27C0, 0x52F4, 0x4E0B, {0x9C, 0x3E, 0x60, 0x11, 0x7A, 0xD4, 0x05, 0x9B}};
    identifier.Data1 += static_cast<unsigned long>(InterlockedIncrement(&count));
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    EXPECT_EQ(CoRegisterClassObject(identifier, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                    &registered_),
              S_OK);
    char name[40] = "";
    wchar_t wide[40] = L"";
    const int length = StringFromGUID2(identifier, wide, 40);
    for (int i = 0; i < length; ++i) name[i] = static_cast<char>(wide[i]);
    name_ = name;
  }
  LowerClass(const LowerClass&) = delete;
  LowerClass& operator=(const LowerClass&) = delete;
  virtual ~LowerClass() {
    if (name_.empty()) return;
    CoRevokeClassObject(registered_);
    CoUninitialize();
  }

  /// The identifier, as ORVEX_COMMLIB has it.
  const std::string& Name() const { return name_; }

 private:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    const bool known = wanted == IID_IUnknown || wanted == IID_IClassFactory;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID wanted, void** object) override {
    *object = nullptr;
    try {
      auto core = factory_();
      if (!core) return E_FAIL;
      const Reference<IDispatch> made(MakeAutomationObject(std::move(core)));
      return made->QueryInterface(wanted, object);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (const std::exception&) {
      return E_FAIL;
    }
  }

  DispatchFactory factory_;
  std::string name_;
  DWORD registered_ = 0;
};

/// Names a class to the Cores that look for their lower core object meanwhile.
class Naming {
 public:
  explicit Naming(const LowerClass& named) {
    if (!named.Name().empty()) _putenv_s("ORVEX_COMMLIB", named.Name().c_str());
  }
  Naming(const Naming&) = delete;
  Naming& operator=(const Naming&) = delete;
  ~Naming() { _putenv_s("ORVEX_COMMLIB", before_.c_str()); }

 private:
  static std::string Named() {
    const char* name = std::getenv("ORVEX_COMMLIB");
    return name == nullptr ? "" : name;
  }
  std::string before_ = Named();
};

inline Reference<::Core> CreateCore(const LowerClass& lower) {
  const Naming naming(lower);
  return NewCore();
}

}  // namespace orif::host

// What a late-bound call costs: GetValue of an integer register through the automation component,
// and beside it a call of an empty member through the system's own invoke. Prints nanoseconds a
// call, the least of several rounds, and fails if GetValue costs more than 1 us or more than that.
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include "Orif.h"

namespace orif::bench {
namespace {

void Demand(HRESULT code, const char* what) {
  if (FAILED(code)) throw std::runtime_error(what);
}

// An object with one member, in the form that the system's invoke wants.
struct Empty final {
  virtual void STDMETHODCALLTYPE Count() { ++calls; }

  long calls = 0;
};

ITypeInfo* DescriptionOfEmpty() {
  static std::array<wchar_t, 6> name{L"Count"};
  static METHODDATA method{name.data(), nullptr, 1, 0, CC_STDCALL, 0, DISPATCH_METHOD, VT_EMPTY};
  static INTERFACEDATA interfaceData{&method, 1};
  ITypeInfo* whole = nullptr;
  ITypeInfo* description = nullptr;
  HREFTYPE reference = 0;
  Demand(CreateDispTypeInfo(&interfaceData, LOCALE_USER_DEFAULT, &whole), "no description");
  Demand(whole->GetRefTypeOfImplType(0, &reference), "no interface");
  Demand(whole->GetRefTypeInfo(reference, &description), "no interface");
  return description;
}

// A register of the simulated controller, after a refresh. The objects stay to the end.
IDispatch& Register() {
  using GetClass = HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**);
  const HMODULE module = LoadLibraryA("OrifAutomation.dll");  // beside this program
  auto* const getClass = reinterpret_cast<GetClass*>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  if (getClass == nullptr) throw std::runtime_error("no OrifAutomation.dll");
  void* factory = nullptr;
  void* made = nullptr;
  Demand(getClass(__uuidof(::OrifCore), IID_IClassFactory, &factory), "no class");
  Demand(static_cast<IClassFactory*>(factory)->CreateInstance(nullptr, __uuidof(::Core), &made),
         "no Core");
  auto& core = *static_cast<::Core*>(made);
  ::DataTable* table = nullptr;
  ::DataNumReg* item = nullptr;
  VARIANT_BOOL connected = VARIANT_FALSE;
  VARIANT_BOOL refreshed = VARIANT_FALSE;
  core.Connect(SysAllocString(L"demo"), &connected);
  core.get_DataTable(&table);
  if (table == nullptr) throw std::runtime_error("no lower core object");
  table->AddNumReg(::NUMREG_INT, 1, 100, &item);
  table->Refresh(&refreshed);
  if (connected == VARIANT_FALSE || refreshed == VARIANT_FALSE) throw std::runtime_error("no data");
  return *item;
}

template <class Call>
double NanosecondsOf(const Call& call) {
  constexpr int Calls = 200000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < Calls; ++i) Demand(call(), "a call fails");
  const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
  return taken.count() / Calls;
}

bool Measure() {
  IDispatch& item = Register();
  std::array<wchar_t, 9> name{L"GetValue"};
  LPOLESTR text = name.data();
  DISPID id = DISPID_UNKNOWN;
  Demand(item.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), "no GetValue");
  VARIANT value{};
  std::array<VARIANT, 2> arguments{};  // the last one first
  arguments[0].vt = VT_BYREF | VT_VARIANT;
  arguments[0].pvarVal = &value;
  arguments[1].vt = VT_I4;
  arguments[1].lVal = 50;
  DISPPARAMS given{arguments.data(), nullptr, 2, 0};
  DISPPARAMS none{};
  Empty empty;
  ITypeInfo* const description = DescriptionOfEmpty();
  double getValue = std::numeric_limits<double>::max();
  double system = getValue;
  for (int round = 0; round < 9; ++round) {
    getValue = std::min(getValue, NanosecondsOf([&] {
                          VARIANT result{};
                          return item.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                             &given, &result, nullptr, nullptr);
                        }));
    system = std::min(system, NanosecondsOf([&] {
                        VARIANT result{};
                        return DispInvoke(&empty, description, 1, DISPATCH_METHOD, &none, &result,
                                          nullptr, nullptr);
                      }));
  }
  std::printf("GetValue, late bound        %7.0f ns\n", getValue);
  std::printf("the system's, empty member  %7.0f ns\n", system);
  return value.vt == VT_I4 && empty.calls > 0 && getValue <= 1000 && getValue <= system;
}

}  // namespace
}  // namespace orif::bench

int main() try {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  return orif::bench::Measure() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}

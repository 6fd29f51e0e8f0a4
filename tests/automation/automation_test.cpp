// The boundary of automation as the system sees it: what an object is called with, what becomes of
// what it answers, when it is let go of, and in which apartment it serves.
#include <gmock/gmock.h>

#include <windows.h>

#include <oleauto.h>

#include "orif/lowerlayer/Automation.h"
#include "orif/lowerlayer/LowerCore.h"
#include "orif/orif.h"
#include "tests/support/System.h"

namespace orif::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

// An object that shows its calls to a test and answers what the test wants. It lives on the stack.
struct Probe final : IDispatch {
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, LONG*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD how, DISPPARAMS* given,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const LONG named = given->cNamedArgs == 1 ? *given->rgdispidNamedArgs : 0;
    call = {id, how, named, result != nullptr};
    return answer(given->rgvarg, result, exception);
  }

  ULONG references = 0;
  std::vector<LONG> call;
  std::function<HRESULT(VARIANT*, VARIANT*, EXCEPINFO*)> answer = [](auto...) { return S_OK; };
};

struct Automation : testing::Test {
  Probe probe;
  std::shared_ptr<Dispatch> core = AdaptAutomation(probe);
};

TEST_F(Automation, ArgumentsAreVariantsOfTheirOwnTypesLastOneFirst) {
  std::array<std::int16_t, 3> words{1, 2, 3};
  std::string text = "caf\xE9";
  const OrvexValue in[]{{ORVEX_I2, 0, 0, {.i2 = -5}},
                        {ORVEX_I2 | ORVEX_BYREF, 0, 3, {.i2Ref = words.data()}},
                        {ORVEX_TEXT | ORVEX_BYREF, 0, 4, {.text = text.data()}}};
  probe.answer = [&](VARIANT* given, VARIANT* result, auto) {
    EXPECT_TRUE(given[2].vt == VT_I2 && given[2].iVal == -5);
    EXPECT_TRUE(given[1].vt == (VT_I2 | VT_BYREF) && given[1].piVal == words.data());
    EXPECT_TRUE(given[0].vt == (VT_BSTR | VT_BYREF) && *given[0].pbstrVal == std::wstring(L"café"));
    SysReAllocString(given[0].pbstrVal, L"another");
    result->vt = VT_BSTR, result->bstrVal = SysAllocString(L"é");
    return S_OK;
  };
  const OrvexValue answer = core->Invoke(23, ORVEX_METHOD, in);
  EXPECT_EQ(std::string(answer.as.text, answer.as.text + answer.count), "\xE9");
  EXPECT_THAT(probe.call, ElementsAre(23, DISPATCH_METHOD, 0, true));
  probe.answer = [](auto...) { return S_OK; };
  core->Invoke(3, ORVEX_PUT, {in, 1});
  EXPECT_THAT(probe.call, ElementsAre(3, DISPATCH_PROPERTYPUT, DISPID_PROPERTYPUT, false));
}

TEST_F(Automation, FailuresBecomeFaultsWithTheirReason) {
  const auto call = [this] { core->Invoke(1, ORVEX_METHOD, {}); };
  probe.answer = [](auto...) { return HRESULT(0x8004FFFF); };
  EXPECT_THAT(call, ThrowsMessage<Fault>(HasSubstr("Automation error 0x8004FFFF")));
  probe.answer = [](auto, auto, EXCEPINFO* told) {
    told->pfnDeferredFillIn = [](EXCEPINFO* later) WINAPI -> HRESULT {
      return later->bstrDescription = SysAllocString(L"cable"), S_OK;
    };
    return DISP_E_EXCEPTION;
  };
  EXPECT_THAT(call, ThrowsMessage<Fault>(HasSubstr("cable")));
}

TEST_F(Automation, ResultsOfUnknownTypesAreNumbersOrFaultsWhereTheyAreUsed) {
  VARTYPE type = VT_EMPTY;
  probe.answer = [&](auto, VARIANT* result, auto) {
    return result->vt = type, result->llVal = type == VT_DISPATCH ? 0 : 42, S_OK;
  };
  const Ref lower(new LowerCore(core));
  for (const int unusable : {VT_DISPATCH, VT_NULL, VT_ERROR}) {
    type = static_cast<VARTYPE>(unusable);
    EXPECT_NO_THROW(lower->Reset());
    EXPECT_THAT([&] { lower->Connect(); }, ThrowsMessage<Fault>(HasSubstr("Type mismatch")));
  }
  for (const int number : {VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT}) {
    type = static_cast<VARTYPE>(number);
    EXPECT_EQ(core->Invoke(1, ORVEX_METHOD, {}).as.r8, 42) << type;
  }
}

TEST_F(Automation, ReferencesAreGivenBackOnceWhateverTheEnd) {
  bool again = false;
  std::optional<Core> client;
  // The fixture has one reference, a connected Core another, also while a call of its own object
  // runs the host's code, which disconnects.
  probe.answer = [&](auto...) {
    if (std::exchange(again, false)) client->Disconnect();
    return client && probe.references != 2 ? E_UNEXPECTED : S_OK;
  };
  for (int i = 0; i < 10000; ++i) {
    client.reset();
    ASSERT_EQ(probe.references, 1U);
    client.emplace([this] { return AdaptAutomation(probe); });
    ASSERT_TRUE(client->Connect("robot"));
    again = i % 3 == 0;
    ASSERT_TRUE(client->ClearAlarm());
    if (i % 3 == 1) client->Disconnect();
    ASSERT_EQ(probe.references, i % 3 == 2 ? 2U : 1U);
  }
}

TEST(RegisteredComponent, ServesEveryCoreOfAnApartmentOfItsOwn) {
  for (const char* name :
       {"OrvexCommLibSimulator.Core", "{E3DE6720-D863-4286-8295-326B99EEFAD0}"}) {
    SetEnvironment("ORVEX_COMMLIB", name);
    const Core one;  // keeps the apartment
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(Core().Connect("demo")) << name;
  }
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  EXPECT_THAT(Core().DebugMessage(), HasSubstr("does not work in this thread's apartment"));
}

}  // namespace
}  // namespace orif::test

// What a host does wrong, and what wears a component out: wrong arguments for every member, and
// many lives, threads and apartments. Nothing may be left over.
#include <gmock/gmock.h>

#include <random>

#include "tests/automation/Described.h"
#include "tests/automation/HostObject.h"
#include "tests/support/System.h"

namespace orif::test {
namespace {

using testing::AnyOf;
using testing::IsEmpty;

// A script's array of one element, or an object that has nothing.
struct ScriptArray final : HostObject {
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    const std::wstring_view name(names[0]);
    *ids = name == L"length" ? 1 : name == L"0" ? 2 : DISPID_UNKNOWN;
    return isArray && *ids != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (!isArray || id < 1) return DISP_E_MEMBERNOTFOUND;
    if (id == 1) host::Store(*result, std::int32_t{1});
    if (id == 2) host::Store(*result, std::string_view("7"));
    return S_OK;
  }

  bool isArray = true;
};

// What is allocated in the process, in blocks.
std::size_t Blocks() {
  std::array<HANDLE, 32> heaps{};
  const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
  std::size_t blocks = 0;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) ++blocks;
    }
  }
  return blocks;
}

// Runs `action` often enough that what is made only once has been made, and then expects that a
// second time leaves nothing behind.
template <class Action>
void ExpectNoGrowth(const Action& action) {
  action();
  const std::size_t before = Blocks();
  action();
  const std::size_t after = Blocks();
  ASSERT_GT(before, 0U);
  EXPECT_LT(after, before + 10);
}

class ComponentFaults : public Component {
 protected:
  ComponentFaults() {
    core.DebugLog(true);
    trail_ = core.GetDebugMessages();
    two_.vt = VT_ARRAY | VT_R4;
    std::array<SAFEARRAYBOUND, 2> square{{{3, 0}, {3, 0}}};
    two_.parray = SafeArrayCreate(VT_R4, 2, square.data());
    nothing_.isArray = false;
  }
  ~ComponentFaults() override { EXPECT_EQ(list_.references + nothing_.references, 2U); }

  static VARIANT Raw(VARTYPE type, void* reference = nullptr) {
    VARIANT made{};
    made.vt = type;
    made.byref = reference;
    return made;
  }
  static VARIANT Missing() {
    VARIANT missing = Raw(VT_ERROR);
    missing.scode = DISP_E_PARAMNOTFOUND;
    return missing;
  }
  VARIANT Text(const char* text) {
    host::Store(texts_.emplace_back(), std::string_view(text));
    return texts_.back();
  }

  /// Whether a member has run since the last look.
  bool HasRun() {
    const std::string trail = core.GetDebugMessages();
    const bool told = std::exchange(trail_, trail) != trail;
    return !lower->Calls().empty() || told;
  }

  /// What does not do for a parameter of the type, and the code that says so.
  std::vector<std::pair<VARIANT, HRESULT>> Unfit(VARTYPE type) {
    VARIANT large{};
    host::Store(large, 1e300);
    const VARIANT null = Raw(VT_NULL);
    switch (type) {
      case VT_I2:
      case VT_I4:
      case VT_R4:
        return {{Text("many"), DISP_E_TYPEMISMATCH},  {large, DISP_E_OVERFLOW},
                {null, DISP_E_TYPEMISMATCH},          {two_, DISP_E_TYPEMISMATCH},
                {Missing(), DISP_E_PARAMNOTOPTIONAL}, {Raw(VT_BYREF | VT_I4), E_POINTER}};
      case VT_BSTR:
        return {{null, DISP_E_TYPEMISMATCH},
                {two_, DISP_E_TYPEMISMATCH},
                {Missing(), DISP_E_PARAMNOTOPTIONAL},
                {Raw(VT_BYREF | VT_BSTR), E_POINTER}};
      case VT_VARIANT:
        return {{Raw(VT_BYREF | VT_VARIANT), E_POINTER}};
      default:
        if ((type & VT_ARRAY) != 0) {
          return {{null, DISP_E_TYPEMISMATCH},
                  {Text("many"), DISP_E_TYPEMISMATCH},
                  {two_, DISP_E_TYPEMISMATCH},
                  {Raw(VT_DISPATCH, &nothing_), DISP_E_TYPEMISMATCH},
                  {Raw(VT_BYREF | VT_ARRAY | VT_R4), E_POINTER}};
        }
        return {{Raw(VT_BYREF | VT_ARRAY | VT_R4, &two_.parray), DISP_E_TYPEMISMATCH},
                {Raw(VT_BYREF | VT_I2), E_POINTER},
                {Raw(VT_BYREF | VT_VARIANT), E_POINTER}};
    }
  }

  host::Value two_;
  ScriptArray list_;
  ScriptArray nothing_;

 private:
  std::deque<host::Value> texts_;
  std::string trail_;
};

TEST_F(ComponentFaults, EveryArgumentThatIsUnfitIsRefusedByItsNumber) {
  std::size_t refused = 0;
  for (IDispatch* const object : objects) {
    for (const MemberDescription& member : MembersOf(*object)) {
      for (std::size_t i = 0; i < member.types.size(); ++i) {
        const bool optional = i + member.optional >= member.types.size();
        for (const auto& [unfit, code] : Unfit(member.types[i])) {
          if (optional && code == DISP_E_PARAMNOTOPTIONAL) continue;
          const Fitting fitting(member.types);
          std::vector<VARIANT> arguments = fitting.Arguments();
          arguments[i] = unfit;
          UINT wrong = 99;
          VARIANT untouched = Raw(VT_I4, &wrong);
          EXPECT_EQ(host::InvokeByName(*object, member.name.c_str(), member.kind, arguments,
                                       &untouched, &wrong),
                    code)
              << member.name << " argument " << i << " of type " << unfit.vt;
          EXPECT_EQ(wrong, member.types.size() - 1 - i) << member.name;
          EXPECT_EQ(untouched.byref, &wrong);
          EXPECT_FALSE(HasRun()) << member.name;
          ++refused;
        }
      }
      // One argument too many, and one too few.
      for (const int more : {1, -1}) {
        const Fitting fitting(member.types);
        std::vector<VARIANT> arguments = fitting.Arguments();
        const bool puts = member.kind == DISPATCH_PROPERTYPUT;
        if (more < 0 && (arguments.empty() || member.optional > 0 || puts)) continue;
        arguments.resize(arguments.size() + static_cast<std::size_t>(more));
        EXPECT_EQ(host::InvokeByName(*object, member.name.c_str(), member.kind, arguments, nullptr),
                  DISP_E_BADPARAMCOUNT)
            << member.name;
        EXPECT_FALSE(HasRun()) << member.name;
      }
    }
    LPOLESTR unknown = const_cast<LPOLESTR>(L"Unknown");
    DISPID id = 0;
    EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &unknown, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
  }
  EXPECT_GT(refused, 1000U);
}

// Arguments of all kinds in any number, by place and by name, for members called in any way. Those
// that release the objects themselves are left to other tests.
TEST_F(ComponentFaults, ARandomHostDoesNoHarm) {
  std::vector<std::pair<IDispatch*, MemberDescription>> members;
  for (IDispatch* const object : objects) {
    for (const MemberDescription& member : MembersOf(*object)) {
      if (member.name != "Disconnect" && member.name != "Kill" && member.name != "Clear") {
        members.emplace_back(object, member);
      }
    }
  }
  std::map<HRESULT, int> codes;
  const auto run = [&] {
    std::mt19937 random(20261121);
    const auto below = [&](std::size_t end) { return random() % end; };
    for (int turn = 0; turn < 20000; ++turn) {
      const auto& [object, member] = members[below(members.size())];
      // Fitting arguments, some of them replaced.
      std::vector<VARTYPE> types = member.types;
      if (below(4) == 0) types.resize(below(types.size() + 3), VT_I4);
      const Fitting fitting(types);
      std::vector<VARIANT> arguments = fitting.Arguments();
      std::array<host::Value, 3> variables;
      host::Store(variables[0], std::string_view("text"));
      host::Store(variables[1], 2.5);
      VARIANT inner = Raw(VT_BYREF | VT_VARIANT, &variables[2]);
      const std::vector<VARIANT> pool{VARIANT{},
                                      Raw(VT_NULL),
                                      Missing(),
                                      Raw(VT_DISPATCH, &list_),
                                      Raw(VT_DISPATCH, &nothing_),
                                      Raw(VT_UNKNOWN, &list_),
                                      Raw(VT_DISPATCH),
                                      Raw(VT_BYREF | VT_VARIANT, &variables[below(3)]),
                                      Raw(VT_BYREF | VT_VARIANT, &inner),
                                      Raw(VT_BYREF | VT_BSTR, &variables[0].bstrVal),
                                      Raw(VT_BYREF | VT_R8, &variables[1].dblVal),
                                      Raw(VT_BYREF | VT_R8),
                                      Raw(static_cast<VARTYPE>(random())),
                                      Raw(VT_BOOL, &inner),
                                      variables[0],
                                      variables[1],
                                      two_};
      for (std::size_t n = below(3); n > 0 && !arguments.empty(); --n) {
        const std::size_t at = below(arguments.size());
        arguments[at] = pool[below(pool.size())];
        // A type of no meaning has no content either.
        if ((arguments[at].vt & VT_ARRAY) != 0 && arguments[at].byref == nullptr) {
          arguments[at].vt = VT_EMPTY;
        }
      }
      std::array<DISPID, 2> names{static_cast<DISPID>(below(8)), static_cast<DISPID>(below(8))};
      DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                            static_cast<UINT>(below(5) == 0 ? below(3) : 0)};
      std::reverse(arguments.begin(), arguments.end());
      parameters.cNamedArgs = std::min(parameters.cNamedArgs, parameters.cArgs);
      const WORD kind = below(4) == 0 ? static_cast<WORD>(1 << below(4)) : member.kind;
      host::Value result;
      UINT wrong = 0;
      lower->Calls();
      const HRESULT code =
          object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                         below(4) == 0 ? nullptr : &result, nullptr, &wrong);
      ASSERT_THAT(code, AnyOf(S_OK, DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, DISP_E_BADPARAMCOUNT,
                              DISP_E_PARAMNOTFOUND, DISP_E_PARAMNOTOPTIONAL, DISP_E_MEMBERNOTFOUND,
                              DISP_E_BADVARTYPE, E_POINTER))
          << member.name << " in turn " << turn;
      ++codes[code];
      if (code == S_OK) continue;
      ASSERT_TRUE(wrong == 0 || wrong < parameters.cArgs) << member.name;
      ASSERT_EQ(result.vt, VT_EMPTY) << member.name;
      ASSERT_THAT(lower->Calls(), IsEmpty()) << member.name << " in turn " << turn;
    }
    table->Clear();
    core.DataTable2()->Clear();
  };
  run();
  ExpectNoGrowth(run);
  EXPECT_GT(codes[S_OK], 10000);
  EXPECT_GT(codes.size(), 6U);
}

TEST(ComponentLives, TenThousandCoresLeaveNothing) {
  const auto lower = std::make_shared<RecordingDispatch>();
  const host::LowerClass lowerClass([&] { return lower; });
  const Fitting fitting({VT_I4, VT_BYREF | VT_VARIANT});
  lower->On(DispId::ReadRShort, 1);
  int number = 0;
  ExpectNoGrowth([&] {
    for (int i = 0; i < 5000; ++i) {
      Held held(lowerClass);
      host::Value refreshed;
      host::Value read;
      host::InvokeByName(*held.objects[1], "Refresh", DISPATCH_METHOD, {}, &refreshed);
      host::InvokeByName(*held.objects[2], "GetValue", DISPATCH_METHOD, fitting.Arguments(), &read);
      ASSERT_TRUE(host::Load<bool>(refreshed) && host::Load<bool>(read));
      if (++number % 2 == 0) {
        host::InvokeByName(*held.objects[0], "Disconnect", DISPATCH_METHOD, {}, nullptr);
      }
      held.ReleaseAll();
      lower->Calls();
    }
  });
  EXPECT_EQ(lower.use_count(), 1);
  EXPECT_EQ(CanUnload(), S_OK);
}

// One Core from its making to its end, in an apartment of its own.
DWORD WINAPI LiveOnce(void* failed) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    const auto core = host::NewCore();
    VARIANT_BOOL connected = VARIANT_FALSE;
    const platform::AutomationText name = platform::Wide("demo");
    ::DataTable* table = nullptr;
    ::DataNumReg* item = nullptr;
    core->Connect(name.get(), &connected);
    core->put_DebugLog(VARIANT_TRUE);
    core->get_DataTable(&table);
    VARIANT_BOOL refreshed = VARIANT_FALSE;
    if (table != nullptr) {
      table->AddNumReg(::NUMREG_INT, 1, 2, &item);
      table->Refresh(&refreshed);
      if (item != nullptr) item->Release();
      table->Release();
    }
    if (connected == VARIANT_FALSE || item == nullptr || refreshed == VARIANT_FALSE) {
      InterlockedIncrement(static_cast<LONG*>(failed));
    }
  }
  CoUninitialize();
  return 0;
}

TEST(ComponentLives, ThreadsOfAHostComeAndGo) {
  SetEnvironment("ORVEX_COMMLIB", ORIF_SIMULATOR_COMPONENT);
  LONG failed = 0;
  ExpectNoGrowth([&] {
    for (int round = 0; round < 10; ++round) {
      std::array<HANDLE, 16> threads{};
      for (HANDLE& thread : threads) {
        thread = CreateThread(nullptr, 0, LiveOnce, &failed, 0, nullptr);
      }
      WaitForMultipleObjects(threads.size(), threads.data(), TRUE, INFINITE);
      for (const HANDLE thread : threads) CloseHandle(thread);
    }
  });
  EXPECT_EQ(failed, 0);
  EXPECT_EQ(CanUnload(), S_OK);
}

// A call from another apartment goes through the system's proxy, to the thread of the Core. The one
// of an interface of its own takes the registered type library.
struct Visit {
  IStream* stream;
  DWORD home;
  HRESULT code;
  LONG port;
  LONG earlyPort;
};
DWORD WINAPI CallFromAfar(void* given) {
  auto& visit = *static_cast<Visit*>(given);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  void* proxy = nullptr;
  visit.code = CoGetInterfaceAndReleaseStream(visit.stream, IID_IDispatch, &proxy);
  if (SUCCEEDED(visit.code)) {
    const host::Reference<IDispatch> core(static_cast<IDispatch*>(proxy));
    host::Value port;
    host::Store(port, std::int32_t{8194});
    visit.code = host::InvokeByName(*core, "PortNumber", DISPATCH_PROPERTYPUT, {port}, nullptr);
    host::Value answer;
    if (SUCCEEDED(visit.code)) {
      visit.code = host::InvokeByName(*core, "PortNumber", DISPATCH_PROPERTYGET, {}, &answer);
    }
    visit.port = answer.lVal;
    void* early = nullptr;
    if (SUCCEEDED(core->QueryInterface(__uuidof(::Core), &early))) {
      const host::Reference<::Core> typed(static_cast<::Core*>(early));
      typed->get_PortNumber(&visit.earlyPort);
    }
  }
  CoUninitialize();
  PostThreadMessageW(visit.home, WM_QUIT, 0, 0);
  return 0;
}

TEST_F(Component, IsCalledFromAnotherApartment) {
  DWORD caller = 0;
  lower->On(DispId::PortNumber, [&](auto) {
    caller = GetCurrentThreadId();
    return Long(8194);
  });
  Visit visit{nullptr, GetCurrentThreadId(), E_FAIL, 0, 0};
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, objects[0], &visit.stream), S_OK);
  const HANDLE thread = CreateThread(nullptr, 0, CallFromAfar, &visit, 0, nullptr);
  for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) DispatchMessageW(&message);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  EXPECT_EQ(visit.code, S_OK);
  EXPECT_EQ(visit.port, 8194);
  EXPECT_EQ(visit.earlyPort, 8194);
  EXPECT_EQ(caller, GetCurrentThreadId());
}

TEST(ComponentLives, TheModuleGoesWhenNothingOfItLives) {
  EXPECT_EQ(CanUnload(), S_OK);
  const auto getClass =
      host::Exported<HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**)>("DllGetClassObject");
  void* found = nullptr;
  EXPECT_EQ(getClass(IID_NULL, IID_IClassFactory, &found), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(getClass(__uuidof(::OrifCore), IID_IDispatch, &found), E_NOINTERFACE);
  EXPECT_EQ(CanUnload(), S_OK);
  ASSERT_EQ(getClass(__uuidof(::OrifCore), IID_IClassFactory, &found), S_OK);
  host::Reference<IClassFactory> factory(static_cast<IClassFactory*>(found));
  EXPECT_EQ(CanUnload(), S_FALSE);
  factory->LockServer(TRUE);
  void* made = nullptr;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &made), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &made), E_NOINTERFACE);
  factory.reset();
  EXPECT_EQ(CanUnload(), S_FALSE);
  ASSERT_EQ(getClass(__uuidof(::OrifCore), IID_IClassFactory, &found), S_OK);
  factory.reset(static_cast<IClassFactory*>(found));
  factory->LockServer(FALSE);
  factory.reset();
  EXPECT_EQ(CanUnload(), S_OK);
  // A lower core object with the C interface is an automation object of this module.
  SetEnvironment("ORVEX_COMMLIB", ORIF_SIMULATOR_COMPONENT);
  IDispatch* lib = nullptr;
  host::NewCore()->GetLib(&lib);
  ASSERT_NE(lib, nullptr);
  EXPECT_EQ(CanUnload(), S_FALSE);
  lib->Release();
  EXPECT_EQ(CanUnload(), S_OK);
}

TEST(ComponentLives, IsRegisteredWhereItIsAskedFor) {
  const auto install = host::Exported<HRESULT STDMETHODCALLTYPE(BOOL, LPCWSTR)>("DllInstall");
  EXPECT_EQ(install(TRUE, L"everywhere"), E_INVALIDARG);
}

}  // namespace
}  // namespace orif::test

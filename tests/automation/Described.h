// The members of the component's objects as its type library describes them, and one object of each
// class to call them on.
#pragma once

#include <array>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Transcript.h"

namespace orif::test {

/// A reference to a description of the system's, which it frees in its own way.
struct FunctionDescription {
  FunctionDescription(ITypeInfo& info, UINT at) : owner(info) {
    if (FAILED(info.GetFuncDesc(at, &function))) function = nullptr;
  }
  FunctionDescription(const FunctionDescription&) = delete;
  FunctionDescription& operator=(const FunctionDescription&) = delete;
  ~FunctionDescription() {
    if (function != nullptr) owner.ReleaseFuncDesc(function);
  }
  const FUNCDESC* operator->() const { return function; }

  ITypeInfo& owner;
  FUNCDESC* function = nullptr;
};

struct MemberDescription {
  DISPID id;
  std::size_t entry;  // in the table of the interface
  WORD kind;          // as in a call
  std::string name;
  std::vector<std::string> parameters;
  std::vector<VARTYPE> types;
  std::size_t optional;
};

/// The type of a parameter, as a variant has it.
inline VARTYPE TypeIn(const TYPEDESC& type) {
  if (type.vt == VT_PTR) return static_cast<VARTYPE>(VT_BYREF | TypeIn(*type.lptdesc));
  if (type.vt == VT_SAFEARRAY) return static_cast<VARTYPE>(VT_ARRAY | TypeIn(*type.lptdesc));
  return type.vt == VT_USERDEFINED ? static_cast<VARTYPE>(VT_I4) : type.vt;
}

inline std::string Taken(BSTR text) {
  const platform::AutomationText owned(text);
  return platform::Narrow(text);
}

/// The members of a class, in the order of its interface, without those that all objects have.
inline std::vector<MemberDescription> MembersOf(IDispatch& object) {
  ITypeInfo* info = nullptr;
  EXPECT_EQ(object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
  const host::Reference<ITypeInfo> owned(info);
  std::vector<MemberDescription> members;
  for (UINT i = 0;; ++i) {  // systems count the functions of a class in different ways
    const FunctionDescription function(*info, i);
    if (function.function == nullptr) return members;
    if (function->memid >= 0x60000000) continue;
    std::array<BSTR, 32> names{};
    UINT named = 0;
    info->GetNames(function->memid, names.data(), names.size(), &named);
    MemberDescription member{function->memid,
                             static_cast<std::size_t>(function->oVft) / sizeof(void*),
                             static_cast<WORD>(function->invkind),
                             Taken(names[0]),
                             {},
                             {},
                             0};
    for (UINT n = 1; n < named; ++n) member.parameters.push_back(Taken(names[n]));
    for (int n = 0; n < function->cParams; ++n) {
      const ELEMDESC& parameter = function->lprgelemdescParam[n];
      const USHORT flags = parameter.paramdesc.wParamFlags;
      if ((flags & PARAMFLAG_FRETVAL) != 0) continue;
      member.types.push_back(TypeIn(parameter.tdesc));
      if ((flags & PARAMFLAG_FOPT) != 0) ++member.optional;
    }
    // The system does not tell the name of what is put.
    if (member.kind == DISPATCH_PROPERTYPUT) member.parameters.assign(1, "value");
    member.parameters.resize(member.types.size());
    members.push_back(std::move(member));
  }
}

/// Whether the component may be unloaded: S_OK if nothing of it lives, else S_FALSE.
inline HRESULT CanUnload() {
  static const auto canUnload = host::Exported<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow");
  return canUnload();
}

/// A host's references to a Core, its tables and an item of each, and nothing else.
struct Held {
  explicit Held(const host::LowerClass& lower) {
    objects[0] = host::CreateCore(lower).release();
    host::Value answer;
    auto* core = static_cast<::Core*>(objects[0]);
    VARIANT_BOOL done = VARIANT_FALSE;
    core->Connect(platform::Wide("robot").get(), &done);
    ::DataTable* table = nullptr;
    core->get_DataTable(&table);
    objects[1] = table;
    ::DataNumReg* item = nullptr;
    table->AddNumReg(::NUMREG_INT, 1, 2, &item);
    objects[2] = item;
    core->get_DataTable2(&table);
    objects[3] = table;
    table->AddNumReg(::NUMREG_REAL, 1, 2, &item);
    objects[4] = item;
  }
  void Release(std::size_t i) {
    if (objects[i] != nullptr) std::exchange(objects[i], nullptr)->Release();
  }
  void ReleaseAll() {
    for (std::size_t i = 0; i < objects.size(); ++i) Release(i);
  }

  std::array<IDispatch*, 5> objects{};
};

/// One object of each class, over a lower core object that records.
class Component : public testing::Test {
 protected:
  Component() {
    lower->On(DispId::ReadRShort, 1);
    core.Connect("robot");
    table = core.DataTable();
    items = {table->AddNumReg(NUMREG_INT, 1, 9),
             table->AddSysVar(SYSVAR_STRING, "$S"),
             table->AddString(STRREG, 1, 2),
             table->AddTask(TASK, 1),
             table->AddAlarm(ALARM_LIST, 1),
             table->AddPosReg(POSREG, 1, 1, 2),
             table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 2),
             table->AddPosRegMG(POSREGMG, "C,J6", 1, 2),
             table->AddCurPos(CURPOS, 1),
             table->AddSysVarPos(SYSVAR_POS, "$P")};
    table->Refresh();
    objects = {&core.Automation(), &table->Automation()};
    for (const auto& item : items) objects.push_back(&item->Automation());
    lower->Calls();
  }

  std::shared_ptr<RecordingDispatch> lower = std::make_shared<RecordingDispatch>();
  Core core{[this] { return lower; }};
  std::shared_ptr<DataTable> table;
  std::vector<std::shared_ptr<DataItem>> items;
  std::vector<IDispatch*> objects;
};

/// Arguments that a member of these types takes, which refer to variables of their own.
class Fitting {
 public:
  explicit Fitting(const std::vector<VARTYPE>& types) {
    for (const VARTYPE type : types) arguments_.push_back(Made(type));
  }
  Fitting(const Fitting&) = delete;
  Fitting& operator=(const Fitting&) = delete;

  std::vector<VARIANT> Arguments() const { return arguments_; }

 private:
  VARIANT Made(VARTYPE type) {
    host::Value& value = variables_.emplace_back();
    const auto held = static_cast<VARTYPE>(type & ~VT_BYREF);
    if (held == VT_BSTR) {
      host::Store(value, std::string_view("C"));
    } else if ((held & VT_ARRAY) != 0) {
      value.vt = held;
      value.parray = SafeArrayCreateVector(held & VT_TYPEMASK, 0, 10);
    } else {
      host::Store(value, std::int32_t{1});
      if (held != VT_VARIANT) VariantChangeType(&value, &value, 0, held);
    }
    VARIANT made = value;
    if ((type & VT_BYREF) != 0) {
      made.vt = type;
      made.byref = held == VT_VARIANT ? static_cast<void*>(&value) : &value.llVal;
    }
    return made;
  }

  std::deque<host::Value> variables_;
  std::vector<VARIANT> arguments_;
};

}  // namespace orif::test

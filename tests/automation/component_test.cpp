// The automation component as a host sees it beside its calls: what the type library tells, how
// variants of all forms come and go, and how long objects and the module live.
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "tests/automation/Described.h"
#include "tests/automation/HostObject.h"

namespace orif::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

// The text of a public header, without comments and line ends.
std::string Header(const std::string& name) {
  std::stringstream text;
  text << std::ifstream(ORIF_SOURCES "/orif/" + name).rdbuf();
  const std::string code = std::regex_replace(text.str(), std::regex("//[^\n]*"), "");
  return std::regex_replace(code, std::regex("\\s+"), " ");
}

std::vector<std::smatch> Matches(const std::string& text, const std::regex& wanted) {
  return {std::sregex_iterator(text.begin(), text.end(), wanted), std::sregex_iterator()};
}

// The public members of a class and of its bases, as "Name(Argument, ...)".
std::vector<std::string> DeclaredMembers(const std::string& name) {
  if (name == "Item") return {};
  const std::string directory = name == "Core"        ? "core/"
                                : name == "DataTable" ? "datatable/"
                                                      : "items/";
  const std::string header = Header(directory + name + ".h");
  std::smatch found;
  const std::regex itsClass("class ORIF_EXPORT " + name +
                            "( : public (\\w+))? \\{ public:(.*?)(protected|private):");
  EXPECT_TRUE(std::regex_search(header, found, itsClass)) << name;
  std::vector<std::string> members;
  if (found[2].matched) members = DeclaredMembers(found[2]);
  const std::string body = found[3];
  for (const auto& member : Matches(body, std::regex("(\\w+)\\(([^()]*)\\) (const )?noexcept;"))) {
    if (member[1] == name) continue;  // a constructor
    const std::string arguments = member[2];
    std::string told = member[1].str() + "(";
    for (const auto& argument : Matches(arguments, std::regex("(\\w+)( = [^,]*)?(,|$)"))) {
      told += argument[1].str() + argument[3].str();
    }
    members.push_back(told + ")");
  }
  return members;
}

TEST_F(Component, IsDescribedAsItsClassesAre) {
  for (IDispatch* const object : objects) {
    host::Value type;
    ASSERT_EQ(host::InvokeByName(*object, "GetTypeName", DISPATCH_METHOD, {}, &type), S_OK);
    const auto name = host::Load<std::string>(type);
    std::vector<std::string> described;
    for (const MemberDescription& member : MembersOf(*object)) {
      std::string told = member.name + "(";
      const char* separator = "";
      for (const std::string& parameter : member.parameters) {
        told += std::exchange(separator, ",") + parameter;
      }
      if (member.id < 101) described.push_back(told + ")");
    }
    EXPECT_THAT(described, UnorderedElementsAreArray(DeclaredMembers(name))) << name;
  }
}

TEST_F(Component, AnswersAsItIsDescribed) {
  for (IDispatch* const object : objects) {
    std::size_t entry = 7;  // behind those of IDispatch
    for (const MemberDescription& member : MembersOf(*object)) {
      SCOPED_TRACE(member.name);
      EXPECT_EQ(member.entry, entry++);
      std::vector<platform::AutomationText> texts;
      texts.push_back(platform::Wide(convert::UpperCase(member.name)));
      const bool puts = member.kind == DISPATCH_PROPERTYPUT;
      if (!puts) {
        for (const std::string& parameter : member.parameters) {
          texts.push_back(platform::Wide(parameter));
        }
      }
      std::vector<LPOLESTR> names;
      std::vector<DISPID> expected{member.id};
      for (const auto& text : texts) names.push_back(text.get());
      for (DISPID i = 1; i < static_cast<DISPID>(names.size()); ++i) expected.push_back(i - 1);
      std::vector<DISPID> ids(names.size());
      EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                      LOCALE_USER_DEFAULT, ids.data()),
                S_OK);
      EXPECT_EQ(ids, expected);
      // Far too many arguments: a member that is there says so, and nothing runs.
      std::array<VARIANT, 30> many{};
      DISPPARAMS parameters{many.data(), nullptr, many.size(), 0};
      const auto found = [&](WORD kind) {
        const HRESULT code = object->Invoke(member.id, IID_NULL, LOCALE_USER_DEFAULT, kind,
                                            &parameters, nullptr, nullptr, nullptr);
        EXPECT_TRUE(code == DISP_E_BADPARAMCOUNT || code == DISP_E_MEMBERNOTFOUND) << code;
        return code == DISP_E_BADPARAMCOUNT;
      };
      EXPECT_TRUE(found(member.kind));
      EXPECT_EQ(found(DISPATCH_PROPERTYGET),
                member.kind == DISPATCH_PROPERTYGET || puts || member.types.empty());
      const bool settings = member.name == "TimeOutValue" || member.name == "PortNumber" ||
                            member.name == "ClientID" ||
                            (member.name == "DebugLog" && object == objects[0]);
      EXPECT_EQ(found(DISPATCH_PROPERTYPUT), settings);
    }
  }
  EXPECT_THAT(lower->Calls(), ElementsAre());
}

std::string Told(VARIANT& value) {
  if (value.vt == (VT_ARRAY | VT_VARIANT)) {
    std::string all;
    for (ULONG i = 0; i < value.parray->rgsabound[0].cElements; ++i) {
      all += Told(static_cast<VARIANT*>(value.parray->pvData)[i]) + " ";
    }
    return all;
  }
  host::Value text;
  VariantChangeType(&text, &value, 0, VT_BSTR);
  return std::to_string(value.vt) + ":" +
         (text.vt == VT_BSTR ? platform::Narrow(text.bstrVal) : "");
}

// What stands behind the members of the object model is reached early bound at its own place.
TEST_F(Component, AdditionsAnswerTheSameEarlyAndLateBound) {
  lower->On(DispId::ReadRShort, [](auto arguments) {
    for (std::int16_t i = 0; i < arguments[2].as.i2; ++i) arguments[1].as.i2Ref[i] = 0x4101 + i;
    return Long(1);
  });
  lower->On(DispId::ShortToFloat, [](auto arguments) { return Real(*arguments[0].as.i2Ref); });
  lower->On(DispId::ShortToLong, [](auto arguments) { return Long(*arguments[0].as.i2Ref); });
  table->Refresh();
  lower->Calls();
  std::size_t compared = 0;
  for (IDispatch* const object : objects) {
    std::set<std::string> answers;
    for (const MemberDescription& member : MembersOf(*object)) {
      if (member.id < 101) continue;
      SCOPED_TRACE(member.name);
      const bool ofJointGroup = member.name == "Joint" && member.types.size() == 2;
      std::vector<VARIANT> arguments(member.types.size());
      for (VARIANT& argument : arguments) host::Store(argument, std::int32_t{1});
      if (ofJointGroup) arguments[1].lVal = 2;
      host::Value late;
      ASSERT_EQ(host::InvokeByName(*object, member.name.c_str(), member.kind, arguments, &late),
                S_OK);
      const auto called = lower->Calls();
      host::Value early;
      VARIANT result{};
      result.vt = VT_BYREF | VT_VARIANT;
      result.pvarVal = &early;
      arguments.push_back(result);
      std::vector<VARTYPE> types;
      std::vector<VARIANT*> passed;
      for (VARIANT& argument : arguments) {
        types.push_back(argument.vt);
        passed.push_back(&argument);
      }
      host::Value code;
      ASSERT_EQ(DispCallFunc(object, member.entry * sizeof(void*), CC_STDCALL, VT_ERROR,
                             static_cast<UINT>(passed.size()), types.data(), passed.data(), &code),
                S_OK);
      EXPECT_EQ(code.scode, S_OK);
      EXPECT_NE(late.vt, VT_EMPTY);
      EXPECT_EQ(Told(early), Told(late));
      EXPECT_EQ(lower->Calls(), called);
      std::string answer = Told(late);
      for (const std::string& call : called) answer += call;
      EXPECT_TRUE(answers.insert(answer).second) << "as another member: " << answer;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 40U);
}

TEST_F(Component, HasTheKindsOfItems) {
  ITypeLib* loaded = nullptr;
  ASSERT_EQ(LoadTypeLib(platform::Wide(ORIF_AUTOMATION).get(), &loaded), S_OK);
  const host::Reference<ITypeLib> library(loaded);
  std::map<std::string, LONG> described;
  std::map<std::string, LONG> declared;
  std::map<TYPEKIND, int> kinds;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ITypeInfo* info = nullptr;
    ASSERT_EQ(library->GetTypeInfo(i, &info), S_OK);
    const host::Reference<ITypeInfo> owned(info);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    ++kinds[attributes->typekind];
    for (UINT v = 0; v < attributes->cVars; ++v) {
      VARDESC* constant = nullptr;
      BSTR name = nullptr;
      UINT count = 0;
      ASSERT_EQ(info->GetVarDesc(v, &constant), S_OK);
      info->GetNames(constant->memid, &name, 1, &count);
      described[Taken(name)] = constant->lpvarValue->lVal;
      info->ReleaseVarDesc(constant);
    }
    info->ReleaseTypeAttr(attributes);
  }
  const std::string header = Header("items/DataType.h");
  for (const auto& kind : Matches(header, std::regex("(\\w+) = (\\d+),"))) {
    declared[kind[1]] = std::stol(kind[2]);
  }
  EXPECT_EQ(declared.size(), 37U);
  EXPECT_EQ(described, declared);
  EXPECT_EQ(kinds[TKIND_DISPATCH], 12);
  EXPECT_EQ(kinds[TKIND_COCLASS], 1);
}

// A variant that refers to another.
VARIANT To(VARIANT& target) {
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = &target;
  return reference;
}
template <class T>
VARIANT Of(T value) {
  VARIANT made{};
  host::Store(made, value);
  return made;
}

class Variants : public Component {
 protected:
  /// Calls a member as a script does, and tells what it answers.
  HRESULT Ask(IDispatch& object, const char* name, std::vector<VARIANT> arguments) {
    VariantClear(&answer);
    answer.vt = VT_EMPTY;
    return host::InvokeByName(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments,
                              &answer);
  }
  IDispatch& Registers() { return *objects[2]; }

  host::Value answer;
};

// A host's object that has a value, as a cell of a spreadsheet has.
struct Valued final : HostObject {
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    calledAfterItsEnd = calledAfterItsEnd || references == 0;
    *ids = std::wstring_view(names[0]) == L"length" ? 1 : 2;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    calledAfterItsEnd = calledAfterItsEnd || references == 0;
    if (variable != nullptr) VariantClear(std::exchange(variable, nullptr));
    host::Store(*result, std::int32_t{2});
    return S_OK;
  }

  VARIANT* variable = nullptr;  // that lets go of this at the first question
  bool calledAfterItsEnd = false;
};

TEST_F(Variants, AHostsObjectStandsForItsValueAndMayEndMeanwhile) {
  Valued cell;
  VARIANT given{};
  given.vt = VT_DISPATCH;
  given.pdispVal = &cell;
  ASSERT_EQ(Ask(Registers(), "SetValue", {Of(3), given}), S_OK);
  EXPECT_THAT(lower->Calls(), ElementsAre(testing::StartsWith("17 WriteRLong(I2 5, I4& 2")));
  EXPECT_EQ(cell.references, 1U);
  for (const char* member : {"SetValuesInt", "SetValues"}) {
    Valued ending;
    VARIANT variable = given;
    variable.pdispVal = &ending;
    ending.variable = &variable;
    ASSERT_EQ(Ask(Registers(), member, {Of(3), To(variable), Of(2)}), S_OK);
    EXPECT_TRUE(host::Load<bool>(answer)) << member;
    EXPECT_FALSE(ending.calledAfterItsEnd) << member;
    EXPECT_EQ(ending.references, 0U);
  }
}

// What a script's variables hold, and what they get: the value in the member's own type.
TEST_F(Variants, AScriptsVariablesAreFollowedToTheirEnd) {
  lower->On(DispId::ShortToLong, 70000);
  host::Value end;
  VARIANT inner = To(end);
  VARIANT outer = To(inner);
  ASSERT_EQ(Ask(Registers(), "GetValue", {Of(1), To(outer)}), S_OK);
  EXPECT_EQ(host::Load<bool>(answer), true);
  EXPECT_EQ(host::Load<std::int32_t>(end), 70000);
  // A number and a text by reference, whose variables were empty or had other types.
  host::Store(end, 2.5);
  lower->On(DispId::ShortToFloat, [](auto) { return Real(1.5F); });
  ASSERT_EQ(Ask(*objects[1], "GetLastDataFloat", {Of(1), To(inner)}), S_OK);
  EXPECT_EQ(host::Load<float>(end), 1.5F);
  host::Value name;
  host::Value line;
  host::Value state;
  host::Value parent;
  ASSERT_EQ(Ask(*objects[5], "GetValue", {To(name), To(line), To(state), To(parent)}), S_OK);
  EXPECT_EQ(host::Load<std::string>(name) + host::Load<std::string>(parent), "");
  EXPECT_EQ(host::Load<std::int16_t>(line) + host::Load<std::int16_t>(state), 0);
  // A circle has no end.
  VARIANT circle = To(circle);
  EXPECT_EQ(Ask(Registers(), "GetValue", {Of(1), To(circle)}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(Ask(Registers(), "StartIndex", {}), S_OK);
  lower->Calls();
  host::Value text;
  host::Store(text, std::string_view("12"));
  ASSERT_EQ(Ask(Registers(), "SetValue", {To(text), To(text)}), S_OK);
  EXPECT_THAT(lower->Calls(), ElementsAre());  // 12 is no register
  ASSERT_EQ(Ask(Registers(), "SetValue", {Of(3), To(text)}), S_OK);
  EXPECT_THAT(lower->Calls(), ElementsAre(testing::StartsWith("17 WriteRLong(I2 5, I4& 12")));
}

TEST_F(Variants, ArraysOfVariantsKeepTheirBoundsAndGetWhatIsRead) {
  lower->On(DispId::ReadSDI, [](auto arguments) {
    for (std::int16_t i = 0; i < arguments[2].as.i2; ++i) arguments[1].as.i2Ref[i] = i;
    return Long(0);
  });
  SAFEARRAYBOUND bounds{5, -3};
  host::Value array;
  array.vt = VT_ARRAY | VT_VARIANT;
  array.parray = SafeArrayCreate(VT_VARIANT, 1, &bounds);
  const auto elements = static_cast<VARIANT*>(array.parray->pvData);
  host::Store(elements[4], std::string_view("kept"));
  ASSERT_EQ(Ask(*objects[0], "ReadSDI", {Of(1), To(array), Of(4)}), S_OK);
  EXPECT_TRUE(host::Load<bool>(answer));
  EXPECT_EQ(host::Load<std::string>(elements[4]), "kept");
  EXPECT_EQ(host::Load<std::int16_t>(elements[3]), 3);
  EXPECT_EQ(array.parray->rgsabound[0].lLbound, -3);
  // Written from one: the elements are converted, and the first that cannot be is refused.
  VariantClear(&elements[4]);
  host::Store(elements[4], true);
  lower->Calls();
  ASSERT_EQ(Ask(*objects[0], "WriteSDI", {Of(1), array, Of(5)}), S_OK);
  EXPECT_THAT(lower->Calls(), ElementsAre(testing::StartsWith("30 WriteSDI(I2 1, I2& 0")));
  ASSERT_EQ(Ask(Registers(), "SetValues", {Of(2), To(array), Of(3)}), S_OK);
  EXPECT_THAT(lower->Calls(), ElementsAre(testing::StartsWith("17 WriteRLong(I2 3, I4& 0")));
  host::Store(elements[4], std::string_view("many"));
  EXPECT_EQ(Ask(*objects[0], "WriteSDI", {Of(1), array, Of(5)}), DISP_E_TYPEMISMATCH);
  EXPECT_THAT(lower->Calls(), ElementsAre());
}

TEST_F(Variants, WhatIsOptionalMayBeEmptyOrMissingOrLeftOut) {
  VARIANT missing = Of(DISP_E_PARAMNOTFOUND);
  missing.vt = VT_ERROR;
  for (const std::vector<VARIANT>& none : {std::vector<VARIANT>{}, {VARIANT{}}, {missing}}) {
    ASSERT_EQ(Ask(*objects[0], "ClearAlarm", none), S_OK);
    EXPECT_THAT(lower->Calls(), ElementsAre("7 SendCommand(text& CLRALM)"));
  }
  EXPECT_EQ(Ask(*objects[0], "Connect", {missing}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Ask(*objects[0], "Connect", {}), DISP_E_BADPARAMCOUNT);
  // Arguments by name, in any order.
  std::array<VARIANT, 3> given{Of(4), Of(3), Of(NUMREG_INT)};
  std::array<DISPID, 2> places{2, 1};
  DISPPARAMS parameters{given.data(), places.data(), 3, 2};
  VariantClear(&answer);
  ASSERT_EQ(
      objects[1]->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, &answer, nullptr, nullptr),
      S_OK);
  EXPECT_THAT(lower->Calls(), ElementsAre(testing::HasSubstr("R[3]")));
  places = {0, 2};  // and the first by its place, again
  UINT wrong = 99;
  std::swap(places[0], places[1]);
  EXPECT_EQ(
      objects[1]->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, &wrong),
      DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(wrong, 2U);
}

TEST(ComponentLives, ObjectsAreReleasedInAnyOrder) {
  const auto lower = std::make_shared<RecordingDispatch>();
  const host::LowerClass lowerClass([&] { return lower; });
  std::array<std::size_t, 5> order{0, 1, 2, 3, 4};
  do {
    Held held(lowerClass);
    for (const std::size_t i : order) {
      EXPECT_EQ(CanUnload(), S_FALSE);
      held.Release(i);
      for (IDispatch* const left : held.objects) {
        host::Value valid;
        const bool isCore = left == held.objects[0];
        if (left == nullptr) continue;
        EXPECT_EQ(host::InvokeByName(*left, isCore ? "IsConnected" : "Valid", DISPATCH_PROPERTYGET,
                                     {}, &valid),
                  S_OK);
        EXPECT_EQ(host::Load<bool>(valid), held.objects[0] != nullptr);
      }
    }
    ASSERT_EQ(CanUnload(), S_OK);
    ASSERT_EQ(lower.use_count(), 1);
  } while (std::next_permutation(order.begin(), order.end()));
}

// Whatever the lower layer calls back from, the objects of the host are gone when the call returns.
TEST(ComponentLives, TheHostMayReleaseAllDuringACall) {
  const auto lower = std::make_shared<RecordingDispatch>();
  const host::LowerClass lowerClass([&] { return lower; });
  struct Case {
    DispId at;
    std::size_t object;
    const char* member;
    std::vector<VARTYPE> types;
  };
  const VARTYPE shorts = VT_BYREF | VT_ARRAY | VT_I2;
  for (const Case& one : std::initializer_list<Case>{
           {DispId::WriteRLong, 2, "SetValue", {VT_I4, VT_VARIANT}},
           {DispId::WriteRFloat, 4, "SetValuesReal", {VT_I4, VT_BYREF | VT_ARRAY | VT_R4, VT_I4}},
           {DispId::ReadRShort, 1, "Refresh", {}},
           {DispId::ReadRShort, 3, "Refresh", {}},
           {DispId::SetRAssignment, 3, "AddNumReg", {VT_I4, VT_I4, VT_I4}},
           {DispId::ClearRAssignment, 1, "Clear", {}},
           {DispId::ReadSDI, 0, "ReadSDI", {VT_I4, shorts, VT_I4}},
           {DispId::ReadSDI, 0, "SDI", {VT_I4, VT_I4}},
           {DispId::Disconnect, 0, "Disconnect", {}},
           {DispId::SendCommand, 0, "ClearAlarm", {VT_I4}},
           {DispId::TimeOutValue, 0, "TimeOutValue", {}}}) {
    Held held(lowerClass);
    bool released = false;
    lower->On(one.at, [&](auto) {
      released = true;
      held.ReleaseAll();
      return Long(0);
    });
    const Fitting fitting(one.types);
    host::Value result;
    EXPECT_EQ(
        host::InvokeByName(*held.objects[one.object], one.member,
                           DISPATCH_METHOD | DISPATCH_PROPERTYGET, fitting.Arguments(), &result),
        S_OK);
    EXPECT_TRUE(released) << one.member;
    VariantClear(&result);
    result.vt = VT_EMPTY;
    lower->On(one.at, 0);
    EXPECT_EQ(CanUnload(), S_OK) << one.member;
    EXPECT_EQ(lower.use_count(), 1) << one.member;
  }
}

}  // namespace
}  // namespace orif::test

// The members of the twelve classes, in the order of the headers. Those that may wait for the
// controller say so.
#include <limits>

#include "python/native/Model.h"

namespace orif::python {

/// The numbers for a range of registers, of the kind that its item has.
struct NumbersToWrite {
  std::vector<std::int32_t> integers;
  std::vector<float> reals;
  bool areIntegers = true;
};

template <>
struct Argument<NumbersToWrite> {
  static constexpr bool IsOutput = false;
  bool Take(PyObject* given) {
    if (Take(given, value.integers)) return true;
    if (PyErr_ExceptionMatches(PyExc_TypeError) == 0 &&
        PyErr_ExceptionMatches(PyExc_OverflowError) == 0) {
      return false;
    }
    PyErr_Clear();
    value.areIntegers = false;
    return Take(given, value.reals);
  }
  const NumbersToWrite& Get() const { return value; }
  static bool GiveBack() { return true; }

  NumbersToWrite value;

 private:
  template <class T>
  static bool Take(PyObject* given, std::vector<T>& values) {
    Elements<T> elements;
    if (!elements.TakeToRead(given)) return false;
    const ArrayView<T> view = elements.View();
    values.assign(view.First(), view.First() + view.Count());
    return true;
  }
};

/// A buffer for the numbers of a range of registers.
struct NumbersToFill {
  Elements<std::int32_t> integers;
  Elements<float> reals;
  bool areIntegers = true;
};

template <>
struct Argument<NumbersToFill&> {
  static constexpr bool IsOutput = false;
  bool Take(PyObject* given) {
    Buffer buffer;
    if (!buffer.Open(given)) return false;
    value.areIntegers = !buffer.Holds<float>();
    return value.areIntegers ? value.integers.TakeToFill(given) : value.reals.TakeToFill(given);
  }
  NumbersToFill& Get() { return value; }
  bool GiveBack() { return value.integers.GiveBack() && value.reals.GiveBack(); }

  NumbersToFill value;
};

/// How filling a buffer went.
enum class Filled { No, Yes, IsForIntegers, IsForReals };

PyObject* NewObject(Filled filled) {
  if (filled == Filled::No) Py_RETURN_FALSE;
  if (filled == Filled::Yes) Py_RETURN_TRUE;
  PyErr_SetString(PyExc_TypeError,
                  filled == Filled::IsForReals
                      ? "GetValues() argument 'Values': must hold int32, as the item does"
                      : "GetValues() argument 'Values': must hold float32, as the item does");
  return nullptr;
}

namespace {

// Integers for an item of reals are converted. Reals for an item of integers are handed on; it
// refuses them.
bool SetValues(DataNumReg& item, std::int32_t Index, NumbersToWrite Value, std::int32_t Count) {
  if (!Value.areIntegers) return item.SetValues(Index, std::move(Value.reals), Count);
  if (item.DataType() != NUMREG_REAL)
    return item.SetValues(Index, std::move(Value.integers), Count);
  return item.SetValues(Index, std::vector<float>(Value.integers.begin(), Value.integers.end()),
                        Count);
}

template <class T>
Filled Fill(DataNumReg& item, std::int32_t index, ArrayView<T> values, std::int32_t count) {
  if (count < 1 || values.Count() < count || !(index <= item.EndIndex() - (count - 1)))
    return Filled::No;
  Variant value;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!item.GetValue(index + i, value)) return Filled::No;
    if constexpr (std::is_same_v<T, float>)
      values.First()[i] = value.ToFloat();
    else
      values.First()[i] = value.ToInt32();
  }
  return Filled::Yes;
}

Filled GetValues(DataNumReg& item, std::int32_t Index, NumbersToFill& Values, std::int32_t Count) {
  if (Values.areIntegers != (item.DataType() == NUMREG_INT))
    return Values.areIntegers ? Filled::IsForIntegers : Filled::IsForReals;
  if (Values.areIntegers) return Fill(item, Index, Values.integers.View(), Count);
  return Fill(item, Index, Values.reals.View(), Count);
}

// What shows an object to people.

PyObject* Shown(PyObject* self, const std::string& state) {
  const char* const name = Py_TYPE(self)->tp_name;
  return PyUnicode_FromFormat("<%s%s%s>", name, state.empty() ? "" : " ", state.c_str());
}

std::string State(Core& core) {
  constexpr std::array States{"not connected", "connected", "disconnected"};
  return States.at(static_cast<std::size_t>(core.ConnectState()));
}

const char* Validity(bool valid) { return valid ? "valid" : "invalid"; }

std::string State(DataTable& table) {
  const std::int32_t count = table.Count();
  return std::to_string(count) + (count == 1 ? " item, " : " items, ") + Validity(table.Valid());
}

template <class Item>
std::string State(Item& item) requires std::is_base_of_v<DataItem, Item> {
  std::string text = KindName(item.DataType());
  if constexpr (requires { item.SysVarName(); }) text += " " + item.SysVarName();
  if constexpr (requires { item.StartIndex(); })
    text += " " + std::to_string(item.StartIndex()) + " to " + std::to_string(item.EndIndex());
  if constexpr (requires { item.Index(); }) text += " " + std::to_string(item.Index());
  if constexpr (requires { item.Group(); }) text += ", group " + std::to_string(item.Group());
  if constexpr (requires { item.GroupCount(); })
    text += ", groups: " + std::to_string(item.GroupCount());
  return text + ", " + Validity(item.Valid());
}

// Does not wait for another thread: people look at objects to see what a program hangs in.
template <class T>
PyObject* Represent(PyObject* self) {
  Unit& unit = UnitOf(self);
  if (!unit.TryLock()) return Shown(self, "in use by another thread");
  const std::string state = State(Target<T>(self));
  unit.Unlock();
  return Shown(self, state);
}

using OfCore = MembersOf<Core>;
const MemberRow CoreMembers[] = {
    OfCore::Quick<&Core::ObjectID>("ObjectID"),
    OfCore::MayWait<&Core::Connect>("Connect"),
    OfCore::MayWait<&Core::Disconnect>("Disconnect"),
    OfCore::MayWait<&Core::ClearAlarm>("ClearAlarm"),
    OfCore::Quick<&Core::IsConnected>("IsConnected"),
    OfCore::Quick<&Core::ConnectState>("ConnectState"),
    OfCore::Property<Getter(&Core::TimeOutValue), Putter(&Core::TimeOutValue)>("TimeOutValue"),
    OfCore::Property<Getter(&Core::PortNumber), Putter(&Core::PortNumber)>("PortNumber"),
    OfCore::Property<Getter(&Core::ClientID), Putter(&Core::ClientID)>("ClientID"),
    OfCore::Quick<&Core::GetLib>("GetLib"),
    OfCore::MayWait<&Core::ReadSDO>("ReadSDO"),
    OfCore::MayWait<&Core::WriteSDO>("WriteSDO"),
    OfCore::MayWait<&Core::ReadSDI>("ReadSDI"),
    OfCore::MayWait<&Core::WriteSDI>("WriteSDI"),
    OfCore::MayWait<&Core::ReadRDO>("ReadRDO"),
    OfCore::MayWait<&Core::WriteRDO>("WriteRDO"),
    OfCore::MayWait<&Core::ReadRDI>("ReadRDI"),
    OfCore::MayWait<&Core::WriteRDI>("WriteRDI"),
    OfCore::MayWait<&Core::ReadSO>("ReadSO"),
    OfCore::MayWait<&Core::WriteSO>("WriteSO"),
    OfCore::MayWait<&Core::ReadSI>("ReadSI"),
    OfCore::MayWait<&Core::WriteSI>("WriteSI"),
    OfCore::MayWait<&Core::ReadUO>("ReadUO"),
    OfCore::MayWait<&Core::WriteUO>("WriteUO"),
    OfCore::MayWait<&Core::ReadUI>("ReadUI"),
    OfCore::MayWait<&Core::WriteUI>("WriteUI"),
    OfCore::MayWait<&Core::ReadGO>("ReadGO"),
    OfCore::MayWait<&Core::WriteGO>("WriteGO"),
    OfCore::MayWait<&Core::ReadGI>("ReadGI"),
    OfCore::MayWait<&Core::WriteGI>("WriteGI"),
    OfCore::MayWait<&Core::DataTable>("DataTable"),
    OfCore::MayWait<&Core::DataTable2>("DataTable2"),
    OfCore::Quick<&Core::mlngDataTableCount>("mlngDataTableCount"),
    OfCore::Property<Getter(&Core::DebugLog), Putter(&Core::DebugLog)>("DebugLog"),
    OfCore::Quick<&Core::DebugMessage>("DebugMessage"),
    OfCore::Quick<&Core::GetDebugMessages>("GetDebugMessages"),
    OfCore::Quick<&Core::AddUserMessage>("AddUserMessage"),
    OfCore::Quick<&Core::GetTypeName>("GetTypeName"),
};

using OfTable = MembersOf<DataTable>;
const MemberRow DataTableMembers[] = {
    OfTable::MayWait<&DataTable::AddNumReg>("AddNumReg"),
    OfTable::MayWait<&DataTable::AddPosReg>("AddPosReg"),
    OfTable::MayWait<&DataTable::AddPosRegXyzwpr>("AddPosRegXyzwpr"),
    OfTable::MayWait<&DataTable::AddPosRegMG>("AddPosRegMG"),
    OfTable::MayWait<&DataTable::AddCurPos>("AddCurPos"),
    OfTable::MayWait<&DataTable::AddCurPosUF>("AddCurPosUF"),
    OfTable::MayWait<&DataTable::AddSysVarPos>("AddSysVarPos"),
    OfTable::MayWait<&DataTable::AddSysVar>("AddSysVar"),
    OfTable::MayWait<&DataTable::AddTask>("AddTask"),
    OfTable::MayWait<&DataTable::AddAlarm>("AddAlarm"),
    OfTable::MayWait<&DataTable::AddString>("AddString"),
    OfTable::MayWait<&DataTable::AddStringEx>("AddStringEx"),
    OfTable::MayWait<&DataTable::Refresh>("Refresh"),
    OfTable::Quick<&DataTable::GetLastDataFloat>("GetLastDataFloat"),
    OfTable::Quick<&DataTable::Count>("Count"),
    OfTable::Quick<&DataTable::Item>("Item"),
    OfTable::MayWait<&DataTable::Clear>("Clear"),
    OfTable::Quick<&DataTable::Kill>("Kill"),
    OfTable::Quick<&DataTable::Valid>("Valid"),
    OfTable::Quick<&DataTable::Fixed>("Fixed"),
    OfTable::Quick<&DataTable::ObjectID>("ObjectID"),
    OfTable::Quick<&DataTable::GetTypeName>("GetTypeName"),
    OfTable::Quick<&DataTable::AddUserMessage>("AddUserMessage"),
    OfTable::Quick<&DataTable::DebugLog>("DebugLog"),
};

using OfItem = MembersOf<DataItem>;
const MemberRow DataItemMembers[] = {
    OfItem::Quick<&DataItem::DataType>("DataType"),
    OfItem::Quick<&DataItem::DataTable>("DataTable"),
    OfItem::Quick<&DataItem::Valid>("Valid"),
    OfItem::Quick<&DataItem::ObjectID>("ObjectID"),
    OfItem::Quick<&DataItem::Kill>("Kill"),
    OfItem::Quick<&DataItem::GetTypeName>("GetTypeName"),
    OfItem::Quick<&DataItem::AddUserMessage>("AddUserMessage"),
    OfItem::Quick<&DataItem::DebugLog>("DebugLog"),
};

using OfNumReg = MembersOf<DataNumReg>;
const MemberRow DataNumRegMembers[] = {
    OfNumReg::Quick<&DataNumReg::StartIndex>("StartIndex"),
    OfNumReg::Quick<&DataNumReg::EndIndex>("EndIndex"),
    OfNumReg::Quick<&DataNumReg::GetValue>("GetValue"),
    OfNumReg::Quick<&GetValues>("GetValues"),
    OfNumReg::MayWait<&DataNumReg::SetValue>("SetValue"),
    OfNumReg::MayWait<&SetValues>("SetValues"),
    OfNumReg::MayWait<&DataNumReg::SetValuesInt>("SetValuesInt"),
    OfNumReg::MayWait<&DataNumReg::SetValuesReal>("SetValuesReal"),
};

using OfPosReg = MembersOf<DataPosReg>;
const MemberRow DataPosRegMembers[] = {
    OfPosReg::Quick<&DataPosReg::Group>("Group"),
    OfPosReg::Quick<&DataPosReg::StartIndex>("StartIndex"),
    OfPosReg::Quick<&DataPosReg::EndIndex>("EndIndex"),
    OfPosReg::Quick<&DataPosReg::GetValue>("GetValue"),
    OfPosReg::Quick<&DataPosReg::GetValueXyzwpr>("GetValueXyzwpr"),
    OfPosReg::Quick<&DataPosReg::GetValueJoint>("GetValueJoint"),
    OfPosReg::MayWait<&DataPosReg::SetValueJoint>("SetValueJoint"),
    OfPosReg::MayWait<&DataPosReg::SetValueJoint2>("SetValueJoint2"),
    OfPosReg::MayWait<&DataPosReg::SetValueXyzwpr>("SetValueXyzwpr"),
    OfPosReg::MayWait<&DataPosReg::SetValueXyzwpr2>("SetValueXyzwpr2"),
};

using OfPosRegXyzwpr = MembersOf<DataPosRegXyzwpr>;
const MemberRow DataPosRegXyzwprMembers[] = {
    OfPosRegXyzwpr::Quick<&DataPosRegXyzwpr::Group>("Group"),
    OfPosRegXyzwpr::Quick<&DataPosRegXyzwpr::StartIndex>("StartIndex"),
    OfPosRegXyzwpr::Quick<&DataPosRegXyzwpr::EndIndex>("EndIndex"),
    OfPosRegXyzwpr::Quick<&DataPosRegXyzwpr::SetValueXyzwpr>("SetValueXyzwpr"),
    OfPosRegXyzwpr::Quick<&DataPosRegXyzwpr::SetValueXyzwpr2>("SetValueXyzwpr2"),
    OfPosRegXyzwpr::MayWait<&DataPosRegXyzwpr::Update>("Update"),
    OfPosRegXyzwpr::Quick<&DataPosRegXyzwpr::Reset>("Reset"),
};

using OfPosRegMG = MembersOf<DataPosRegMG>;
const MemberRow DataPosRegMGMembers[] = {
    OfPosRegMG::Quick<&DataPosRegMG::GroupCount>("GroupCount"),
    OfPosRegMG::Quick<&DataPosRegMG::StartIndex>("StartIndex"),
    OfPosRegMG::Quick<&DataPosRegMG::EndIndex>("EndIndex"),
    OfPosRegMG::Quick<&DataPosRegMG::GetValueJoint>("GetValueJoint"),
    OfPosRegMG::Quick<&DataPosRegMG::GetValueXyzwpr>("GetValueXyzwpr"),
    OfPosRegMG::Quick<&DataPosRegMG::SetValueJoint>("SetValueJoint"),
    OfPosRegMG::Quick<&DataPosRegMG::SetValueJoint2>("SetValueJoint2"),
    OfPosRegMG::Quick<&DataPosRegMG::SetValueXyzwpr>("SetValueXyzwpr"),
    OfPosRegMG::Quick<&DataPosRegMG::SetValueXyzwpr2>("SetValueXyzwpr2"),
    OfPosRegMG::MayWait<&DataPosRegMG::Update>("Update"),
    OfPosRegMG::Quick<&DataPosRegMG::Reset>("Reset"),
};

using OfTask = MembersOf<DataTask>;
const MemberRow DataTaskMembers[] = {
    OfTask::Quick<&DataTask::Index>("Index"),
    OfTask::Quick<&DataTask::GetValue>("GetValue"),
};

using OfSysVar = MembersOf<DataSysVar>;
const MemberRow DataSysVarMembers[] = {
    OfSysVar::Quick<&DataSysVar::GetValue>("GetValue"),
    OfSysVar::Quick<&DataSysVar::SysVarName>("SysVarName"),
    OfSysVar::MayWait<&DataSysVar::SetValue>("SetValue"),
};

using OfString = MembersOf<DataString>;
const MemberRow DataStringMembers[] = {
    OfString::Quick<&DataString::StartIndex>("StartIndex"),
    OfString::Quick<&DataString::EndIndex>("EndIndex"),
    OfString::Quick<&DataString::GetValue>("GetValue"),
    OfString::Quick<&DataString::SetValue>("SetValue"),
    OfString::MayWait<&DataString::Update>("Update"),
    OfString::Quick<&DataString::Reset>("Reset"),
};

using OfAlarm = MembersOf<DataAlarm>;
const MemberRow DataAlarmMembers[] = {
    OfAlarm::Quick<&DataAlarm::GetValue>("GetValue"),
};

using OfPosition = MembersOf<SinglePosition>;
const MemberRow SinglePositionMembers[] = {
    OfPosition::Quick<&SinglePosition::GetValue>("GetValue"),
    OfPosition::Quick<&SinglePosition::GetValueXyzwpr>("GetValueXyzwpr"),
    OfPosition::Quick<&SinglePosition::GetValueJoint>("GetValueJoint"),
};

using OfCurPos = MembersOf<DataCurPos>;
const MemberRow DataCurPosMembers[] = {
    OfCurPos::Quick<&DataCurPos::Group>("Group"),
};

using OfSysVarPos = MembersOf<DataSysVarPos>;
const MemberRow DataSysVarPosMembers[] = {
    OfSysVarPos::Quick<&DataSysVarPos::SysVarName>("SysVarName"),
    OfSysVarPos::MayWait<&DataSysVarPos::SetValueJoint>("SetValueJoint"),
    OfSysVarPos::MayWait<&DataSysVarPos::SetValueJoint2>("SetValueJoint2"),
    OfSysVarPos::MayWait<&DataSysVarPos::SetValueXyzwpr>("SetValueXyzwpr"),
    OfSysVarPos::MayWait<&DataSysVarPos::SetValueXyzwpr2>("SetValueXyzwpr2"),
};

}  // namespace

std::span<const ClassRow> ModelClasses() {
  static const ClassRow classes[] = {
      {"Core", nullptr, CoreMembers, &Represent<Core>},
      {"DataTable", nullptr, DataTableMembers, &Represent<DataTable>},
      {"DataItem", nullptr, DataItemMembers, &Represent<DataItem>},
      {"DataNumReg", "DataItem", DataNumRegMembers, &Represent<DataNumReg>},
      {"DataPosReg", "DataItem", DataPosRegMembers, &Represent<DataPosReg>},
      {"DataPosRegXyzwpr", "DataItem", DataPosRegXyzwprMembers, &Represent<DataPosRegXyzwpr>},
      {"DataPosRegMG", "DataItem", DataPosRegMGMembers, &Represent<DataPosRegMG>},
      {"DataTask", "DataItem", DataTaskMembers, &Represent<DataTask>},
      {"DataSysVar", "DataItem", DataSysVarMembers, &Represent<DataSysVar>},
      {"DataString", "DataItem", DataStringMembers, &Represent<DataString>},
      {"DataAlarm", "DataItem", DataAlarmMembers, &Represent<DataAlarm>},
      {"SinglePosition", "DataItem", SinglePositionMembers, &Represent<DataItem>},
      {"DataCurPos", "SinglePosition", DataCurPosMembers, &Represent<DataCurPos>},
      {"DataSysVarPos", "SinglePosition", DataSysVarPosMembers, &Represent<DataSysVarPos>},
      LowerCoreClass(),
  };
  return classes;
}

}  // namespace orif::python

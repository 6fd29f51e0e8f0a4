// The members of the twelve classes, in the order of their interfaces and under the numbers that
// the type library gives them. Those from 101 on are for hosts without arguments by reference; what
// they do is here too.
#include "automation/Member.h"

extern "C" {
extern const IID IID_Core;
extern const IID IID_DataTable;
extern const IID IID_DataNumReg;
extern const IID IID_DataSysVar;
extern const IID IID_DataString;
extern const IID IID_DataTask;
extern const IID IID_DataAlarm;
extern const IID IID_DataPosReg;
extern const IID IID_DataPosRegXyzwpr;
extern const IID IID_DataPosRegMG;
extern const IID IID_DataCurPos;
extern const IID IID_DataSysVarPos;
}

namespace orif::automation {
namespace {

// The most signals of one call.
constexpr std::int32_t MostSignals = 32767;

template <class... T>
Value ListOf(const T&... values) {
  std::vector<Value> elements;
  (elements.push_back(From(values)), ...);
  return FromElements(std::move(elements));
}

// Of Core.

template <auto Read, class T>
Value States(Core& core, std::int32_t Index, std::int32_t Count) {
  std::vector<T> states(Count > 0 && Count <= MostSignals ? static_cast<std::size_t>(Count) : 0);
  if (!(core.*Read)(Index, states, Count)) return {};
  std::vector<Value> elements;
  elements.reserve(states.size());
  for (const T state : states) elements.push_back(From(state));
  return FromElements(std::move(elements));
}

// Of DataTable.

Value LastDataFloat(DataTable& table, std::int32_t lngAddress) {
  float value = 0;
  return table.GetLastDataFloat(lngAddress, value) ? From(value) : Value();
}

// Of the items with numbers and texts.

bool SetValues(DataNumReg& item, std::int32_t Index, HostValue Values, std::int32_t Count) {
  return item.SetValues(Index,
                        item.DataType() == NUMREG_REAL ? Values.ForArrayOf<float>()
                                                       : Values.ForArrayOf<std::int32_t>(),
                        Count);
}

bool SetValuesInt(DataNumReg& item, std::int32_t Index, FirstElement<std::int32_t> Values,
                  std::int32_t Count) {
  return item.SetValuesInt(Index, Values.array, Count);
}

bool SetValuesReal(DataNumReg& item, std::int32_t Index, FirstElement<float> Values,
                   std::int32_t Count) {
  return item.SetValuesReal(Index, Values.array, Count);
}

template <class Item, class T, class... At>
Value ValueOf(Item& item, At... at) {
  T value;
  return item.GetValue(at..., value) ? From(value) : Value();
}

Value TaskStatus(DataTask& task) {
  std::string program;
  std::string parent;
  std::int16_t line = 0;
  std::int16_t state = 0;
  if (!task.GetValue(program, line, state, parent)) return {};
  return ListOf(program, line, state, parent);
}

Value AlarmEntry(DataAlarm& alarms, std::int32_t Count) {
  std::array<std::int16_t, 11> n{};
  std::array<std::string, 3> texts;
  if (!alarms.GetValue(Count, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10],
                       texts[0], texts[1], texts[2])) {
    return {};
  }
  return ListOf(n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10], texts[0],
                texts[1], texts[2]);
}

// Of the items with positions.

struct Position {
  std::array<float, PositionRecord::FloatCount> xyzwpr{};
  std::array<std::int16_t, PositionRecord::ConfigCount> config{};
  std::array<float, PositionRecord::FloatCount> joint{};
  std::int16_t UF = 0;
  std::int16_t UT = 0;
  std::int16_t ValidC = 0;
  std::int16_t ValidJ = 0;
};

template <auto Field, class Item, class... At>
Value Part(Item& item, At... at) {
  Position p;
  if (!item.GetValue(at..., p.xyzwpr, p.config, p.joint, p.UF, p.UT, p.ValidC, p.ValidJ)) return {};
  return From(p.*Field);
}

template <auto Field>
Value GroupCartesian(DataPosRegMG& item, std::int32_t Index, std::int32_t Group) {
  Position p;
  auto& [x, y, z, w, pitch, r, e1, e2, e3] = p.xyzwpr;
  auto& [c1, c2, c3, c4, c5, c6, c7] = p.config;
  if (!item.GetValueXyzwpr(Index, Group, x, y, z, w, pitch, r, e1, e2, e3, c1, c2, c3, c4, c5, c6,
                           c7)) {
    return {};
  }
  return From(p.*Field);
}

Value GroupJoint(DataPosRegMG& item, std::int32_t Index, std::int32_t Group) {
  std::array<float, PositionRecord::FloatCount> joint{};
  auto& [j1, j2, j3, j4, j5, j6, j7, j8, j9] = joint;
  if (!item.GetValueJoint(Index, Group, j1, j2, j3, j4, j5, j6, j7, j8, j9)) return {};
  return From(joint);
}

}  // namespace

using OfCore = MembersOf<Core>;
static const Member CoreMembers[] = {
    OfCore::Get<&Core::ObjectID>(1, L"ObjectID"),
    OfCore::Method<&Core::Connect>(2, L"Connect"),
    OfCore::Method<&Core::Disconnect>(3, L"Disconnect"),
    OfCore::Method<&Core::ClearAlarm>(4, L"ClearAlarm", 1),
    OfCore::Get<&Core::DataTable>(5, L"DataTable"),
    OfCore::Get<&Core::DataTable2>(6, L"DataTable2"),
    OfCore::Get<Getter(&Core::TimeOutValue)>(7, L"TimeOutValue"),
    OfCore::Put<Putter(&Core::TimeOutValue)>(7, L"TimeOutValue"),
    OfCore::Get<&Core::mlngDataTableCount>(8, L"mlngDataTableCount"),
    OfCore::Get<Getter(&Core::PortNumber)>(9, L"PortNumber"),
    OfCore::Put<Putter(&Core::PortNumber)>(9, L"PortNumber"),
    OfCore::Get<Getter(&Core::ClientID)>(10, L"ClientID"),
    OfCore::Put<Putter(&Core::ClientID)>(10, L"ClientID"),
    OfCore::Get<&Core::IsConnected>(11, L"IsConnected"),
    OfCore::Get<&Core::ConnectState>(12, L"ConnectState"),
    OfCore::Method<&Core::GetTypeName>(13, L"GetTypeName"),
    OfCore::Method<&Core::GetLib>(14, L"GetLib"),
    OfCore::Method<&Core::ReadSDO>(15, L"ReadSDO"),
    OfCore::Method<&Core::WriteSDO>(16, L"WriteSDO"),
    OfCore::Method<&Core::ReadSDI>(17, L"ReadSDI"),
    OfCore::Method<&Core::WriteSDI>(18, L"WriteSDI"),
    OfCore::Method<&Core::ReadRDO>(19, L"ReadRDO"),
    OfCore::Method<&Core::WriteRDO>(20, L"WriteRDO"),
    OfCore::Method<&Core::ReadRDI>(21, L"ReadRDI"),
    OfCore::Method<&Core::WriteRDI>(22, L"WriteRDI"),
    OfCore::Method<&Core::ReadSO>(23, L"ReadSO"),
    OfCore::Method<&Core::WriteSO>(24, L"WriteSO"),
    OfCore::Method<&Core::ReadSI>(25, L"ReadSI"),
    OfCore::Method<&Core::WriteSI>(26, L"WriteSI"),
    OfCore::Method<&Core::ReadUO>(27, L"ReadUO"),
    OfCore::Method<&Core::WriteUO>(28, L"WriteUO"),
    OfCore::Method<&Core::ReadUI>(29, L"ReadUI"),
    OfCore::Method<&Core::WriteUI>(30, L"WriteUI"),
    OfCore::Method<&Core::ReadGO>(31, L"ReadGO"),
    OfCore::Method<&Core::WriteGO>(32, L"WriteGO"),
    OfCore::Method<&Core::ReadGI>(33, L"ReadGI"),
    OfCore::Method<&Core::WriteGI>(34, L"WriteGI"),
    OfCore::Get<&Core::DebugMessage>(35, L"DebugMessage"),
    OfCore::Method<&Core::GetDebugMessages>(36, L"GetDebugMessages"),
    OfCore::Method<&Core::AddUserMessage>(37, L"AddUserMessage"),
    OfCore::Get<Getter(&Core::DebugLog)>(38, L"DebugLog"),
    OfCore::Put<Putter(&Core::DebugLog)>(38, L"DebugLog"),
    OfCore::Get<&States<&Core::ReadSDO, std::int16_t>>(101, L"SDO"),
    OfCore::Get<&States<&Core::ReadSDI, std::int16_t>>(102, L"SDI"),
    OfCore::Get<&States<&Core::ReadRDO, std::int16_t>>(103, L"RDO"),
    OfCore::Get<&States<&Core::ReadRDI, std::int16_t>>(104, L"RDI"),
    OfCore::Get<&States<&Core::ReadSO, std::int16_t>>(105, L"SO"),
    OfCore::Get<&States<&Core::ReadSI, std::int16_t>>(106, L"SI"),
    OfCore::Get<&States<&Core::ReadUO, std::int16_t>>(107, L"UO"),
    OfCore::Get<&States<&Core::ReadUI, std::int16_t>>(108, L"UI"),
    OfCore::Get<&States<&Core::ReadGO, std::int32_t>>(109, L"GO"),
    OfCore::Get<&States<&Core::ReadGI, std::int32_t>>(110, L"GI"),
};
template <>
const Class& ClassOf<Core>() {
  static const Class itsClass(IID_Core, CoreMembers);
  return itsClass;
}

using OfTable = MembersOf<DataTable>;
static const Member DataTableMembers[] = {
    OfTable::Method<&DataTable::Clear>(1, L"Clear"),
    OfTable::Method<&DataTable::Refresh>(2, L"Refresh"),
    OfTable::Method<&DataTable::Count>(3, L"Count"),
    OfTable::Method<&DataTable::Item>(4, L"Item"),
    OfTable::Method<&DataTable::AddNumReg>(5, L"AddNumReg"),
    OfTable::Method<&DataTable::AddPosReg>(6, L"AddPosReg"),
    OfTable::Method<&DataTable::AddPosRegXyzwpr>(7, L"AddPosRegXyzwpr"),
    OfTable::Method<&DataTable::AddPosRegMG>(8, L"AddPosRegMG"),
    OfTable::Method<&DataTable::AddCurPos>(9, L"AddCurPos"),
    OfTable::Method<&DataTable::AddCurPosUF>(10, L"AddCurPosUF"),
    OfTable::Method<&DataTable::AddTask>(11, L"AddTask"),
    OfTable::Method<&DataTable::AddSysVarPos>(12, L"AddSysVarPos"),
    OfTable::Method<&DataTable::AddSysVar>(13, L"AddSysVar"),
    OfTable::Method<&DataTable::AddAlarm>(14, L"AddAlarm", 1),
    OfTable::Method<&DataTable::GetLastDataFloat>(15, L"GetLastDataFloat"),
    OfTable::Get<&DataTable::Fixed>(16, L"Fixed"),
    OfTable::Get<&DataTable::ObjectID>(17, L"ObjectID"),
    OfTable::Get<&DataTable::Valid>(18, L"Valid"),
    OfTable::Method<&DataTable::Kill>(19, L"Kill"),
    OfTable::Method<&DataTable::GetTypeName>(20, L"GetTypeName"),
    OfTable::Method<&DataTable::AddUserMessage>(21, L"AddUserMessage"),
    OfTable::Get<&DataTable::DebugLog>(22, L"DebugLog"),
    OfTable::Method<&DataTable::AddString>(23, L"AddString"),
    OfTable::Method<&DataTable::AddStringEx>(24, L"AddStringEx"),
    OfTable::Get<&LastDataFloat>(101, L"LastDataFloat"),
};
template <>
const Class& ClassOf<DataTable>() {
  static const Class itsClass(IID_DataTable, DataTableMembers);
  return itsClass;
}

using OfNumReg = MembersOf<DataNumReg>;
static const Member DataNumRegMembers[] = {
    OfNumReg::Get<&DataNumReg::DataType>(1, L"DataType"),
    OfNumReg::Get<&DataNumReg::StartIndex>(2, L"StartIndex"),
    OfNumReg::Get<&DataNumReg::EndIndex>(3, L"EndIndex"),
    OfNumReg::Get<&DataNumReg::DataTable>(4, L"DataTable"),
    OfNumReg::Get<&DataNumReg::Valid>(5, L"Valid"),
    OfNumReg::Method<&DataNumReg::GetValue>(6, L"GetValue"),
    OfNumReg::Method<&DataNumReg::SetValue>(7, L"SetValue"),
    OfNumReg::Method<&SetValues>(8, L"SetValues"),
    OfNumReg::Method<&SetValuesInt>(9, L"SetValuesInt"),
    OfNumReg::Method<&SetValuesReal>(10, L"SetValuesReal"),
    OfNumReg::Get<&DataNumReg::ObjectID>(11, L"ObjectID"),
    OfNumReg::Method<&DataNumReg::Kill>(12, L"Kill"),
    OfNumReg::Method<&DataNumReg::GetTypeName>(13, L"GetTypeName"),
    OfNumReg::Method<&DataNumReg::AddUserMessage>(14, L"AddUserMessage"),
    OfNumReg::Get<&DataNumReg::DebugLog>(15, L"DebugLog"),
    OfNumReg::Get<&ValueOf<DataNumReg, Variant, std::int32_t>>(101, L"Value"),
};
template <>
const Class& ClassOf<DataNumReg>() {
  static const Class itsClass(IID_DataNumReg, DataNumRegMembers);
  return itsClass;
}

using OfSysVar = MembersOf<DataSysVar>;
static const Member DataSysVarMembers[] = {
    OfSysVar::Get<&DataSysVar::DataType>(1, L"DataType"),
    OfSysVar::Get<&DataSysVar::DataTable>(2, L"DataTable"),
    OfSysVar::Get<&DataSysVar::Valid>(3, L"Valid"),
    OfSysVar::Method<&DataSysVar::GetValue>(4, L"GetValue"),
    OfSysVar::Get<&DataSysVar::SysVarName>(5, L"SysVarName"),
    OfSysVar::Method<&DataSysVar::SetValue>(6, L"SetValue"),
    OfSysVar::Get<&DataSysVar::ObjectID>(7, L"ObjectID"),
    OfSysVar::Method<&DataSysVar::Kill>(8, L"Kill"),
    OfSysVar::Method<&DataSysVar::GetTypeName>(9, L"GetTypeName"),
    OfSysVar::Method<&DataSysVar::AddUserMessage>(10, L"AddUserMessage"),
    OfSysVar::Get<&DataSysVar::DebugLog>(11, L"DebugLog"),
    OfSysVar::Get<&ValueOf<DataSysVar, Variant>>(101, L"Value"),
};
template <>
const Class& ClassOf<DataSysVar>() {
  static const Class itsClass(IID_DataSysVar, DataSysVarMembers);
  return itsClass;
}

using OfString = MembersOf<DataString>;
static const Member DataStringMembers[] = {
    OfString::Get<&DataString::DataType>(1, L"DataType"),
    OfString::Get<&DataString::StartIndex>(2, L"StartIndex"),
    OfString::Get<&DataString::EndIndex>(3, L"EndIndex"),
    OfString::Get<&DataString::DataTable>(4, L"DataTable"),
    OfString::Get<&DataString::Valid>(5, L"Valid"),
    OfString::Method<&DataString::GetValue>(6, L"GetValue"),
    OfString::Method<&DataString::SetValue>(7, L"SetValue"),
    OfString::Method<&DataString::Update>(8, L"Update"),
    OfString::Method<&DataString::Reset>(9, L"Reset"),
    OfString::Get<&DataString::ObjectID>(10, L"ObjectID"),
    OfString::Method<&DataString::Kill>(11, L"Kill"),
    OfString::Method<&DataString::GetTypeName>(12, L"GetTypeName"),
    OfString::Method<&DataString::AddUserMessage>(13, L"AddUserMessage"),
    OfString::Get<&DataString::DebugLog>(14, L"DebugLog"),
    OfString::Get<&ValueOf<DataString, std::string, std::int32_t>>(101, L"Value"),
};
template <>
const Class& ClassOf<DataString>() {
  static const Class itsClass(IID_DataString, DataStringMembers);
  return itsClass;
}

using OfTask = MembersOf<DataTask>;
static const Member DataTaskMembers[] = {
    OfTask::Get<&DataTask::DataType>(1, L"DataType"),
    OfTask::Get<&DataTask::Index>(2, L"Index"),
    OfTask::Get<&DataTask::DataTable>(3, L"DataTable"),
    OfTask::Get<&DataTask::Valid>(4, L"Valid"),
    OfTask::Method<&DataTask::GetValue>(5, L"GetValue"),
    OfTask::Get<&DataTask::ObjectID>(6, L"ObjectID"),
    OfTask::Method<&DataTask::Kill>(7, L"Kill"),
    OfTask::Method<&DataTask::GetTypeName>(8, L"GetTypeName"),
    OfTask::Method<&DataTask::AddUserMessage>(9, L"AddUserMessage"),
    OfTask::Get<&DataTask::DebugLog>(10, L"DebugLog"),
    OfTask::Get<&TaskStatus>(101, L"Value"),
};
template <>
const Class& ClassOf<DataTask>() {
  static const Class itsClass(IID_DataTask, DataTaskMembers);
  return itsClass;
}

using OfAlarm = MembersOf<DataAlarm>;
static const Member DataAlarmMembers[] = {
    OfAlarm::Get<&DataAlarm::DataType>(1, L"DataType"),
    OfAlarm::Get<&DataAlarm::DataTable>(2, L"DataTable"),
    OfAlarm::Get<&DataAlarm::Valid>(3, L"Valid"),
    OfAlarm::Method<&DataAlarm::GetValue>(4, L"GetValue"),
    OfAlarm::Get<&DataAlarm::ObjectID>(5, L"ObjectID"),
    OfAlarm::Method<&DataAlarm::Kill>(6, L"Kill"),
    OfAlarm::Method<&DataAlarm::GetTypeName>(7, L"GetTypeName"),
    OfAlarm::Method<&DataAlarm::AddUserMessage>(8, L"AddUserMessage"),
    OfAlarm::Get<&DataAlarm::DebugLog>(9, L"DebugLog"),
    OfAlarm::Get<&AlarmEntry>(101, L"Value"),
};
template <>
const Class& ClassOf<DataAlarm>() {
  static const Class itsClass(IID_DataAlarm, DataAlarmMembers);
  return itsClass;
}

using OfPosReg = MembersOf<DataPosReg>;
static const Member DataPosRegMembers[] = {
    OfPosReg::Get<&DataPosReg::DataType>(1, L"DataType"),
    OfPosReg::Get<&DataPosReg::Group>(2, L"Group"),
    OfPosReg::Get<&DataPosReg::DataTable>(3, L"DataTable"),
    OfPosReg::Get<&DataPosReg::Valid>(4, L"Valid"),
    OfPosReg::Method<&DataPosReg::GetValue>(5, L"GetValue"),
    OfPosReg::Method<&DataPosReg::SetValueJoint>(6, L"SetValueJoint"),
    OfPosReg::Method<&DataPosReg::SetValueXyzwpr>(7, L"SetValueXyzwpr"),
    OfPosReg::Get<&DataPosReg::StartIndex>(8, L"StartIndex"),
    OfPosReg::Get<&DataPosReg::EndIndex>(9, L"EndIndex"),
    OfPosReg::Get<&DataPosReg::ObjectID>(10, L"ObjectID"),
    OfPosReg::Method<&DataPosReg::Kill>(11, L"Kill"),
    OfPosReg::Method<&DataPosReg::GetTypeName>(12, L"GetTypeName"),
    OfPosReg::Method<&DataPosReg::AddUserMessage>(13, L"AddUserMessage"),
    OfPosReg::Get<&DataPosReg::DebugLog>(14, L"DebugLog"),
    OfPosReg::Method<&DataPosReg::GetValueXyzwpr>(15, L"GetValueXyzwpr"),
    OfPosReg::Method<&DataPosReg::GetValueJoint>(16, L"GetValueJoint"),
    OfPosReg::Method<&DataPosReg::SetValueJoint2>(17, L"SetValueJoint2"),
    OfPosReg::Method<&DataPosReg::SetValueXyzwpr2>(18, L"SetValueXyzwpr2"),
    OfPosReg::Get<&Part<&Position::xyzwpr, DataPosReg, std::int32_t>>(101, L"Xyzwpr"),
    OfPosReg::Get<&Part<&Position::config, DataPosReg, std::int32_t>>(102, L"Config"),
    OfPosReg::Get<&Part<&Position::joint, DataPosReg, std::int32_t>>(103, L"Joint"),
    OfPosReg::Get<&Part<&Position::UF, DataPosReg, std::int32_t>>(104, L"UF"),
    OfPosReg::Get<&Part<&Position::UT, DataPosReg, std::int32_t>>(105, L"UT"),
    OfPosReg::Get<&Part<&Position::ValidC, DataPosReg, std::int32_t>>(106, L"ValidC"),
    OfPosReg::Get<&Part<&Position::ValidJ, DataPosReg, std::int32_t>>(107, L"ValidJ"),
};
template <>
const Class& ClassOf<DataPosReg>() {
  static const Class itsClass(IID_DataPosReg, DataPosRegMembers);
  return itsClass;
}

using OfPosRegXyzwpr = MembersOf<DataPosRegXyzwpr>;
static const Member DataPosRegXyzwprMembers[] = {
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::DataType>(1, L"DataType"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::Group>(2, L"Group"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::DataTable>(3, L"DataTable"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::Valid>(4, L"Valid"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::SetValueXyzwpr>(5, L"SetValueXyzwpr"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::Update>(6, L"Update"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::StartIndex>(7, L"StartIndex"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::EndIndex>(8, L"EndIndex"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::ObjectID>(9, L"ObjectID"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::Kill>(10, L"Kill"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::GetTypeName>(11, L"GetTypeName"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::AddUserMessage>(12, L"AddUserMessage"),
    OfPosRegXyzwpr::Get<&DataPosRegXyzwpr::DebugLog>(13, L"DebugLog"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::Reset>(14, L"Reset"),
    OfPosRegXyzwpr::Method<&DataPosRegXyzwpr::SetValueXyzwpr2>(15, L"SetValueXyzwpr2"),
};
template <>
const Class& ClassOf<DataPosRegXyzwpr>() {
  static const Class itsClass(IID_DataPosRegXyzwpr, DataPosRegXyzwprMembers);
  return itsClass;
}

using OfPosRegMG = MembersOf<DataPosRegMG>;
static const Member DataPosRegMGMembers[] = {
    OfPosRegMG::Get<&DataPosRegMG::DataType>(1, L"DataType"),
    OfPosRegMG::Get<&DataPosRegMG::GroupCount>(2, L"GroupCount"),
    OfPosRegMG::Get<&DataPosRegMG::DataTable>(3, L"DataTable"),
    OfPosRegMG::Get<&DataPosRegMG::Valid>(4, L"Valid"),
    OfPosRegMG::Method<&DataPosRegMG::SetValueJoint>(5, L"SetValueJoint"),
    OfPosRegMG::Method<&DataPosRegMG::SetValueJoint2>(6, L"SetValueJoint2"),
    OfPosRegMG::Method<&DataPosRegMG::SetValueXyzwpr>(7, L"SetValueXyzwpr"),
    OfPosRegMG::Method<&DataPosRegMG::SetValueXyzwpr2>(8, L"SetValueXyzwpr2"),
    OfPosRegMG::Method<&DataPosRegMG::Update>(9, L"Update"),
    OfPosRegMG::Get<&DataPosRegMG::StartIndex>(10, L"StartIndex"),
    OfPosRegMG::Get<&DataPosRegMG::EndIndex>(11, L"EndIndex"),
    OfPosRegMG::Get<&DataPosRegMG::ObjectID>(12, L"ObjectID"),
    OfPosRegMG::Method<&DataPosRegMG::Kill>(13, L"Kill"),
    OfPosRegMG::Method<&DataPosRegMG::GetTypeName>(14, L"GetTypeName"),
    OfPosRegMG::Method<&DataPosRegMG::AddUserMessage>(15, L"AddUserMessage"),
    OfPosRegMG::Get<&DataPosRegMG::DebugLog>(16, L"DebugLog"),
    OfPosRegMG::Method<&DataPosRegMG::Reset>(17, L"Reset"),
    OfPosRegMG::Method<&DataPosRegMG::GetValueJoint>(18, L"GetValueJoint"),
    OfPosRegMG::Method<&DataPosRegMG::GetValueXyzwpr>(19, L"GetValueXyzwpr"),
    OfPosRegMG::Get<&GroupCartesian<&Position::xyzwpr>>(101, L"Xyzwpr"),
    OfPosRegMG::Get<&GroupCartesian<&Position::config>>(102, L"Config"),
    OfPosRegMG::Get<&GroupJoint>(103, L"Joint"),
};
template <>
const Class& ClassOf<DataPosRegMG>() {
  static const Class itsClass(IID_DataPosRegMG, DataPosRegMGMembers);
  return itsClass;
}

using OfCurPos = MembersOf<DataCurPos>;
static const Member DataCurPosMembers[] = {
    OfCurPos::Get<&DataCurPos::DataType>(1, L"DataType"),
    OfCurPos::Get<&DataCurPos::Group>(2, L"Group"),
    OfCurPos::Get<&DataCurPos::DataTable>(3, L"DataTable"),
    OfCurPos::Get<&DataCurPos::Valid>(4, L"Valid"),
    OfCurPos::Method<&DataCurPos::GetValue>(5, L"GetValue"),
    OfCurPos::Method<&DataCurPos::GetValueXyzwpr>(6, L"GetValueXyzwpr"),
    OfCurPos::Method<&DataCurPos::GetValueJoint>(7, L"GetValueJoint"),
    OfCurPos::Get<&DataCurPos::ObjectID>(8, L"ObjectID"),
    OfCurPos::Method<&DataCurPos::Kill>(9, L"Kill"),
    OfCurPos::Method<&DataCurPos::GetTypeName>(10, L"GetTypeName"),
    OfCurPos::Method<&DataCurPos::AddUserMessage>(11, L"AddUserMessage"),
    OfCurPos::Get<&DataCurPos::DebugLog>(12, L"DebugLog"),
    OfCurPos::Get<&Part<&Position::xyzwpr, DataCurPos>>(101, L"Xyzwpr"),
    OfCurPos::Get<&Part<&Position::config, DataCurPos>>(102, L"Config"),
    OfCurPos::Get<&Part<&Position::joint, DataCurPos>>(103, L"Joint"),
    OfCurPos::Get<&Part<&Position::UF, DataCurPos>>(104, L"UF"),
    OfCurPos::Get<&Part<&Position::UT, DataCurPos>>(105, L"UT"),
    OfCurPos::Get<&Part<&Position::ValidC, DataCurPos>>(106, L"ValidC"),
    OfCurPos::Get<&Part<&Position::ValidJ, DataCurPos>>(107, L"ValidJ"),
};
template <>
const Class& ClassOf<DataCurPos>() {
  static const Class itsClass(IID_DataCurPos, DataCurPosMembers);
  return itsClass;
}

using OfSysVarPos = MembersOf<DataSysVarPos>;
static const Member DataSysVarPosMembers[] = {
    OfSysVarPos::Get<&DataSysVarPos::DataType>(1, L"DataType"),
    OfSysVarPos::Get<&DataSysVarPos::DataTable>(2, L"DataTable"),
    OfSysVarPos::Get<&DataSysVarPos::Valid>(3, L"Valid"),
    OfSysVarPos::Method<&DataSysVarPos::GetValue>(4, L"GetValue"),
    OfSysVarPos::Method<&DataSysVarPos::GetValueXyzwpr>(5, L"GetValueXyzwpr"),
    OfSysVarPos::Method<&DataSysVarPos::GetValueJoint>(6, L"GetValueJoint"),
    OfSysVarPos::Get<&DataSysVarPos::SysVarName>(7, L"SysVarName"),
    OfSysVarPos::Method<&DataSysVarPos::SetValueJoint>(8, L"SetValueJoint"),
    OfSysVarPos::Method<&DataSysVarPos::SetValueJoint2>(9, L"SetValueJoint2"),
    OfSysVarPos::Method<&DataSysVarPos::SetValueXyzwpr>(10, L"SetValueXyzwpr"),
    OfSysVarPos::Method<&DataSysVarPos::SetValueXyzwpr2>(11, L"SetValueXyzwpr2"),
    OfSysVarPos::Get<&DataSysVarPos::ObjectID>(12, L"ObjectID"),
    OfSysVarPos::Method<&DataSysVarPos::Kill>(13, L"Kill"),
    OfSysVarPos::Method<&DataSysVarPos::GetTypeName>(14, L"GetTypeName"),
    OfSysVarPos::Method<&DataSysVarPos::AddUserMessage>(15, L"AddUserMessage"),
    OfSysVarPos::Get<&DataSysVarPos::DebugLog>(16, L"DebugLog"),
    OfSysVarPos::Get<&Part<&Position::xyzwpr, DataSysVarPos>>(101, L"Xyzwpr"),
    OfSysVarPos::Get<&Part<&Position::config, DataSysVarPos>>(102, L"Config"),
    OfSysVarPos::Get<&Part<&Position::joint, DataSysVarPos>>(103, L"Joint"),
    OfSysVarPos::Get<&Part<&Position::UF, DataSysVarPos>>(104, L"UF"),
    OfSysVarPos::Get<&Part<&Position::UT, DataSysVarPos>>(105, L"UT"),
    OfSysVarPos::Get<&Part<&Position::ValidC, DataSysVarPos>>(106, L"ValidC"),
    OfSysVarPos::Get<&Part<&Position::ValidJ, DataSysVarPos>>(107, L"ValidJ"),
};
template <>
const Class& ClassOf<DataSysVarPos>() {
  static const Class itsClass(IID_DataSysVarPos, DataSysVarPosMembers);
  return itsClass;
}

}  // namespace orif::automation

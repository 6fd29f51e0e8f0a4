// Takes the place of the library's header in a test program that is a host of the automation
// component: the same classes, whose members call the component's objects.
#pragma once

#include "orif/base/ArrayView.h"
#include "orif/base/Variant.h"
#include "orif/items/DataArea.h"
#include "orif/items/DataType.h"
#include "orif/lowerlayer/Automation.h"
#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"
#include "orif/version.h"
#include "tests/support/latebound/Client.h"
#include "tests/support/latebound/Component.h"

// A member in both bindings.
#define METHOD(name) &Interface::name, #name, DISPATCH_METHOD
#define GET(name) &Interface::get_##name, #name, DISPATCH_PROPERTYGET
#define PUT(name) &Interface::put_##name, #name, DISPATCH_PROPERTYPUT
// The two members for a kind of signals, whose states are `T`.
#define SIGNALS(name, T)                                                         \
  bool Read##name(Long Index, ArrayView<T> Buffer, Long Count) noexcept {        \
    return Call<bool>(METHOD(Read##name), Index, Buffer, Count);                 \
  }                                                                              \
  bool Write##name(Long Index, ArrayView<const T> Buffer, Long Count) noexcept { \
    return Call<bool>(METHOD(Write##name), Index, Buffer, Count);                \
  }

namespace orif {
inline namespace hosted {  // apart from the library's own classes, which the component contains

class DataTable;
using Long = std::int32_t;
using Short = std::int16_t;
using Text = std::string_view;
using Shorts = ArrayView<const Short>;
using Longs = ArrayView<const Long>;
using Floats = ArrayView<const float>;

class DataItem : public host::Object {
 public:
  using Object::Object;
  virtual ORIF_DATA_TYPE DataType() const noexcept = 0;
  virtual std::shared_ptr<orif::DataTable> DataTable() const noexcept = 0;
  virtual bool Valid() const noexcept = 0;
  virtual Long ObjectID() const noexcept = 0;
  virtual void Kill() noexcept = 0;
  virtual std::string GetTypeName() const noexcept = 0;
  virtual void AddUserMessage(Text vstrMessage) const noexcept = 0;
  virtual bool DebugLog() const noexcept = 0;
};

template <class I>
class ItemOf : public DataItem {
 public:
  using Interface = I;
  using DataItem::DataItem;
  ORIF_DATA_TYPE DataType() const noexcept override { return Call<ORIF_DATA_TYPE>(GET(DataType)); }
  std::shared_ptr<orif::DataTable> DataTable() const noexcept override {
    return Call<std::shared_ptr<orif::DataTable>>(GET(DataTable));
  }
  bool Valid() const noexcept override { return Call<bool>(GET(Valid)); }
  Long ObjectID() const noexcept override { return Call<Long>(GET(ObjectID)); }
  void Kill() noexcept override { Call<void>(METHOD(Kill)); }
  std::string GetTypeName() const noexcept override {
    return Call<std::string>(METHOD(GetTypeName));
  }
  void AddUserMessage(Text vstrMessage) const noexcept override {
    Call<void>(METHOD(AddUserMessage), vstrMessage);
  }
  bool DebugLog() const noexcept override { return Call<bool>(GET(DebugLog)); }
};

template <class I>
class RangeOf : public ItemOf<I> {
 public:
  using Interface = I;
  using ItemOf<I>::ItemOf;
  Long StartIndex() const noexcept { return this->template Call<Long>(GET(StartIndex)); }
  Long EndIndex() const noexcept { return this->template Call<Long>(GET(EndIndex)); }
};

class DataNumReg : public RangeOf<::DataNumReg> {
 public:
  using RangeOf::RangeOf;
  bool GetValue(Long Index, Variant& Value) noexcept {
    return Call<bool>(METHOD(GetValue), Index, Value);
  }
  bool SetValue(Long Index, const Variant& Value) noexcept {
    return Call<bool>(METHOD(SetValue), Index, Value);
  }
  bool SetValues(Long Index, const Variant& Value, Long Count) noexcept {
    return Call<bool>(METHOD(SetValues), Index, Value, Count);
  }
  bool SetValuesInt(Long Index, Longs Value, Long Count) noexcept {
    return Call<bool>(METHOD(SetValuesInt), Index, Value, Count);
  }
  bool SetValuesReal(Long Index, Floats Value, Long Count) noexcept {
    return Call<bool>(METHOD(SetValuesReal), Index, Value, Count);
  }
};

class DataSysVar : public ItemOf<::DataSysVar> {
 public:
  using ItemOf::ItemOf;
  bool GetValue(Variant& Value) noexcept { return Call<bool>(METHOD(GetValue), Value); }
  std::string SysVarName() const noexcept { return Call<std::string>(GET(SysVarName)); }
  bool SetValue(const Variant& Value) noexcept { return Call<bool>(METHOD(SetValue), Value); }
};

class DataString : public RangeOf<::DataString> {
 public:
  using RangeOf::RangeOf;
  bool GetValue(Long Index, std::string& Value) noexcept {
    return Call<bool>(METHOD(GetValue), Index, Value);
  }
  bool SetValue(Long Index, Text Value) noexcept {
    return Call<bool>(METHOD(SetValue), Index, Value);
  }
  bool Update() noexcept { return Call<bool>(METHOD(Update)); }
  void Reset() noexcept { Call<void>(METHOD(Reset)); }
};

class DataTask : public ItemOf<::DataTask> {
 public:
  using ItemOf::ItemOf;
  Long Index() const noexcept { return Call<Long>(GET(Index)); }
  bool GetValue(std::string& ProgName, Short& LineNumber, Short& State,
                std::string& ParentProgName) noexcept {
    return Call<bool>(METHOD(GetValue), ProgName, LineNumber, State, ParentProgName);
  }
};

class DataAlarm : public ItemOf<::DataAlarm> {
 public:
  using ItemOf::ItemOf;
  bool GetValue(Long Count, auto&... values) noexcept {
    return Call<bool>(METHOD(GetValue), Count, values...);
  }
};

// The values of a position in separate arguments have the types that the interfaces want.
class DataPosReg : public RangeOf<::DataPosReg> {
 public:
  using RangeOf::RangeOf;
  Long Group() const noexcept { return Call<Long>(GET(Group)); }
  bool GetValue(Long Index, ArrayView<float> Xyzwpr, ArrayView<Short> Config,
                ArrayView<float> Joint, Short& UF, Short& UT, Short& ValidC,
                Short& ValidJ) noexcept {
    return Call<bool>(METHOD(GetValue), Index, Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ);
  }
  bool GetValueXyzwpr(Long Index, auto&... values) noexcept {
    return Call<bool>(METHOD(GetValueXyzwpr), Index, values...);
  }
  bool GetValueJoint(Long Index, auto&... values) noexcept {
    return Call<bool>(METHOD(GetValueJoint), Index, values...);
  }
  bool SetValueJoint(Long Index, Floats Joint, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueJoint), Index, Joint, UF, UT);
  }
  bool SetValueJoint2(Long Index, float J1, float J2, float J3, float J4, float J5, float J6,
                      float J7, float J8, float J9, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueJoint2), Index, J1, J2, J3, J4, J5, J6, J7, J8, J9, UF, UT);
  }
  bool SetValueXyzwpr(Long Index, Floats Xyzwpr, Shorts Config, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr), Index, Xyzwpr, Config, UF, UT);
  }
  bool SetValueXyzwpr2(Long Index, float X, float Y, float Z, float W, float P, float R, float E1,
                       float E2, float E3, Short C1, Short C2, Short C3, Short C4, Short C5,
                       Short C6, Short C7, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr2), Index, X, Y, Z, W, P, R, E1, E2, E3, C1, C2, C3, C4,
                      C5, C6, C7, UF, UT);
  }
};

class DataPosRegXyzwpr : public RangeOf<::DataPosRegXyzwpr> {
 public:
  using RangeOf::RangeOf;
  Long Group() const noexcept { return Call<Long>(GET(Group)); }
  bool SetValueXyzwpr(Long Index, Floats Xyzwpr, Shorts Config) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr), Index, Xyzwpr, Config);
  }
  bool SetValueXyzwpr2(Long Index, float X, float Y, float Z, float W, float P, float R, float E1,
                       float E2, float E3, Short C1, Short C2, Short C3, Short C4, Short C5,
                       Short C6, Short C7) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr2), Index, X, Y, Z, W, P, R, E1, E2, E3, C1, C2, C3, C4,
                      C5, C6, C7);
  }
  bool Update() noexcept { return Call<bool>(METHOD(Update)); }
  void Reset() noexcept { Call<void>(METHOD(Reset)); }
};

class DataPosRegMG : public RangeOf<::DataPosRegMG> {
 public:
  using RangeOf::RangeOf;
  Long GroupCount() const noexcept { return Call<Long>(GET(GroupCount)); }
  bool GetValueJoint(Long Index, Long Group, auto&... values) noexcept {
    return Call<bool>(METHOD(GetValueJoint), Index, Group, values...);
  }
  bool GetValueXyzwpr(Long Index, Long Group, auto&... values) noexcept {
    return Call<bool>(METHOD(GetValueXyzwpr), Index, Group, values...);
  }
  bool SetValueJoint(Long Index, Long Group, Floats Joint) noexcept {
    return Call<bool>(METHOD(SetValueJoint), Index, Group, Joint);
  }
  bool SetValueJoint2(Long Index, Long Group, float J1, float J2, float J3, float J4, float J5,
                      float J6, float J7, float J8, float J9) noexcept {
    return Call<bool>(METHOD(SetValueJoint2), Index, Group, J1, J2, J3, J4, J5, J6, J7, J8, J9);
  }
  bool SetValueXyzwpr(Long Index, Long Group, Floats Xyzwpr, Shorts Config) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr), Index, Group, Xyzwpr, Config);
  }
  bool SetValueXyzwpr2(Long Index, Long Group, float X, float Y, float Z, float W, float P, float R,
                       float E1, float E2, float E3, Short C1, Short C2, Short C3, Short C4,
                       Short C5, Short C6, Short C7) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr2), Index, Group, X, Y, Z, W, P, R, E1, E2, E3, C1, C2,
                      C3, C4, C5, C6, C7);
  }
  bool Update() noexcept { return Call<bool>(METHOD(Update)); }
  void Reset() noexcept { Call<void>(METHOD(Reset)); }
};

template <class I>
class PositionOf : public ItemOf<I> {
 public:
  using Interface = I;
  using ItemOf<I>::ItemOf;
  bool GetValue(ArrayView<float> Xyzwpr, ArrayView<Short> Config, ArrayView<float> Joint, Short& UF,
                Short& UT, Short& ValidC, Short& ValidJ) noexcept {
    return this->template Call<bool>(METHOD(GetValue), Xyzwpr, Config, Joint, UF, UT, ValidC,
                                     ValidJ);
  }
  bool GetValueXyzwpr(auto&... values) noexcept {
    return this->template Call<bool>(METHOD(GetValueXyzwpr), values...);
  }
  bool GetValueJoint(auto&... values) noexcept {
    return this->template Call<bool>(METHOD(GetValueJoint), values...);
  }
};

class DataCurPos : public PositionOf<::DataCurPos> {
 public:
  using PositionOf::PositionOf;
  Long Group() const noexcept { return Call<Long>(GET(Group)); }
};

class DataSysVarPos : public PositionOf<::DataSysVarPos> {
 public:
  using PositionOf::PositionOf;
  std::string SysVarName() const noexcept { return Call<std::string>(GET(SysVarName)); }
  bool SetValueJoint(Floats Joint, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueJoint), Joint, UF, UT);
  }
  bool SetValueJoint2(float J1, float J2, float J3, float J4, float J5, float J6, float J7,
                      float J8, float J9, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueJoint2), J1, J2, J3, J4, J5, J6, J7, J8, J9, UF, UT);
  }
  bool SetValueXyzwpr(Floats Xyzwpr, Shorts Config, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr), Xyzwpr, Config, UF, UT);
  }
  bool SetValueXyzwpr2(float X, float Y, float Z, float W, float P, float R, float E1, float E2,
                       float E3, Short C1, Short C2, Short C3, Short C4, Short C5, Short C6,
                       Short C7, Short UF, Short UT) noexcept {
    return Call<bool>(METHOD(SetValueXyzwpr2), X, Y, Z, W, P, R, E1, E2, E3, C1, C2, C3, C4, C5, C6,
                      C7, UF, UT);
  }
};

class DataTable : public host::Object {
 public:
  using Interface = ::DataTable;
  using Object::Object;
  using Kind = ORIF_DATA_TYPE;

  auto AddNumReg(Kind DataType, Long StartIndex, Long EndIndex) noexcept {
    return Add<DataNumReg>(METHOD(AddNumReg), DataType, StartIndex, EndIndex);
  }
  auto AddPosReg(Kind DataType, Long Group, Long StartIndex, Long EndIndex) noexcept {
    return Add<DataPosReg>(METHOD(AddPosReg), DataType, Group, StartIndex, EndIndex);
  }
  auto AddPosRegXyzwpr(Kind DataType, Long Group, Long StartIndex, Long EndIndex) noexcept {
    return Add<DataPosRegXyzwpr>(METHOD(AddPosRegXyzwpr), DataType, Group, StartIndex, EndIndex);
  }
  auto AddPosRegMG(Kind DataType, Text Group, Long StartIndex, Long EndIndex) noexcept {
    return Add<DataPosRegMG>(METHOD(AddPosRegMG), DataType, Group, StartIndex, EndIndex);
  }
  auto AddCurPos(Kind DataType, Long Group) noexcept {
    return Add<DataCurPos>(METHOD(AddCurPos), DataType, Group);
  }
  auto AddCurPosUF(Kind DataType, Long Group, Long UF) noexcept {
    return Add<DataCurPos>(METHOD(AddCurPosUF), DataType, Group, UF);
  }
  auto AddSysVarPos(Kind DataType, Text SysVarName) noexcept {
    return Add<DataSysVarPos>(METHOD(AddSysVarPos), DataType, SysVarName);
  }
  auto AddSysVar(Kind DataType, Text SysVarName) noexcept {
    return Add<DataSysVar>(METHOD(AddSysVar), DataType, SysVarName);
  }
  auto AddTask(Kind DataType, Long Index) noexcept {
    return Add<DataTask>(METHOD(AddTask), DataType, Index);
  }
  auto AddAlarm(Kind DataType, Long AlarmCount, Long AlarmMessageMode = 0) noexcept {
    return Add<DataAlarm>(METHOD(AddAlarm), DataType, AlarmCount, AlarmMessageMode);
  }
  auto AddString(Kind DataType, Long StartIndex, Long EndIndex) noexcept {
    return Add<DataString>(METHOD(AddString), DataType, StartIndex, EndIndex);
  }
  auto AddStringEx(Kind DataType, Text DataSymbol, Long StartIndex, Long EndIndex) noexcept {
    return Add<DataString>(METHOD(AddStringEx), DataType, DataSymbol, StartIndex, EndIndex);
  }
  bool Refresh() noexcept { return Call<bool>(METHOD(Refresh)); }
  bool GetLastDataFloat(Long lngAddress, float& sngValue) noexcept {
    return Call<bool>(METHOD(GetLastDataFloat), lngAddress, sngValue);
  }
  Long Count() const noexcept { return Call<Long>(METHOD(Count)); }
  std::shared_ptr<DataItem> Item(const Variant& Index) const noexcept {
    return Call<std::shared_ptr<DataItem>>(METHOD(Item), Index);
  }
  bool Clear() noexcept { return Call<bool>(METHOD(Clear)); }
  void Kill() noexcept { Call<void>(METHOD(Kill)); }
  bool Valid() const noexcept { return Call<bool>(GET(Valid)); }
  bool Fixed() const noexcept { return Call<bool>(GET(Fixed)); }
  Long ObjectID() const noexcept { return Call<Long>(GET(ObjectID)); }
  std::string GetTypeName() const noexcept { return Call<std::string>(METHOD(GetTypeName)); }
  void AddUserMessage(Text vstrMessage) const noexcept {
    Call<void>(METHOD(AddUserMessage), vstrMessage);
  }
  bool DebugLog() const noexcept { return Call<bool>(GET(DebugLog)); }

 private:
  template <class Item, class Member, class... A>
  std::shared_ptr<Item> Add(Member member, const char* name, WORD kind, A&... values) noexcept {
    return Call<std::shared_ptr<Item>>(member, name, kind, values...);
  }
};

class Core : public host::Object {
 public:
  using Interface = ::Core;
  Core() noexcept : Core(std::make_unique<host::LowerClass>()) {}
  explicit Core(const DispatchFactory& factory) noexcept
      : Core(std::make_unique<host::LowerClass>(factory)) {}

  Long ObjectID() const noexcept { return Call<Long>(GET(ObjectID)); }
  bool Connect(Text HostName) noexcept {
    const host::Naming naming(*lower_);
    return Call<bool>(METHOD(Connect), HostName);
  }
  bool Disconnect() noexcept { return Call<bool>(METHOD(Disconnect)); }
  bool ClearAlarm(Long vlngType = 0) noexcept { return Call<bool>(METHOD(ClearAlarm), vlngType); }
  bool IsConnected() const noexcept { return Call<bool>(GET(IsConnected)); }
  Long ConnectState() const noexcept { return Call<Long>(GET(ConnectState)); }
  Long TimeOutValue() const noexcept { return Call<Long>(GET(TimeOutValue)); }
  void TimeOutValue(Long value) noexcept { Call<void>(PUT(TimeOutValue), value); }
  Long PortNumber() const noexcept { return Call<Long>(GET(PortNumber)); }
  void PortNumber(Long value) noexcept { Call<void>(PUT(PortNumber), value); }
  Short ClientID() const noexcept { return Call<Short>(GET(ClientID)); }
  void ClientID(Short value) noexcept { Call<void>(PUT(ClientID), value); }
  std::shared_ptr<Dispatch> GetLib() const noexcept {
    return Call<std::shared_ptr<Dispatch>>(METHOD(GetLib));
  }
  SIGNALS(SDO, Short)
  SIGNALS(SDI, Short)
  SIGNALS(RDO, Short)
  SIGNALS(RDI, Short)
  SIGNALS(SO, Short)
  SIGNALS(SI, Short)
  SIGNALS(UO, Short)
  SIGNALS(UI, Short)
  SIGNALS(GO, Long)
  SIGNALS(GI, Long)
  std::shared_ptr<orif::DataTable> DataTable() noexcept {
    return Call<std::shared_ptr<orif::DataTable>>(GET(DataTable));
  }
  std::shared_ptr<orif::DataTable> DataTable2() noexcept {
    return Call<std::shared_ptr<orif::DataTable>>(GET(DataTable2));
  }
  Long mlngDataTableCount() const noexcept { return Call<Long>(GET(mlngDataTableCount)); }
  bool DebugLog() const noexcept { return Call<bool>(GET(DebugLog)); }
  void DebugLog(bool value) noexcept { Call<void>(PUT(DebugLog), value); }
  std::string DebugMessage() const noexcept { return Call<std::string>(GET(DebugMessage)); }
  std::string GetDebugMessages() const noexcept {
    return Call<std::string>(METHOD(GetDebugMessages));
  }
  void AddUserMessage(Text vstrMessage) const noexcept {
    Call<void>(METHOD(AddUserMessage), vstrMessage);
  }
  std::string GetTypeName() const noexcept { return Call<std::string>(METHOD(GetTypeName)); }

 private:
  explicit Core(std::unique_ptr<host::LowerClass> lower) noexcept
      : Object(host::CreateCore(*lower).get()), lower_(std::move(lower)) {}

  std::unique_ptr<host::LowerClass> lower_;
};

}  // namespace hosted

namespace host {

template <>
inline std::shared_ptr<Dispatch> Wrapped<Dispatch>(IDispatch* object) {
  return object == nullptr ? nullptr : AdaptAutomation(*object);
}

template <>
struct Make<DataItem> {
  template <class... T>
  static std::shared_ptr<DataItem> FirstOf(IDispatch* object) {
    std::shared_ptr<DataItem> made;
    ((made = Make<T>()(object)) || ...);
    return made;
  }
  std::shared_ptr<DataItem> operator()(IDispatch* object) const {
    return FirstOf<DataNumReg, DataSysVar, DataString, DataTask, DataAlarm, DataPosReg,
                   DataPosRegXyzwpr, DataPosRegMG, DataCurPos, DataSysVarPos>(object);
  }
};

}  // namespace host
}  // namespace orif

#undef METHOD
#undef GET
#undef PUT
#undef SIGNALS

// Every class and every public member exists under its name.
#include <gtest/gtest.h>

#include "orif/orif.h"

namespace orif {
namespace {

// Both halves of a property that can be read and put.
template <class T>
consteval int Property(T (Core::*)() const noexcept, void (Core::*)(T) noexcept) {
  return 1;
}

template <auto... Members>
constexpr std::size_t Count = sizeof...(Members);

// The members that every item class has.
template <class Item, auto... Members>
constexpr std::size_t ItemCount =
    Count<&Item::DataType, &Item::DataTable, &Item::Valid, &Item::ObjectID, &Item::Kill,
          &Item::GetTypeName, &Item::AddUserMessage, &Item::DebugLog, Members...>;

TEST(Surface, IsWhole) {
  EXPECT_EQ(Property<std::int32_t>(&Core::TimeOutValue, &Core::TimeOutValue) +
                Property<std::int32_t>(&Core::PortNumber, &Core::PortNumber) +
                Property<std::int16_t>(&Core::ClientID, &Core::ClientID) +
                Property<bool>(&Core::DebugLog, &Core::DebugLog),
            4);
  EXPECT_EQ((Count<&Core::ObjectID, &Core::Connect, &Core::Disconnect, &Core::ClearAlarm,
                   &Core::DataTable, &Core::DataTable2, &Core::mlngDataTableCount,
                   &Core::IsConnected, &Core::ConnectState, &Core::GetTypeName, &Core::GetLib,
                   &Core::DebugMessage, &Core::GetDebugMessages, &Core::AddUserMessage>),
            14U);
  EXPECT_EQ((Count<&Core::ReadSDO, &Core::WriteSDO, &Core::ReadSDI, &Core::WriteSDI, &Core::ReadRDO,
                   &Core::WriteRDO, &Core::ReadRDI, &Core::WriteRDI, &Core::ReadSO, &Core::WriteSO,
                   &Core::ReadSI, &Core::WriteSI, &Core::ReadUO, &Core::WriteUO, &Core::ReadUI,
                   &Core::WriteUI, &Core::ReadGO, &Core::WriteGO, &Core::ReadGI, &Core::WriteGI>),
            20U);
  using Table = DataTable;
  EXPECT_EQ((Count<&Table::Clear, &Table::Refresh, &Table::Count, &Table::Item, &Table::AddNumReg,
                   &Table::AddPosReg, &Table::AddPosRegXyzwpr, &Table::AddPosRegMG,
                   &Table::AddCurPos, &Table::AddCurPosUF, &Table::AddTask, &Table::AddSysVarPos,
                   &Table::AddSysVar, &Table::AddAlarm, &Table::GetLastDataFloat, &Table::ObjectID,
                   &Table::Valid, &Table::Kill, &Table::GetTypeName, &Table::AddUserMessage,
                   &Table::DebugLog, &Table::AddString, &Table::AddStringEx,
                   static_cast<bool (Table::*)() const noexcept>(&Table::Fixed)>),
            24U);
  using NumReg = DataNumReg;
  EXPECT_EQ((ItemCount<NumReg, &NumReg::StartIndex, &NumReg::EndIndex, &NumReg::GetValue,
                       &NumReg::SetValue, &NumReg::SetValues, &NumReg::SetValuesInt,
                       &NumReg::SetValuesReal>),
            15U);
  using PosReg = DataPosReg;
  EXPECT_EQ(
      (ItemCount<PosReg, &PosReg::Group, &PosReg::StartIndex, &PosReg::EndIndex, &PosReg::GetValue,
                 &PosReg::SetValueJoint, &PosReg::SetValueXyzwpr, &PosReg::GetValueXyzwpr,
                 &PosReg::GetValueJoint, &PosReg::SetValueJoint2, &PosReg::SetValueXyzwpr2>),
      18U);
  using Xyzwpr = DataPosRegXyzwpr;
  EXPECT_EQ((ItemCount<Xyzwpr, &Xyzwpr::Group, &Xyzwpr::StartIndex, &Xyzwpr::EndIndex,
                       &Xyzwpr::SetValueXyzwpr, &Xyzwpr::SetValueXyzwpr2, &Xyzwpr::Update,
                       &Xyzwpr::Reset>),
            15U);
  using MG = DataPosRegMG;
  EXPECT_EQ((ItemCount<MG, &MG::GroupCount, &MG::StartIndex, &MG::EndIndex, &MG::SetValueJoint,
                       &MG::SetValueJoint2, &MG::SetValueXyzwpr, &MG::SetValueXyzwpr2, &MG::Update,
                       &MG::Reset, &MG::GetValueJoint, &MG::GetValueXyzwpr>),
            19U);
  using CurPos = DataCurPos;
  EXPECT_EQ((ItemCount<CurPos, &CurPos::Group, &CurPos::GetValue, &CurPos::GetValueXyzwpr,
                       &CurPos::GetValueJoint>),
            12U);
  using VarPos = DataSysVarPos;
  EXPECT_EQ((ItemCount<VarPos, &VarPos::GetValue, &VarPos::GetValueXyzwpr, &VarPos::GetValueJoint,
                       &VarPos::SysVarName, &VarPos::SetValueJoint, &VarPos::SetValueJoint2,
                       &VarPos::SetValueXyzwpr, &VarPos::SetValueXyzwpr2>),
            16U);
  using String = DataString;
  EXPECT_EQ((ItemCount<String, &String::StartIndex, &String::EndIndex, &String::GetValue,
                       &String::SetValue, &String::Update, &String::Reset>),
            14U);
  EXPECT_EQ((ItemCount<DataSysVar, &DataSysVar::GetValue, &DataSysVar::SysVarName,
                       &DataSysVar::SetValue>),
            11U);
  EXPECT_EQ((ItemCount<DataTask, &DataTask::Index, &DataTask::GetValue>), 10U);
  EXPECT_EQ((ItemCount<DataAlarm, &DataAlarm::GetValue>), 9U);
  EXPECT_EQ(POSREGMG, 36);
}

}  // namespace
}  // namespace orif

#include "tests/support/RecordedCore.h"

namespace orif::test {
namespace {

class CoreTest : public RecordedCore {};

TEST_F(CoreTest, TakesAnIdAndTellsTheLowerLayerItsKey) {
  EXPECT_EQ(core.ObjectID(), 2);
  EXPECT_EQ(lower->Calls(), (Calls{"62(I2& 1024 x1)"}));
  EXPECT_EQ(core.ClientID(), 0);
  core.ClientID(5);
  EXPECT_EQ(lower->Calls(), (Calls{"62(I2& 1029 x1)"}));
  EXPECT_EQ(core.ClientID(), 5);
  core.ClientID(31744);  // 1024 more does not fit 16 bits
  EXPECT_EQ(lower->Calls(), Calls{});
  EXPECT_EQ(core.ClientID(), 5);
}

TEST_F(CoreTest, ConnectsAndTraces) {
  core.DebugLog(true);
  lower->Calls();
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(core.Connect("robot")); }),
            (Lines{"[Core.Connect] ID=2, Enter", "[Core.Connect] ID=2, ConnectState=0",
                   "[Core.Connect] ID=2, HostName=robot", "[Core.Connect] ID=2, Connect Status 0",
                   "[Core.Connect] ID=2, ConnectState=1", "[Core.Connect] ID=2, Return"}));
  EXPECT_EQ(lower->Calls(), (Calls{"65", "put 1(text robot)", "11"}));
}

TEST_F(CoreTest, AFailedConnectCountsAsConnected) {
  lower->On(DispId::Connect, -2);
  lower->On(DispId::LastErrorText, [](auto) { return Text("no such host"); });
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(core.Connect("nowhere")); }),
            (Lines{"[Core.Connect] ID=2, Enter", "[Core.Connect] ID=2, ConnectState=0",
                   "[Core.Connect] ID=2, HostName=nowhere",
                   "[Core.Connect] ID=2, Connect Status -2", "[Core.Connect] ID=2, no such host",
                   "[Core.Connect] ID=2, ConnectState=1", "[Core.Connect] ID=2, Return"}));
  EXPECT_TRUE(core.IsConnected());
  EXPECT_EQ(core.ConnectState(), 1);
  core.DebugLog(false);
  EXPECT_FALSE(core.Connect("nowhere"));
  EXPECT_TRUE(core.DebugMessage().ends_with("[Core.Connect] ID=2, Err reconnect not available"));
}

TEST_F(CoreTest, AStatusLineThatCannotBeHadDoesNotUndoTheConnection) {
  lower->On(DispId::Connect, 1);
  lower->Throw(DispId::LastErrorText, "gone");
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(core.Connect("robot")); }).back(),
            "[Core.Connect] ID=2, Return");
  EXPECT_EQ(core.ConnectState(), 1);
}

TEST_F(CoreTest, AFaultBeforeTheStatusLeavesTheCoreUnconnected) {
  for (const DispId id : {DispId::Reset, DispId::HostName, DispId::Connect}) {
    lower->Throw(id, "broken");
    EXPECT_EQ(Trail([&] { EXPECT_FALSE(core.Connect("robot")); }), Lines{});
    EXPECT_EQ(core.ConnectState(), 0);
    EXPECT_FALSE(core.IsConnected());
    lower->On(id, 0);
  }
  EXPECT_TRUE(core.Connect("robot"));
}

TEST_F(CoreTest, DisconnectKillsTheFirstTableAndLeavesTheSecond) {
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(core.Disconnect()); }),
            (Lines{"[Core.Disconnect] ID=2, Not connected"}));
  EXPECT_EQ(core.ConnectState(), 0);
  core.Connect("robot");
  const auto table = core.DataTable();
  const auto first = table->AddNumReg(NUMREG_INT, 1, 1);
  const auto table2 = core.DataTable2();
  const auto second = table2->AddNumReg(NUMREG_INT, 1, 1);
  lower->On(DispId::Disconnect, -5);
  lower->On(DispId::LastErrorText, [](auto) { return Text("never asked for"); });
  core.DebugLog(true);
  lower->Calls();
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(core.Disconnect()); }),
            (Lines{"[Core.Disconnect] ID=2, Enter", "[Core.Disconnect] ID=2, ConnectState=1",
                   "[Core.Disconnect] ID=2, Clear Objects",
                   "[Core.Disconnect] ID=2, Close Status -5", "[Core.Disconnect] ID=2, ",
                   "[Core.Disconnect] ID=2, ConnectState=2", "[Core.Disconnect] ID=2, Return"}));
  EXPECT_EQ(lower->Calls(), (Calls{"9"}));
  EXPECT_FALSE(table->Valid());
  EXPECT_FALSE(first->Valid());
  EXPECT_TRUE(table2->Valid());
  EXPECT_TRUE(second->Valid());
  EXPECT_EQ(core.GetLib(), nullptr);
  // The lower core object is gone: neither table can be had, and the second one's Clear faults
  // half-way.
  EXPECT_EQ(core.DataTable(), nullptr);
  EXPECT_EQ(core.DataTable2(), nullptr);
  EXPECT_EQ(core.mlngDataTableCount(), 0);
  EXPECT_EQ(core.TimeOutValue(), 0);
  EXPECT_FALSE(core.Connect("robot"));
  core.DebugLog(false);
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table2->Clear()); }),
            (Lines{"[DataTable.Clear] ID=" + Id(table2) + ", Err Object variable not set"}));
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table2->Refresh()); }),
            (Lines{"[DataTable.Refresh] ID=" + Id(table2) + ", Err Invalid NextAddr 1"}));
}

TEST_F(CoreTest, ClearAlarmSendsTheCommandWhileConnected) {
  EXPECT_FALSE(core.ClearAlarm());
  core.Connect("robot");
  lower->Calls();
  EXPECT_TRUE(core.ClearAlarm());
  EXPECT_TRUE(core.ClearAlarm(2));
  EXPECT_TRUE(core.ClearAlarm(-3));
  EXPECT_EQ(lower->Calls(), (Calls{"7(text& CLRALM)", "7(text& CLRALM 2)", "7(text& CLRALM)"}));
  lower->On(DispId::SendCommand, 3);
  lower->On(DispId::LastErrorText, [](auto) { return Text("busy"); });
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(core.ClearAlarm()); }),
            (Lines{"[Core.ClearAlarm] ID=2, Enter ", "[Core.ClearAlarm] ID=2, busy",
                   "[Core.ClearAlarm] ID=2, Return 3"}));
}

TEST_F(CoreTest, PassesSettingsThroughUnchanged) {
  lower->Calls();
  core.TimeOutValue(50);
  core.PortNumber(-1);
  EXPECT_EQ(lower->Calls(), (Calls{"put 2(I4 50)", "put 3(I4 -1)"}));
  lower->On(DispId::TimeOutValue, 1234);
  lower->On(DispId::PortNumber, [](auto) { return Text("8080"); });
  EXPECT_EQ(core.TimeOutValue(), 1234);
  EXPECT_EQ(core.PortNumber(), 8080);
  lower->Throw(DispId::PortNumber, "broken");
  EXPECT_EQ(Trail([&] { EXPECT_EQ(core.PortNumber(), 0); }), Lines{});
  EXPECT_EQ(lower->Calls(), (Calls{"get 2", "get 3", "get 3"}));
}

TEST_F(CoreTest, MakesTheTablesOnFirstUse) {
  core.DebugLog(true);
  lower->Calls();
  std::shared_ptr<DataTable> table;
  EXPECT_EQ(Trail([&] { table = core.DataTable(); }),
            (Lines{"[Core.DataTable] ID=2, Enter", "[Core.DataTable] ID=2, ClearRAssignment ",
                   "[Core.DataTable] ID=2, InitObject", "[Core.DataTable] ID=2, Return"}));
  EXPECT_EQ(Trail([&] { EXPECT_EQ(core.DataTable(), table); }),
            (Lines{"[Core.DataTable] ID=2, Enter", "[Core.DataTable] ID=2, Return"}));
  std::shared_ptr<DataTable> table2;
  EXPECT_EQ(Trail([&] { table2 = core.DataTable2(); }), Lines{});
  EXPECT_EQ(core.DataTable2(), table2);
  EXPECT_TRUE(table->Fixed());
  EXPECT_EQ(lower->Calls(), (Calls{"12"}));
  Core other([this] { return lower; });
  EXPECT_NE(other.DataTable2(), nullptr);  // makes both
  EXPECT_EQ(lower->Calls(), (Calls{"62(I2& 1024 x1)", "12"}));
  EXPECT_EQ(other.mlngDataTableCount(), 0);
}

TEST_F(CoreTest, TellsOfItself) {
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] {
              EXPECT_EQ(core.GetTypeName(), "Core");
              EXPECT_FALSE(core.IsConnected());
              core.ConnectState();
              core.AddUserMessage("hello");
              core.Connect("robot");
            }).size(),
            12U);
  EXPECT_EQ(
      Trail([&] {
        core.GetTypeName();
        core.IsConnected();
        core.ConnectState();
        core.AddUserMessage("hello");
      }),
      (Lines{"[Core.GetTypename] ID=2, Core", "[Core.IsConnected] ID=2, Enter ConnectState=1",
             "[Core.IsConnected] ID=2, Return True", "[Core.Get ConnectState] ID=2, 1:Connected",
             "[Core.AddUserMessage] ID=2, hello"}));
  core.Disconnect();
  EXPECT_EQ(Trail([&] {
              core.AddUserMessage("bye");
              core.ConnectState();
              core.DebugLog(false);
              core.AddUserMessage("quiet");
            }),
            (Lines{"[Core.AddUserMessage] ID=2, bye", "[Core.AddUserMessage] ID=2, ConnectState=2",
                   "[Core.Get ConnectState] ID=2, 2:Disconnected",
                   "[Core.Let DebugLog] ID=2, NewValue=False"}));
}

TEST_F(CoreTest, StandsWithoutALowerCoreObjectAndTriesAgain) {
  bool available = false;
  std::optional<Core> late;
  EXPECT_EQ(Trail([&] {
              late.emplace([&]() -> std::shared_ptr<Dispatch> {
                if (!available) throw Fault("not plugged in");
                return lower;
              });
            }),
            (Lines{"[Core.Class_initialize] ID=3, Err not plugged in"}));
  late->ClientID(7);
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(late->Connect("robot")); }), Lines{});
  EXPECT_EQ(late->ConnectState(), 0);
  EXPECT_EQ(late->DataTable(), nullptr);
  available = true;
  lower->Calls();
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(late->Connect("robot")); }),
            (Lines{"[Core.Connect] ID=3, Create LibCore"}));
  EXPECT_EQ(lower->Calls(), (Calls{"62(I2& 1031 x1)", "65", "put 1(text robot)", "11"}));
  Core empty{DispatchFactory()};  // never the installed component instead
  EXPECT_FALSE(empty.Connect("robot"));
}

TEST_F(CoreTest, WhatAClientStillHoldsRefusesWhenTheCoreIsGone) {
  auto mortal = std::make_unique<Core>([this] { return lower; });
  mortal->Connect("robot");
  const auto table = mortal->DataTable();
  const auto item = table->AddNumReg(NUMREG_INT, 1, 2);
  const auto table2 = mortal->DataTable2();
  const auto item2 = table2->AddNumReg(NUMREG_REAL, 1, 2);
  lower->On(DispId::ReadRShort, 4);
  EXPECT_TRUE(table->Refresh());
  lower->Calls();
  mortal.reset();
  EXPECT_EQ(lower->Calls(), Calls{});  // cleared silently
  float value = 0;
  Variant any;
  EXPECT_FALSE(table->Valid() || table2->Valid() || item->Valid() || item2->Valid());
  EXPECT_FALSE(table->Refresh() || table2->Refresh() || table->GetLastDataFloat(1, value));
  EXPECT_FALSE(item->GetValue(1, any) || item->SetValue(1, 1) || item2->SetValue(1, 1));
  EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 1), nullptr);
  EXPECT_TRUE(table->Clear());
  EXPECT_EQ(item->DataTable(), table);
  EXPECT_FALSE(item->DebugLog() || table->DebugLog());
  EXPECT_EQ(lower->Calls(), Calls{});
  EXPECT_EQ(lower.use_count(), 2);  // the test and its own Core
}

}  // namespace
}  // namespace orif::test

#include "tests/support/System.h"
#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

class CoreTest : public Transcript {
 protected:
  CoreTest() {
    lower->On(DispId::LastErrorText, [](auto) { return Text("no way"); });
  }
};

TEST_F(CoreTest, TellsTheLowerLayerItsKey) {
  const Calls calls = lower->Calls();
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(Comparable(calls[0]), Comparable("62 SetClientID(I2& 1024 x1)"));
  RUN(core.ClientID());
  RUN(core.ClientID(5));
  RUN(core.ClientID());
  Say("1024 more does not fit 16 bits");
  RUN(core.ClientID(31744));
  RUN(core.ClientID());
  Expect(R"(
core.ClientID() -> 0
core.ClientID(5)
    calls 62 SetClientID(I2& 1029 x1)
core.ClientID() -> 5

-- 1024 more does not fit 16 bits
core.ClientID(31744)
core.ClientID() -> 5
)");
}

TEST_F(CoreTest, ConnectsOnceInItsLife) {
  TRACED(core.Connect("robot"));
  RUN(core.Connect("robot"));
  RUN(core.Disconnect());
  RUN(core.Connect("robot"));
}

TEST_F(CoreTest, AFailedConnectCountsAsConnected) {
  lower->On(DispId::Connect, -2);
  TRACED(core.Connect("nowhere"));
  RUN(core.IsConnected());
  RUN(core.ConnectState());
  RUN(core.Connect("nowhere"));
}

TEST_F(CoreTest, ATextThatCannotBeHadEndsTheMemberThatWantsIt) {
  lower->Throw(DispId::LastErrorText, "gone");
  Say("once the status is there the Core counts as connected");
  lower->On(DispId::Connect, 1);
  TRACED(core.Connect("robot"));
  TRACED(core.ConnectState());
  TRACED(core.IsConnected());
  lower->On(DispId::SendCommand, 3);
  TRACED(core.ClearAlarm());
  Say("nobody wants it while the Core is not traced");
  RUN(core.ClearAlarm());
}

TEST_F(CoreTest, AFaultBeforeTheStatusLeavesTheCoreUnconnected) {
  for (const DispId id : {DispId::Reset, DispId::HostName, DispId::Connect}) {
    lower->Throw(id, "broken");
    RUN(core.Connect("robot"));
    RUN(core.ConnectState());
    RUN(core.IsConnected());
    lower->On(id, 0);
  }
  RUN(core.Connect("robot"));
}

TEST_F(CoreTest, DisconnectKillsTheFirstTableAndLeavesTheSecond) {
  RUN(core.Disconnect());
  RUN(core.ConnectState());
  core.Connect("robot");
  const auto table = core.DataTable();
  const auto first = table->AddNumReg(NUMREG_INT, 1, 1);
  const auto table2 = core.DataTable2();
  const auto second = table2->AddNumReg(NUMREG_INT, 1, 1);
  lower->On(DispId::Disconnect, -5);
  TRACED(core.Disconnect());
  RUN(table->Valid());
  RUN(first->Valid());
  RUN(table2->Valid());
  RUN(second->Valid());
  Say("the lower core object is gone: neither table can be had");
  RUN(core.GetLib());
  RUN(core.DataTable());
  RUN(core.DataTable2());
  RUN(core.mlngDataTableCount());
  RUN(core.TimeOutValue());
  RUN(core.ClearAlarm());
  Say("the second table's Clear faults half-way");
  RUN(table2->Clear());
  RUN(table2->Refresh());
}

TEST_F(CoreTest, ClearAlarmSendsTheCommandWhileConnected) {
  RUN(core.ClearAlarm());
  core.Connect("robot");
  RUN(core.ClearAlarm());
  RUN(core.ClearAlarm(2));
  RUN(core.ClearAlarm(-3));
  lower->On(DispId::SendCommand, 3);
  TRACED(core.ClearAlarm());
  Expect(R"(
core.ClearAlarm() -> false
core.ClearAlarm() -> true
    calls 7 SendCommand(text& CLRALM)
core.ClearAlarm(2) -> true
    calls 7 SendCommand(text& CLRALM 2)
core.ClearAlarm(-3) -> true
    calls 7 SendCommand(text& CLRALM)
core.ClearAlarm() -> false
    calls 7 SendCommand(text& CLRALM); get 64 LastErrorText
    |[Core.ClearAlarm] ID=2, Enter |
    |[Core.ClearAlarm] ID=2, no way|
    |[Core.ClearAlarm] ID=2, Return 3|
)");
}

TEST_F(CoreTest, PassesSettingsThroughUnchanged) {
  RUN(core.TimeOutValue(50));
  RUN(core.PortNumber(-1));
  lower->On(DispId::TimeOutValue, 1234);
  RUN(core.TimeOutValue());
  const std::array<OrvexValue, 11> results{{{},
                                            {ORVEX_I2, 0, 0, {.i2 = -2}},
                                            {ORVEX_R4, 0, 0, {.r4 = 2.5f}},
                                            {ORVEX_R8, 0, 0, {.r8 = 3e9}},
                                            {ORVEX_BOOLEAN, 0, 0, {.boolean = -1}},
                                            {ORVEX_BOOLEAN, 0, 0, {.boolean = 0}},
                                            {ORVEX_BOOLEAN, 0, 0, {.boolean = 1}},
                                            Text("8080"),
                                            Text("7"),
                                            Text(""),
                                            {ORVEX_I2 | ORVEX_BYREF, 0, 1, {}}}};
  for (const OrvexValue& result : results) {
    Say(("the port is a result of kind " + std::to_string(result.kind)).c_str());
    lower->On(DispId::PortNumber, [result](auto) { return result; });
    RUN(core.PortNumber());
  }
  lower->Throw(DispId::PortNumber, "broken");
  RUN(core.PortNumber());
}

TEST_F(CoreTest, PresetsThePortFromItsSetting) {
  for (const char* port : {"8193", " 8194.4 ", "1", "0", "-5", "many", "99999999999", ""}) {
    StoreSetting("PortNumber", port);
    Say(port);
    RUN(Core([this] { return lower; }).ObjectID());
  }
}

TEST_F(CoreTest, MakesTheTablesOnFirstUse) {
  core.DebugLog(true);
  RUN(core.DataTable());
  RUN(core.DataTable());
  RUN(core.DataTable2());
  EXPECT_EQ(core.DataTable2(), core.DataTable2());
  RUN(core.DataTable()->Fixed());
  Say("the second table asked for first");
  Core other([this] { return lower; });
  RUN(other.DataTable2());
  RUN(other.mlngDataTableCount());
}

TEST_F(CoreTest, TellsOfItself) {
  core.DebugLog(true);
  RUN(core.GetTypeName());
  RUN(core.IsConnected());
  RUN(core.ConnectState());
  RUN(core.AddUserMessage("hello"));
  core.Connect("robot");
  RUN(core.IsConnected());
  RUN(core.ConnectState());
  RUN(core.AddUserMessage("hello"));
  core.Disconnect();
  RUN(core.ConnectState());
  RUN(core.DebugLog(false));
  RUN(core.AddUserMessage("always"));
  RUN(core.GetTypeName());
}

TEST_F(CoreTest, StandsWithoutALowerCoreObjectAndTriesAgain) {
  bool available = false;
  std::optional<Core> late;
  const DispatchFactory factory = [&]() -> std::shared_ptr<Dispatch> {
    if (!available) throw Fault("not plugged in");
    return lower;
  };
  RUN(late.emplace(factory).ObjectID());
  late->ClientID(7);
  RUN(late->Connect("robot"));
  RUN(late->ConnectState());
  RUN(late->DataTable());
  available = true;
  RUN(late->Connect("robot"));
  RUN(late.emplace([]() -> std::shared_ptr<Dispatch> { throw std::bad_alloc(); }).ObjectID());
  Say("an empty factory: never the installed component instead");
  RUN(late.emplace(DispatchFactory()).Connect("robot"));
  Expect(R"(
late.emplace(factory).ObjectID() -> 3
    |[Core.Class_initialize] ID=3, Err not plugged in|
late->Connect("robot") -> false
late->ConnectState() -> 0
late->DataTable() -> empty
late->Connect("robot") -> true
    calls 62 SetClientID(I2& 1031 x1); 65 Reset; put 1 HostName(text robot); 11 Connect
    |[Core.Connect] ID=3, Create LibCore|
late.emplace([]() -> std::shared_ptr<Dispatch> { throw std::bad_alloc(); }).ObjectID() -> 4
    |[Core.Class_initialize] ID=4, Err Out of memory|

-- an empty factory: never the installed component instead
late.emplace(DispatchFactory()).Connect("robot") -> false
    |[Core.Class_initialize] ID=5, Err Object variable not set|
)");
}

TEST_F(CoreTest, WhatAClientStillHoldsRefusesWhenTheCoreIsGone) {
  auto mortal = std::make_unique<Core>([this] { return lower; });
  mortal->Connect("robot");
  const auto table = mortal->DataTable();
  const auto item = table->AddNumReg(NUMREG_INT, 1, 2);
  const auto table2 = mortal->DataTable2();
  const auto item2 = table2->AddNumReg(NUMREG_REAL, 1, 2);
  lower->On(DispId::ReadRShort, 4);
  RUN(table->Refresh());
  RUN(mortal.reset());
  EXPECT_FALSE(table->Valid() || table2->Valid() || item->Valid() || item2->Valid());
  float value = 0;
  Variant any;
  RUN(table->Refresh());
  RUN(table->GetLastDataFloat(1, value));
  RUN(item->GetValue(1, any));
  RUN(item2->SetValue(1, 1));
  RUN(table->AddNumReg(NUMREG_INT, 1, 1));
  RUN(table->Clear());
  RUN(table->DebugLog());
  EXPECT_EQ(item->DataTable(), table);
  EXPECT_EQ(lower.use_count(), 2);  // the test and its own Core
}

}  // namespace
}  // namespace orif::test

// A controller with tags over a simulated cell: values, qualities, reasons, writes, and a link that
// is lost and comes back.
#include "live/Controller.h"

#include "live/UsageError.h"
#include "orif/orif.h"
#include "tests/live/Rig.h"
#include "tests/support/RecordingDispatch.h"
#include "tests/support/Sheet.h"

namespace orif::live::test {
namespace {

class Live : public orif::test::Sheet<testing::Test> {
 protected:
  Live() { clock->time = 1000h; }

  /// Makes the controller; its events and the lower calls that `shown` wants go to the sheet.
  void Make(std::vector<std::string> tags, bool comments = false) {
    Settings settings{.host = "cell", .tags = std::move(tags), .comments = comments};
    settings.timeOut = 500ms;
    settings.clock = clock;
    settings.factory = Between::Factory(
        network.Factory(), [this](auto id, auto call, auto arguments, Dispatch& inner) {
          return before ? before(id, call, arguments, inner) : std::nullopt;
        });
    settings.onLink = [this](Link link, const Reason& reason) {
      sheet_ << "    link " << ToText(link);
      if (reason != Reason{}) sheet_ << ": " << reason.ToText();
      sheet_ << '\n';
    };
    cell.emplace(std::move(settings));
  }

  template <class Call>
  void Run(const Call& call) {
    sheet_ << '\n';
    std::string answer;
    try {
      answer = Said(call());
    } catch (const UsageError& error) {
      answer = std::string("UsageError ") + error.what();
    }
    sheet_ << "    -> " << answer << '\n';
    if (!cell || (!std::is_same_v<decltype(call()), bool> && cell->State() == Link::Up)) return;
    for (const std::size_t i : cell->Changed()) {
      const Tag& tag = cell->Tags()[i];
      sheet_ << "    " << tag.name << " = " << tag.value.Text() << tag.unit << ' '
             << ToText(tag.quality);
      if (tag.quality == Quality::Good && tag.time != clock->Wall()) sheet_ << " at another time";
      if (tag.reason) sheet_ << ", " << tag.reason->ToText();
      sheet_ << '\n';
    }
  }

  static std::string Said(bool value) { return value ? "true" : "false"; }
  static std::string Said(const Answer& answer) {
    return answer.done ? "done" : answer.reason.ToText();
  }
  static std::string Said(const std::vector<Answer>& answers) {
    std::string text;
    for (const Answer& answer : answers) text += (text.empty() ? "" : "\n       ") + Said(answer);
    return text;
  }
  static std::string Said(const Tag& tag) { return tag.name; }

  std::vector<Answer> Write(std::vector<Assignment> assignments) {
    return cell->Write(assignments);
  }
  /// Refreshes after `wait`.
  bool After(Milliseconds wait) {
    clock->time += wait;
    return cell->Refresh();
  }

  sim::Network network;
  sim::Controller& robot = MakeCell(network);
  std::shared_ptr<HandClock> clock = std::make_shared<HandClock>();
  Between::Before before;
  std::optional<Controller> cell;
};

TEST_F(Live, EveryKindOfTagHasItsValue) {
  Make({"R[1-2]", "R[2-2].comment", "R[1].comment", "PR[1]", "SR[1]", "$SPEED:int", "$LOAD:real",
        "$MODE:string", "PRG[1-2]", "ALM[1-2].message", "ALM[1].time", "DO[2-3]", "GI[2]",
        "POS[G2:0].J1"});
  RUN(cell->Refresh());
  robot.NumericRegister(1) = 6;
  robot.Signal(sim::SignalKind::SDO, 3) = 0;
  RUN(After(1s));
  Say("Only a real of 2147483648 reads the same as the greatest integer.");
  robot.NumericRegister(1) = 2147483648.0F;
  robot.NumericRegister(2) = 2147483646;
  RUN(After(1s));
  RUN((*cell)["r[01]"]);
  RUN((*cell)["PR[1]"]);
  RUN((*cell)["R[3]"]);
  RUN((*cell)["R[1..3]"]);
}

TEST_F(Live, CommentsComeWithRegistersAndSignals) {
  Make({"R[1]", "DO[3]", "PRG[1].line"}, true);
  RUN(cell->Refresh());
  for (const Item& item : cell->Items())
    sheet_ << item.name << " from tag " << item.first << ": " << item.count << '\n';
}

TEST_F(Live, ErrorsOfUseAreExceptions) {
  RUN((Make({"R[1-5]", "R[3]"}), true));
  RUN((Make({"PR[1]", "PR[1].X"}), true));
  RUN((Make({"R[1-8192]"}), true));
  RUN((Make({"R[1-4000]", "SR[1-20]"}), true));
  RUN((Make({"PR[1-2147483647].X"}), true));
  RUN((Make({"DI[40000]"}), true));
  RUN((Make({"R[1..3]"}), true));
  RUN((Controller({.host = ""}), true));
  RUN((Controller({.host = "cell", .timeOut = 50ms}), true));
  RUN((Controller({.host = "cell", .retry = {1s, 500ms}}), true));
}

TEST_F(Live, FieldsOfOneItemAreRegisteredOnce) {
  int pieces = 0;
  before = [&](auto id, auto, auto, auto&) {
    pieces += static_cast<DispId>(id) == DispId::SetRAssignment;
    return std::nullopt;
  };
  Make({"PR[1].X", "PR[1].Z", "PR[1].UF", "R[1]:int", "R[2]:int"});
  RUN(cell->Refresh());
  EXPECT_EQ(pieces, 3);
}

TEST_F(Live, ARefusedItemTakesNoOtherWithIt) {
  robot.SetVariable("$GONE", 1);
  Make({"R[1]", "$GONE:int", "$NOPE:int", "R[10001]", "POS[0].X", "POS[12].X", "DO[3]", "SI[62-63]",
        "SI[64-66]", "SI[60-61]"});
  RUN(cell->Refresh());
  Say("The link is up, so it stays.");
  RUN(After(1s));
  RUN(cell->Write("$NOPE:int", 1));
}

TEST_F(Live, OneFailedRefreshMakesStaleAndTheSecondLosesTheLink) {
  Make({"R[1]", "DO[3]"});
  RUN(cell->Refresh());
  robot.FaultInjection().FailNext("ReadRShort", {0, "Busy"});
  RUN(After(1s));
  RUN(After(1s));
  robot.FaultInjection().FailNext("ReadRShort", {-7, "Busy"}, 2);
  RUN(After(1s));
  RUN(After(1s));
  Say("Not yet; then it comes back.");
  RUN(After(500ms));
  RUN(After(500ms));
  Say("A signal that was read before fails.");
  robot.FaultInjection().FailNext("ReadSDO", {-7, "Busy"});
  RUN(After(1s));
  Say("The text tells that the link is lost. The device refuses for a while.");
  robot.FaultInjection().LoseConnections();
  robot.FaultInjection().FailNext("Connect", {-3, "No more connections"}, 5);
  RUN(After(1s));
  const Tag& kept = (*cell)["R[1]"];
  for (const int seconds : {1, 2, 4, 8, 16}) {
    const auto lost = clock->Now();
    RUN(After(std::chrono::seconds(seconds)));
    const Milliseconds wait =
        std::chrono::duration_cast<Milliseconds>(cell->RetryAt() - clock->Now());
    EXPECT_LE(wait, std::min(2 * std::chrono::seconds(seconds), 30s));
    EXPECT_GE(wait, std::min(2 * std::chrono::seconds(seconds), 30s) * 3 / 4);
    EXPECT_LE(lost, clock->Now());
  }
  RUN(After(30s));
  EXPECT_EQ(&kept, &(*cell)["R[1]"]);
  Say("A success begins the waits anew.");
  robot.FaultInjection().LoseConnections();
  RUN(After(1s));
  EXPECT_LE(cell->RetryAt(), clock->Now() + 1s);
  RUN((cell->Close(), true));
  RUN(cell->Refresh());
}

TEST_F(Live, TheFirstConnectMayFail) {
  robot.FaultInjection().FailNext("Connect", {-1, "Host is off"});
  Make({"R[1]"});
  RUN(cell->Connect());
  RUN(cell->Connect());
  RUN(cell->Refresh());
  Settings none{.host = "cell", .component = "/nowhere/lib.so", .tags = {"R[1]"}};
  cell.emplace(none);
  RUN(cell->Connect());
  EXPECT_TRUE(cell->LastReason().text.starts_with("no communication component: /nowhere/lib.so"));
}

TEST_F(Live, AReconnectRegistersTheSameAgainAndItemsMayBeRefusedThen) {
  robot.SetVariable("$GONE", 1);
  std::vector<std::string> pieces;
  bool refuse = false;
  before = [&](auto id, auto, auto arguments, auto&) -> std::optional<OrvexValue> {
    if (static_cast<DispId>(id) != DispId::SetRAssignment) return std::nullopt;
    const OrvexValue& text = arguments[0];
    pieces.emplace_back(text.as.text, static_cast<std::size_t>(text.count));
    if (refuse && pieces.back().find("$GONE") != std::string::npos) return orif::test::Long(-8);
    return std::nullopt;
  };
  Make({"R[1]", "$GONE:int", "PR[1].X"});
  RUN(cell->Refresh());
  const auto first = std::exchange(pieces, {});
  robot.FaultInjection().LoseConnections();
  refuse = true;
  RUN(After(1s));
  RUN(After(1s));
  EXPECT_EQ(pieces.front(), first.front());
  refuse = false;
  robot.FaultInjection().LoseConnections();
  pieces.clear();
  RUN(After(1s));
  RUN(After(2s));
  EXPECT_EQ(pieces, first);
}

TEST_F(Live, AConnectionOverWhichNothingCanBeReadIsLost) {
  robot.FaultInjection().FailNext("SetRAssignment", {-9, "Try later"}, 2);
  Make({"R[1]"});
  RUN(cell->Refresh());
  RUN(After(1s));
  RUN(After(2s));
  RUN(After(1s));
  RUN(After(4s));
  Say("One that brings signals is not.");
  Make({"$NOPE:int", "DO[3]"});
  RUN(cell->Refresh());
  robot.FaultInjection().LoseConnections();
  RUN(After(1s));
  RUN(After(1s));
}

TEST_F(Live, ARefusedTextIsNotSentWithALaterOne) {
  for (int i = 1; i <= 9; ++i) robot.StringRegister(i) = "text " + std::to_string(i);
  Make({"SR[1-9]"});
  cell->Refresh();
  robot.FaultInjection().FailNext("WriteR", {-20, "Protected"});
  robot.FaultInjection().FailNext("WriteRShort", {-20, "Protected"});
  RUN(cell->Write("SR[2]", "refused"));
  RUN(cell->Write("SR[9]", "nine"));
  RUN(After(1s));
  EXPECT_EQ(robot.StringRegister(2), "text 2");
}

TEST_F(Live, ValuesAreWrittenAndRefused) {
  Make({"R[1-2]", "R[3]:int", "R[4]:real", "R[1].comment", "SR[1]", "$SPEED:int", "$LOAD:real",
        "$MODE:string", "DO[3]", "GI[2]", "PRG[1].line"});
  RUN(cell->Write("R[1]", 1));
  RUN(cell->Refresh());
  RUN(Write({{"R[1]", 7},
             {"R[2]", -0.5},
             {"R[3]", 3},
             {"R[4]", 4},
             {"R[1].comment", "count"},
             {"SR[1]", "tool"},
             {"$SPEED:int", 50},
             {"$LOAD:real", 1},
             {"$MODE:string", "TEACH"},
             {"DO[3]", false},
             {"GI[2]", 5}}));
  RUN(After(1s));
  Say("What does not fit is refused before anything is written.");
  RUN(Write({{"R[1]", 8}, {"R[3]", 2.5}}));
  RUN(cell->Write("R[1]", "text"));
  RUN(cell->Write("R[1]", 3'000'000'000));
  RUN(cell->Write("R[4]", std::numeric_limits<float>::infinity()));
  RUN(cell->Write("SR[1]", std::string(81, 'x')));
  RUN(cell->Write("SR[1]", 1));
  RUN(cell->Write("DO[3]", 2));
  RUN(cell->Write("GI[2]", -1));
  RUN(cell->Write("PRG[1].line", 1));
  RUN(cell->Write("R[9]", 1));
  EXPECT_EQ(robot.NumericRegister(1), sim::NumericValue(7));
  Say("After a refusal nothing more is written.");
  robot.FaultInjection().FailNext("WriteRFloat", {-20, "Register is write-protected"});
  RUN(Write({{"R[1]", 9}, {"R[2]", 9.5}, {"R[3]", 9}}));
  EXPECT_EQ(robot.NumericRegister(1), sim::NumericValue(9));
  EXPECT_EQ(robot.NumericRegister(3), sim::NumericValue(3));
  robot.FaultInjection().LoseConnections();
  RUN(cell->Write("DO[3]", true));
  RUN(cell->ClearAlarms());
  RUN(After(1s));
  RUN(cell->ClearAlarms());
  EXPECT_TRUE(robot.Alarms(sim::AlarmList::Active).empty());
  robot.FaultInjection().FailNext("SendCommand", {-2, "Not in this mode"});
  RUN(cell->ClearAlarms(2));
}

TEST_F(Live, PositionsAreWrittenByTheirFields) {
  Make({"PR[1]", "PR[2].J1", "PR[2].J2", "PR[2].J3", "PR[2].J4", "PR[2].J5", "PR[2].J6", "PR[2].X",
        "PR[2].UF"});
  cell->Refresh();
  RUN(Write({{"PR[1].X", 500}, {"PR[1].UT", 2}, {"PR[1].config", "1 0 1 0 0 0 0"}}));
  RUN(After(1s));
  Say("Without a form yet, all of it has to be named.");
  RUN(cell->Write("PR[2].X", 1));
  RUN(Write({{"PR[1].X", 1}, {"PR[2].J1", 1}}));
  RUN(Write({{"PR[2].J1", 1},
             {"PR[2].J2", 2},
             {"PR[2].J3", 3},
             {"PR[2].J4", 4},
             {"PR[2].J5", 5},
             {"PR[2].J6", 6},
             {"PR[2].UF", 1}}));
  RUN(cell->Write("PR[2].J2", 20));
  RUN(After(1s));
  RUN(Write({{"PR[2].X", 1}, {"PR[2].UF", 1}, {"PR[2].J1", 1}}));
  RUN(cell->Write("PR[1].config", "1 2"));
  RUN(cell->Write("PR[1].UF", 40000));
  robot.FaultInjection().FailNext("ReadRShort", {0, "Busy"});
  RUN(Write({{"PR[1].X", 1}, {"PR[1].Y", 1}}));
}

TEST_F(Live, AFaultHasItsOwnText) {
  bool broken = false;
  before = [&](auto id, auto, auto, auto&) -> std::optional<OrvexValue> {
    const auto operation = static_cast<DispId>(id);
    if (operation == DispId::LastErrorText) return orif::test::Text("an old refusal");
    if (!broken || operation == DispId::Disconnect) return std::nullopt;
    if (operation == DispId::ShortToLong) throw Fault("no conversion");
    if (operation == DispId::WriteRLong) return orif::test::Text("no number");
    if (operation == DispId::ReadSDI) throw Fault("broken pipe");
    return std::nullopt;
  };
  Make({"R[1]:int", "R[2]:real", "DI[1]"});
  RUN(cell->Refresh());
  broken = true;
  RUN(After(1s));
  RUN(cell->Write("R[1]", 1));
  RUN(After(1s));
}

TEST(Reasons, TellALostLinkInWholeWords) {
  for (const char* lost : {"Not connected", "The connection was lost.", "LINK DOWN", "disconnected",
                           "link to the controller is down"}) {
    EXPECT_TRUE(TellsLostLink({.text = lost})) << lost;
  }
  for (const char* other : {"$LINK_DOWN is unknown", "blink failed", "Busy", "",
                            "No connections left", "Download of the link list"}) {
    EXPECT_FALSE(TellsLostLink({.text = other})) << other;
  }
}

TEST(Reasons, OfAPlainCore) {
  sim::Network network;
  MakeCell(network);
  Core core(WithReasons(network.Factory()));
  EXPECT_EQ(LastReason(core).ToText(), "nothing has failed");
  EXPECT_FALSE(core.Connect("nowhere"));
  EXPECT_EQ(LastReason(core).ToText(), "Unknown host (Connect, status -1)");
  EXPECT_EQ(core.DataTable()->AddNumReg(NUMREG_INT, 1, 1), nullptr);
  const std::array<std::int16_t, 1> bit{1};
  EXPECT_FALSE(core.WriteSI(1, bit, 1));
  EXPECT_EQ(LastReason(core).ToText(), "Not connected (WriteSI, status -2)");
  const auto& keeper = dynamic_cast<const ReasonKeeper&>(*core.GetLib());
  EXPECT_EQ(keeper.Last(DispId::SetRAssignment)->ToText(),
            "Not connected (SetRAssignment, status -2)");
  EXPECT_FALSE(keeper.Last(DispId::ReadRShort));
  EXPECT_EQ(LastReason(Core(network.Factory())).ToText(), "the lower core object keeps no reasons");
  EXPECT_EQ(
      LastReason(Core(WithReasons([]() -> std::shared_ptr<Dispatch> { return {}; }))).ToText(),
      "there is no lower core object");
}

// One call for each kind and contiguous run.
TEST(SignalCalls, AreOneForEachRun) {
  const auto lower = std::make_shared<orif::test::RecordingDispatch>();
  Controller cell({.host = "robot",
                   .factory = [&] { return lower; },
                   .tags = {"DO[5-8]", "GI[1]", "DO[1-4]", "DO[10999-11002]", "DI[1]", "DO[9]",
                            "GI[3]", "GI[2]"}});
  ASSERT_TRUE(cell.Connect());
  lower->Calls();
  ASSERT_TRUE(cell.Refresh());
  EXPECT_EQ(lower->Calls(),
            (std::vector<std::string>{
                "29 ReadSDI(I2 1, I2& 0 x1, I2 1)", "27 ReadSDO(I2 1, I2& 0 x9, I2 9)",
                "27 ReadSDO(I2 10999, I2& 0 x2, I2 2)", "59 ReadSDOEx(I2 1, I2& 0 x2, I2 2)",
                "43 ReadGI(I2 1, I4& 0 x3, I2 3)"}));
}

}  // namespace
}  // namespace orif::live::test

// A controller and what a core object does with it, in the process and in the loadable component.

#include <cmath>
#include <cstdlib>
#include <random>
#include <span>

#include "Reach.h"
#include "orif/base/Fault.h"
#include "orif/lowerlayer/LowerCore.h"
#include "orif/platform/platform.h"
#include "simulator/SimulatedCore.h"
#include "tests/support/Sheet.h"

namespace orif::sim::test {
namespace {

using Words = std::vector<std::int16_t>;
using Longs = std::vector<std::int32_t>;
using Reals = std::vector<float>;

// Arguments: shorts by value, texts and arrays by reference.
OrvexValue Of(int value) { return {ORVEX_I2, 0, 0, {.i2 = static_cast<std::int16_t>(value)}}; }
template <class T>
OrvexValue Of(T& elements) {
  const auto kind = std::is_same_v<T, Words>   ? ORVEX_I2
                    : std::is_same_v<T, Longs> ? ORVEX_I4
                    : std::is_same_v<T, Reals> ? ORVEX_R4
                                               : ORVEX_TEXT;
  const auto* first = reinterpret_cast<const char*>(elements.data());
  const auto count = static_cast<std::int32_t>(elements.size());
  return {static_cast<std::uint16_t>(kind | ORVEX_BYREF), 0, count, {.text = first}};
}

// RUN writes down a call and its result, behind a refusal the last error text.
class Cell : public orif::test::Sheet<testing::Test> {
 protected:
  Cell() {
    core->HostName("cell");
    core->Connect();
  }

  template <class Call>
  void Run(const Call& call) {
    sheet_ << " -> ";
    try {
      if constexpr (std::is_void_v<decltype(call())>)
        call();
      else
        sheet_ << Show(call());
    } catch (const std::exception& error) {
      sheet_ << "throws " << error.what();
    }
    sheet_ << '\n';
  }

  using Sheet::Show;
  std::string Show(std::int32_t value) {
    return std::to_string(value) + (value < 0 ? ' ' + core->LastErrorText() : "");
  }
  static std::string Show(const NumericValue& value) {
    return value.index() == 0 ? "integer " + std::to_string(std::get<0>(value))
                              : "real " + Show(std::get<1>(value));
  }

  void Assign(std::initializer_list<const char*> pieces, int line = __builtin_LINE()) {
    At(line);
    for (const std::string piece : pieces)
      sheet_ << Show(piece) << " -> " << Show(core->SetRAssignment("SETASG " + piece)) << '\n';
  }
  std::int32_t Send(const char* command) { return core->SendCommand(command); }
  Words Read(std::int32_t address, std::int32_t count) {
    Words words(static_cast<std::size_t>(count), 0x7777);
    const std::int32_t status = core->ReadRShort(address, words, count);
    return status == count ? words : throw std::runtime_error(Show(status));
  }
  // Shows words (w), integers (i), reals (r) and texts of 8, 9 and 40 words (n, s, t).
  void Print(std::int32_t address, std::string_view layout) {
    for (const char field : layout) {
      const int size = field == 'w'   ? 1
                       : field == 't' ? 40
                       : field == 'n' ? 8
                                      : 2 + 7 * (field == 's');
      Words words = Read(std::exchange(address, address + size), size);
      const std::string bytes(reinterpret_cast<const char*>(words.data()), 2 * words.size());
      sheet_ << (field == 'w'   ? Show(words[0])
                 : field == 'i' ? std::to_string(core->ShortToLong(std::span(words).first<2>()))
                 : field == 'r' ? Show(core->ShortToFloat(std::span(words).first<2>()))
                                : Show(bytes.substr(0, bytes.find_last_not_of('\0') + 1)))
             << ' ';
    }
  }
  // A position's two forms, each with its validity, then user frame, tool and reserved words.
  void Record(std::int32_t address) { Print(address, "rrrrrrrrrwwwwwwwwrrrrrrrrrwwwwww"); }

  // Up to the last signal of a kind and beyond it.
  template <class T, class Operation>
  void Transfer(SignalKind kind, DispId read, Operation write, std::vector<T> values) {
    const auto last = static_cast<std::int32_t>(SignalCount(kind));
    sheet_ << '\n';
    RUN(last);
    RUN(core->Signals<T>(write, last - 2, values, 3));
    RUN(robot.Signal(kind, last - 1) = 1);
    RUN(core->Signals<T>(read, last - 2, values, 3));
    RUN(values);
    RUN(core->Signals<T>(write, 0, values, 1));
    RUN(core->Signals<T>(write, last - 1, values, 3));
    RUN(core->Signals<T>(read, last - 1, values, 3));
    RUN(core->Signals<T>(read, 1, values, 0));
    RUN(core->Signals<T>(write, 1, values, -3));
    for (const int back : {0, 1, 2}) robot.Signal(kind, last - back) = 0;
  }

  std::int32_t Invoke(int id, const std::vector<OrvexValue>& values,
                      OrvexCall call = ORVEX_METHOD) {
    return core->Object()->Invoke(id, call, values).as.i4;
  }

  Network network;
  // 20 numeric, 5 position and 4 string registers, 2 groups, 3 user frames.
  Controller& robot = network.AddController("cell", {20, 5, 4, 2, 3});
  DispatchFactory reach = orif::test::Reach(network);
  Ref<LowerCore> core{new LowerCore(reach())};
};

TEST_F(Cell, IsAssignedPieceByPiece) {
  RUN(robot.SetVariable("$COUNT[2].$X", 1));
  RUN(robot.SetVariable("$TITLE", std::string("t")));
  RUN(robot.SetVariable("$RATE", 1.0f));
  RUN(robot.SetVariable("$RATE", 1));
  RUN(void(robot.Variable("$rate")));
  RUN(robot.SetVariable("$HOME", Position()));
  RUN(core->SetRAssignment("setasg 1 2 R[1] 1.0"));
  Assign({"", "1 2 R[1]", " 1 2 R[1] 1.0", "+1 2 R[1] 1.0", "01 2 R[1] 1.0",
          "99999999999 2 R[1] 1.0", "1 2 R[] 1.0", "1 2 R]1[ 1.0", "1 2 R[1]x 1.0", "1 2 R[1] 1.0 ",
          "1 50 PR[G0:1] 0.0", "1 50 PR[G2] 0.0", "1 25 PR[1]@1 0.0"});
  Say("not what the controller has");
  Assign({"1 2 R[G2:1] 1.0", "1 2 R[X1] 1.0", "1 2 QQ[1] 1.0", "1 40 QQ[C1] 1", "1 18 PRG[VM1] 1",
          "1 11 ALM[Q1]@1.11 1", "1 2 $count[2].$x 1", "1 2 R[1] 2.0", "1 50 PR[1] 1",
          "1 40 SR[1] 0", "1 2 $RATE 1", "1 3 R[1] 1.0", "1 0 R[1] 1.0", "1 40 $COUNT[2].$X 1"});
  Assign({"1 50 PR[1]@1.51 0.0", "1 2 PR[1]@50.2 0.0", "1 1 PR[1]@0.1 0.0", "1 42 R[1] 1.0",
          "1 2 R[0] 1.0", "1 2 R[21] 0", "1 300 PR[1] 0.0", "1 50 PR[G3:1] 0.0", "1 50 POS[4] 0.0",
          "1 40 WSO[C65] 1", "1 18 PRG[65] 1", "1 11 ALM[201]@1.11 1", "16383 2 R[1] 1.0",
          "0 2 R[1] 0", "2147483647 2147483647 R[1] 0"});
  Say("accepted; the refused ones have left nothing");
  Assign({"1 40 R[1] 1.0", "16382 2 R[20] 0", "41 250 PR[1] 0.0", "301 50 PR[G2:5] 0.0",
          "351 25 PR[1]@1.25 0.0", "401 50 POS[0] 0.0", "451 50 POS[G2:3] 0.0", "501 160 SR[1] 1",
          "701 40 WSO[C64] 1", "741 18 PRG[MV64] 1", "801 182 ALM[P1]@1.91 1",
          "991 1 ALM[200]@1.1 1", "1001 2 $COUNT[2].$X 1", "1003 2 $RATE 0", "1005 40 $TITLE 1",
          "1045 50 $HOME 0.0"});
  Say("pieces may touch, not overlap");
  core->ClearRAssignment();
  Assign({"11 4 R[1] 1.0", "11 4 R[1] 1.0", "10 2 R[5] 1.0", "14 2 R[5] 1.0", "1 40 R[1] 1.0",
          "15 2 R[3] 1.0", "9 2 R[4] 1.0"});
}

TEST_F(Cell, IsReadAsItStandsAndWrittenWholeOrNotAtAll) {
  Words words(9, 1);
  Assign({"61 2 R[11] 0", "5 2 R[9] 1.0", "1 4 R[1] 1.0", "7 2 R[10] 0", "9 50 POS[0] 0.0"});
  RUN(core->WriteRLong(3, Longs{1, 1, 1}, 3));
  RUN(core->WriteRLong(2, Longs{1}, 1));
  RUN(core->WriteRLong(1, Longs{1}, 0));
  RUN(core->WriteRShort(5, words, 5));
  RUN(core->WriteRShort(58, words, 2));
  RUN(core->WriteRShort(62, words, 2));
  RUN(core->WriteRShort(59, words, 4));
  RUN(core->WriteRShort(0, words, 1));
  RUN(core->WriteRShort(1, words, 0));
  RUN(Read(1, 62));
  Say("over the border of two pieces, in whole registers and in halves");
  RUN(core->WriteRLong(3, Longs{0x12345678, -6}, 2));
  RUN(Read(3, 4));
  RUN(Read(4, 2));
  RUN(Read(58, 5));
  RUN(core->WriteRShort(4, Words{1, 0}, 2));
  RUN(Read(3, 4));
  RUN(robot.NumericRegister(9) = 7);
  RUN(Read(5, 1));
  RUN(Read(16383, 1));
  RUN(core->ReadRShort(16383, words, 2));
  RUN(core->ReadRShort(0, words, 1));
  RUN(core->ReadRShort(1, words, -1));
  RUN(core->ReadRShort(1, words, 0));
  RUN(words);
  RUN(core->ClearRAssignment());
  RUN(Read(1, 62));
}

TEST_F(Cell, KeepsTheTypeOfARegisterAsWritten) {
  NumericValue& value = robot.NumericRegister(1);
  Assign({"1 2 R[1] 1.0", "3 2 R[1] 0"});
  RUN(value = -70000);
  RUN(Print(1, "ir"));
  for (const float real : {2.5f, 3.5f, -0.5f, 3e9f, -INFINITY, NAN}) {
    RUN(value = real);
    RUN(Print(1, "i"));
  }
  RUN(core->WriteRFloat(3, Reals{1.25f}, 1));
  RUN(value);
  RUN(core->WriteRLong(1, Longs{8}, 1));
  RUN(value);
  RUN(core->WriteRLong(3, Longs{9}, 1));
  RUN(core->WriteRFloat(1, Reals{9}, 1));
  RUN(core->WriteR(1, "9"));
  RUN(value);
}

TEST_F(Cell, FillsTheRecordsOfTextsTasksAndAlarms) {
  const std::string eighty(80, 'x');
  robot.StringRegister(2) = "longer than what follows";
  robot.Comment(CommentKind::DO, 4096) = "last";
  robot.Comment(CommentKind::WSO, 1) = eighty + "y";
  Assign({"1 80 SR[1] 1", "81 40 DO[C4096] 1", "121 40 WSO[C1] 1"});
  RUN(core->WriteR(41, "short"));
  RUN(core->WriteR(1, eighty));
  RUN(core->WriteR(1, eighty + "y"));
  RUN(core->WriteR(2, "a"));
  RUN(Print(1, "tttt"));
  RUN(core->WriteR(1, ""));
  RUN(robot.StringRegister(1));
  RUN(core->WriteRShort(41, Words{0x3231, 0x33}, 2));
  RUN(robot.StringRegister(2));
  robot.TaskList() = {{"MAC", 1, 2, "", true, false},
                      {"COMPILED", 3, 4, "", false, true},
                      {"SIXTEEN-LETTERS!+", 5, 6, "P", false, false}};
  Assign({"201 72 PRG[1] 1", "301 36 PRG[M1] 1", "401 36 PRG[V1] 1", "501 36 PRG[MV1] 1"});
  RUN(Print(201, "nwwnnwwnnwwnnwwn"));
  RUN(Print(301, "nwwnnwwn"));
  RUN(Print(401, "nwwnnwwn"));
  RUN(Print(501, "nwwnnwwn"));
  RUN(core->WriteRShort(201, Words{1}, 1));
  const Alarm alarm{1, 2, 3,  4,  5,         2024,    7,
                    8, 9, 10, 11, "message", "cause", "eighteen bytes here"};
  robot.Alarms(AlarmList::Active) = {alarm, alarm};
  robot.Alarms(AlarmList::History) = {alarm};
  Assign({"1001 300 ALM[1] 1", "1301 22 ALM[E1]@1.11 1", "1401 91 ALM[P1]@1.91 1"});
  RUN(Print(1101, "wwwwwwwwwwwtts"));
  RUN(Read(1201, 291));
  for (const char* unknown : {"", "CLRALMS", "CLRALM ", "CLRALM 0", "CLRALM -1", "CLRALM x"}) {
    RUN(Send(unknown));
  }
  RUN(Read(1001, 3));
  RUN(Send("CLRALM 2"));
  RUN(Read(1001, 322));
  RUN(robot.Commands());
}

const Reals nine{1, 2, 3, 4, 5, 6, 7, 8, 9};
const Reals eighteen{11, 12, 13, 14, 15, 16, 17, 18, 19, 21, 22, 23, 24, 25, 26, 27, 28, 29};
const Words seven{-1, 2, -3, 4, -5, 6, -7};
const Words fourteen{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};

TEST_F(Cell, LeavesAPositionAsItWasWhenItRefusesAWrite) {
  Assign({"1 100 PR[1] 0.0", "101 50 POS[0] 0.0", "151 2 R[1] 0"});
  RUN(core->WriteRJoint(1, eighteen, 1, 1));
  RUN(core->WriteRXyzwpr(1, Reals(5, 1), seven, 1, 1));
  RUN(core->WriteRXyzwpr(1, nine, Words(6, 1), 1, 1));
  RUN(core->WriteRJoint(2, nine, 1, 1));
  RUN(core->WriteRJoint(101, nine, 1, 1));
  RUN(core->WriteRJoint(151, nine, 1, 1));
  RUN(core->WriteRJoint(153, nine, 1, 1));
  RUN(core->WriteRXyzwprConfig(51, 2, eighteen, 9, fourteen, 7));
  RUN(core->WriteRXyzwprConfig(1, 2, eighteen, 9, fourteen, 6));
  RUN(core->WriteRXyzwprConfig(1, 0, eighteen, 9, fourteen, 7));
  RUN(Read(1, 152));
}

TEST_F(Cell, ShowsPositionsThroughWindows) {
  Assign({"1 50 PR[G2:1]@1.25 0.0", "51 24 PR[G2:1]@27.12 0.0", "101 150 PR[G2:1] 0.0",
          "301 50 PR[2] 0.0"});
  RUN(core->WriteRXyzwprConfig(1, 2, eighteen, 9, fourteen, 7));
  RUN(core->WriteRJoint(151, nine, 3, 4));
  RUN(Record(151));
  RUN(Print(26, "rrrrrrrrrwwwwwwwrrrrrrrrrrrr"));
  RUN(core->WriteRJoint(1, nine, 5, 6));
  RUN(core->WriteRJoint(63, nine, 5, 6));
  RUN(core->WriteRJoint(63, Reals{6, 5, 4, 3, 2, 1}, 7, 8));
  RUN(Record(151));
  RUN(core->WriteRXyzwpr(26, Reals(6, 100), seven, 9, 10));
  RUN(Record(101));
  RUN(Record(151));
  RUN(Record(201));
  RUN(Record(301));
  Say("words make valid what they touch; of two pieces the later one decides");
  RUN(core->WriteRShort(1, Words(74), 74));
  RUN(Record(101));
  RUN(Record(151));
  RUN(core->WriteRShort(201, Words(50, 9), 50));
  RUN(Read(201, 50));
}

TEST_F(Cell, ConnectsToKnownHosts) {
  Ref other(new LowerCore(reach()));
  RUN(other->PortNumber());
  RUN(other->TimeOutValue());
  RUN(other->Connect());
  RUN(other->HostName("CELL"));
  RUN(other->Connect());
  RUN(other->LastErrorText());
  RUN(void(network.AddController("CELL")));
  Say("each object has an assignment of its own, and each connection");
  Assign({"1 4 R[1] 1.0"});
  RUN(other->SetRAssignment("SETASG 1 2 R[2] 1.0"));
  RUN(other->WriteRLong(1, Longs{3}, 1));
  RUN(Print(1, "ii"));
  RUN(core->Connect());
  RUN(Print(1, "ii"));
  RUN(core->Disconnect());
  RUN(core->Disconnect());
  RUN(Send("CLRALM"));
  RUN(other->WriteRLong(1, Longs{4}, 1));
  Say("a connection that is refused has ended the one before");
  RUN(core->Connect());
  RUN(core->HostName("elsewhere"));
  RUN(core->Connect());
  RUN(Send("CLRALM"));
  Say("a reset keeps the settings only");
  RUN(core->PortNumber(5000));
  RUN(core->TimeOutValue(7));
  RUN(core->HostName("Cell"));
  RUN(core->Connect());
  RUN(core->Reset());
  RUN(core->LastErrorText());
  RUN(core->PortNumber());
  RUN(core->TimeOutValue());
  RUN(Send("CLRALM"));
  RUN(core->Connect());
  Ref keyed(new LowerCore(network.Factory()()));
  RUN(keyed->SetClientID(1029));
  RUN(keyed->Reset());
  RUN(dynamic_cast<SimulatedCore&>(*keyed->Object()).ClientKey());
}

TEST_F(Cell, IsMadeToMisbehave) {
  FaultInjection& wrong = robot.FaultInjection();
  RUN(wrong.FailNext("SendCommand", {-77, "cable"}, 2));
  RUN(wrong.FailNext("SendCommand", {1, "odd"}));
  RUN(core->WriteR(0, ""));
  RUN(Send("CLRALM"));
  RUN(Send("CLRALM"));
  RUN(Send("CLRALM"));
  RUN(core->LastErrorText());
  RUN(robot.Commands());
  RUN(Send("CLRALM"));
  RUN(robot.Commands());
  RUN(wrong.FailNext("ShortToLong", {}));
  RUN(wrong.FailNext("Nothing", {}));
  Say("late answers");
  RUN(core->TimeOutValue(100));
  RUN(wrong.AnswerAfter(100));
  RUN(Send("CLRALM"));
  RUN(wrong.AnswerAfter(101));
  RUN(Send("CLRALM"));
  RUN(robot.Commands());
  RUN(core->Disconnect());
  RUN(core->Connect());
  RUN(wrong.FailNext("SendCommand", {-1, ""}));
  RUN(wrong.Stop());
  RUN(core->Connect());
  RUN(Send("CLRALM"));
  Say("lost connections");
  RUN(wrong.LoseConnections());
  RUN(Send("CLRALM"));
  RUN(wrong.FailNext("Connect", {-5, "busy"}));
  RUN(core->Connect());
  RUN(Send("CLRALM"));
  RUN(core->Connect());
  RUN(wrong.FailNext("Disconnect", {-6, "stuck"}));
  RUN(core->Disconnect());
  RUN(Send("CLRALM"));
  Say("a link that is cut");
  RUN(wrong.CutLink());
  RUN(Send("CLRALM"));
  RUN(core->Connect());
  RUN(wrong.RestoreLink());
  RUN(Send("CLRALM"));
  RUN(core->Connect());
  RUN(Send("CLRALM"));
  RUN(wrong.CutLink());
  RUN(wrong.Stop());
  RUN(core->Connect());
}

TEST_F(Cell, HasEveryKindOfSignal) {
  using enum SignalKind;
  using enum DispId;
  const Words bits{1, 0, 7};
  const Longs groups{-1, 0, 70000};
  RUN(Transfer(SDO, ReadSDO, WriteSDO, bits));
  RUN(Transfer(SDOEx, ReadSDOEx, WriteSDOEx, bits));
  RUN(Transfer(SDI, ReadSDI, WriteSDI, bits));
  RUN(Transfer(RDO, ReadRDO, WriteRDO, bits));
  RUN(Transfer(RDI, ReadRDI, WriteRDI, bits));
  RUN(Transfer(SO, ReadSO, WriteSO, bits));
  RUN(Transfer(SI, ReadSI, "WriteSI", bits));
  RUN(Transfer(UO, ReadUO, WriteUO, bits));
  RUN(Transfer(UI, ReadUI, "WriteUI", bits));
  RUN(Transfer(GO, ReadGO, WriteGO, groups));
  RUN(Transfer(GI, ReadGI, WriteGI, groups));
}

TEST_F(Cell, FaultsOnWhatIsNoCallAtAll) {
  const std::string command = "CLRALM";
  Words words(4), none;
  Reals reals(9);
  OrvexValue noText = Of(command), noWords = Of(words);
  noText.as.text = noWords.as.text = nullptr;
  for (const int unknown : {0, -1, 4, 1000}) RUN(Invoke(unknown, {}));
  RUN(Invoke(1, {}, ORVEX_GET));
  RUN(core->Object()->Lookup("writeSI"));
  RUN(Invoke(11, {Of(1)}));
  RUN(Invoke(1, {Of(command)}, ORVEX_PUT));
  RUN(Invoke(7, {Of(1)}));
  RUN(Invoke(7, {{noText.kind, 0, -1, noText.as}}));
  RUN(Invoke(7, {noText}));
  RUN(Invoke(27, {Of(1), noWords, Of(1)}));
  RUN(Invoke(45, {Of(1), Of(words), Of(1)}));
  RUN(Invoke(57, {Of(none)}));
  RUN(Invoke(56, {Of(1), Of(words), Of(5)}));
  RUN(Invoke(23, {Of(1), Of(reals), Of(5), Of(words), Of(none)}));
  RUN(Invoke(63, {Of(5), Of(5), Of(reals), Of(1), Of(words), Of(1)}));
}

// Arguments of the right kinds but with any values end in a status or a fault, and touch nothing
// beyond the reach of their references.
TEST_F(Cell, TakesNoHarmFromHostileArguments) {
  // s is a short, t a text reference, the others are references to shorts, longs or reals.
  const std::vector<std::pair<int, std::string>> shapes{
      {13, "t"},     {16, "st"},      {17, "sLs"},    {19, "sSs"}, {21, "sRs"}, {56, "sSs"},
      {23, "sRsSS"}, {25, "sRsSsSS"}, {63, "ssRsSs"}, {28, "sSs"}, {45, "sLs"}, {101, "LSL"}};
  const std::vector<std::string> pieces{"SETASG 1 40 R[1] 1.0", "SETASG 41 100 PR[1] 0.0",
                                        "SETASG 141 50 PR[1]@1.25 0.0", "SETASG 191 80 SR[1] 1"};
  const Words numbers{0, 1, 2, 7, 9, 18, 41, 141, 191, 16383, 32767, -1, -32768};
  std::mt19937 random(20240517);
  const auto any = [&random](const auto& choices) { return choices[random() % choices.size()]; };
  std::array<int, 3> outcomes{};  // accepted, refused, faulted
  for (int round = 0; round < 20000; ++round) {
    if (round % 16 == 0) {
      core->ClearRAssignment();
      for (const std::string& piece : pieces) core->SetRAssignment(piece);
    }
    Words shorts(random() % 64);
    Longs longs(shorts.size(), any(Longs{1, 2, 0, -1, 2147483647, -2147483647 - 1}));
    Reals reals(shorts.size());
    std::string text = any(pieces);
    text.append(random() % 90, '9');
    text[random() % text.size()] = static_cast<char>(random() % 96 + 32);
    const auto [id, kinds] = any(shapes);
    std::vector<OrvexValue> values;
    for (const char kind : kinds) {
      const OrvexValue references[]{Of(shorts), Of(longs), Of(reals), Of(text)};
      values.push_back(kind == 's' ? Of(any(numbers)) : references[std::string("SLRt").find(kind)]);
    }
    try {
      ++outcomes[Invoke(id, values) < 0 ? 1 : 0];
    } catch (const Fault&) {
      ++outcomes[2];
    }
  }
  for (const int outcome : outcomes) RUN(outcome > 1000);
  Expect(R"(
outcome > 1000 -> true
outcome > 1000 (turn 2) -> true
outcome > 1000 (turn 3) -> true
)");
}

TEST_F(Cell, IsOfferedByAComponentWithAPlainInterface) {
  const auto serve = reinterpret_cast<OrvexCommLibEntryFunction>(
      platform::ModuleSymbol(platform::LoadModule(ORIF_SIMULATOR_COMPONENT), ORVEX_COMMLIB_ENTRY));
  EXPECT_EQ(serve(ORVEX_COMMLIB_VERSION + 1), nullptr);
  const OrvexCommLib& library = *serve(ORVEX_COMMLIB_VERSION);
  OrvexValue result{};
  void* object = library.create(&result);
  const auto call = [&](void* on, int id, auto kind, int count) {
    return library.invoke(on, id, kind, nullptr, count, &result);
  };
  const auto text = [&] { return std::string(result.as.text, result.as.text + result.count); };
  std::int32_t id = 0;
  RUN(call(object, 11, ORVEX_METHOD, 0));
  RUN(result.as.i4);
  RUN(call(object, 999, ORVEX_METHOD, 0));
  RUN(text());
  RUN(call(object, 11, std::uint16_t{3}, 0));
  RUN(text());
  RUN(call(object, 13, ORVEX_METHOD, 1));
  RUN(text());
  RUN(call(object, 11, ORVEX_METHOD, -1));
  RUN(text());
  RUN(call(nullptr, 11, ORVEX_METHOD, 0));
  RUN(library.invoke(object, 11, ORVEX_METHOD, nullptr, 0, nullptr));
  RUN(library.lookup(object, "", &id));
  RUN(library.lookup(object, nullptr, &id));
  RUN(library.lookup(object, "ReadSDO", &id));
  RUN(id);
  library.release(object);
}

}  // namespace
}  // namespace orif::sim::test

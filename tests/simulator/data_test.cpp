#include <cmath>
#include <limits>
#include <numeric>

#include "tests/simulator/Client.h"

namespace orif::sim::test {
namespace {

class DataTest : public CellTest {};

TEST_F(DataTest, RegistersShowEitherTypeAndTakeTheOneWritten) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const std::vector<std::pair<NumericValue, std::int32_t>> cases{
      {-70000, -70000},  {2.5f, 2},          {3.5f, 4},
      {-0.5f, 0},        {3e9f, 2147483647}, {-kInfinity, -2147483647 - 1},
      {std::nanf(""), 0}};
  Assign({"1 2 R[1] 1.0", "3 2 R[1] 0"});
  for (const auto& [value, integer] : cases) {
    robot.NumericRegister(1) = value;
    EXPECT_EQ(client.ReadLong(1), integer);
  }
  robot.NumericRegister(1) = -70000;
  EXPECT_EQ(client.ReadReal(3), -70000.0f);
  EXPECT_EQ(client.Write(DispId::WriteRFloat, 3, Reals{1.25f}), 0);
  EXPECT_EQ(robot.NumericRegister(1), NumericValue(1.25f));
  EXPECT_EQ(client.Write(DispId::WriteRLong, 1, Longs{8}), 0);
  EXPECT_EQ(robot.NumericRegister(1), NumericValue(8));
  EXPECT_EQ(client.Write(DispId::WriteRLong, 3, Longs{8}), Number(Status::WrongType));
}

TEST_F(DataTest, VariablesKeepTheirType) {
  robot.SetVariable("$N", 5);
  robot.SetVariable("$T", std::string("text"));
  EXPECT_THROW(robot.SetVariable("$N", 5.0f), std::invalid_argument);
  EXPECT_THROW(robot.Variable("$n"), std::out_of_range);
  Assign({"1 2 $N 1", "5 40 $T 1"});
  robot.SetVariable("$N", 6);
  EXPECT_EQ(client.ReadLong(1), 6);
  EXPECT_EQ(client.Write(DispId::WriteRLong, 1, Longs{-9}), 0);
  EXPECT_EQ(client.Call(DispId::WriteR, Short(5), Ref("odd")), 0);
  EXPECT_EQ(robot.Variable("$N"), VariableValue(-9));
  EXPECT_EQ(robot.Variable("$T"), VariableValue(std::string("odd")));
}

TEST_F(DataTest, TextsFillTheirFortyWords) {
  const std::string eighty(80, 'x');
  robot.StringRegister(1) = "ABC";
  robot.Comment(CommentKind::DO, 4096) = "last";
  robot.Comment(CommentKind::WSO, 1) = eighty + "y";
  Assign({"1 80 SR[1] 1", "81 40 DO[C4096] 1", "121 40 WSO[C1] 1"});
  EXPECT_EQ(client.Read(1, 3), (Words{0x4241, 0x0043, 0}));
  EXPECT_EQ(client.ReadText(81, 40), "last");
  EXPECT_EQ(client.ReadText(121, 40), eighty);

  robot.StringRegister(2) = "longer than what follows";
  EXPECT_EQ(client.Call(DispId::WriteR, Short(41), Ref("short")), 0);
  EXPECT_EQ(robot.StringRegister(2), "short");
  EXPECT_EQ(client.Call(DispId::WriteR, Short(1), Ref(eighty)), 0);
  EXPECT_EQ(robot.StringRegister(1), eighty);
  EXPECT_EQ(client.Call(DispId::WriteR, Short(1), Ref(eighty + "y")), Number(Status::TextTooLong));
  EXPECT_EQ(client.Call(DispId::WriteR, Short(2), Ref("a")), Number(Status::Misaligned));
  EXPECT_EQ(client.Call(DispId::WriteR, Short(1), Ref("")), 0);
  EXPECT_EQ(robot.StringRegister(1), "");
  Words block(80);
  block[0] = 0x3231;
  block[40] = 0x0033;
  EXPECT_EQ(client.Write(DispId::WriteRShort, 1, block), 0);
  EXPECT_EQ(robot.StringRegister(1), "12");
  EXPECT_EQ(robot.StringRegister(2), "3");
}

// One value of each field of the record, at its place.
void ExpectRecord(Client& client, int start, const Position& position) {
  const Words words = client.Read(start, 50);
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_EQ(client.ReadReal(start + static_cast<int>(2 * i)), position.xyzwpr[i]) << i;
    EXPECT_EQ(client.ReadReal(start + 26 + static_cast<int>(2 * i)), position.joint[i]) << i;
  }
  for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(words[18 + i], position.config[i]) << i;
  EXPECT_EQ(words[25], position.validC);
  EXPECT_EQ(words[44], position.validJ);
  EXPECT_EQ(words[45], position.uf);
  EXPECT_EQ(words[46], position.ut);
}

class PositionTest : public CellTest {
 protected:
  std::int32_t WriteJoint(int address, Reals joint) {
    return client.Call(DispId::WriteRJoint, Short(address), Ref(joint), Short(joint.size()),
                       Ref(frames_.data()), Ref(frames_.data() + 1));
  }
  std::int32_t WriteCartesian(int address, Reals values, Words config) {
    return client.Call(DispId::WriteRXyzwpr, Short(address), Ref(values), Short(values.size()),
                       Ref(config), Short(config.size()), Ref(frames_.data()),
                       Ref(frames_.data() + 1));
  }
  std::int32_t WriteRun(int address, int registers, int configStride = 7) {
    Reals values(18);
    Words config(14);
    std::iota(values.begin(), values.end(), 100.0f);
    std::iota(config.begin(), config.end(), Short(1));
    return client.Call(DispId::WriteRXyzwprConfig, Short(address), Short(registers), Ref(values),
                       Short(9), Ref(config), Short(configStride));
  }

  const Reals nine_{1, 2, 3, 4, 5, 6, 7, 8, 9};
  const Words seven_{-1, 2, -3, 4, -5, 6, -7};
  Words frames_{3, 4};
};

TEST_F(PositionTest, WritesLandInOneFormAndKeepTheRest) {
  Assign({"1 100 PR[4] 0.0", "101 50 PR[G2:4] 0.0"});
  EXPECT_EQ(WriteCartesian(51, nine_, seven_), 0);
  Position expected{.xyzwpr = {1, 2, 3, 4, 5, 6, 7, 8, 9},
                    .config = {-1, 2, -3, 4, -5, 6, -7},
                    .uf = 3,
                    .ut = 4,
                    .validC = 1};
  ExpectRecord(client, 51, expected);
  EXPECT_EQ(WriteJoint(51, {10, 20, 30, 40, 50, 60, 70, 80, 90}), 0);
  EXPECT_EQ(WriteJoint(51, {1, 2, 3, 4, 5, 6}), 0);
  expected.joint = {1, 2, 3, 4, 5, 6, 70, 80, 90};
  expected.validC = 0;
  expected.validJ = 1;
  ExpectRecord(client, 51, expected);
  ExpectRecord(client, 1, Position());
  ExpectRecord(client, 101, Position());
}

TEST_F(PositionTest, RefusedWritesChangeNothing) {
  Assign({"1 100 PR[1] 0.0", "101 50 POS[0] 0.0", "151 2 R[1] 0"});
  EXPECT_EQ(WriteJoint(1, Reals(10)), Number(Status::WrongCount));
  EXPECT_EQ(WriteCartesian(1, Reals(5), seven_), Number(Status::WrongCount));
  EXPECT_EQ(WriteCartesian(1, nine_, Words(6)), Number(Status::WrongCount));
  EXPECT_EQ(WriteJoint(2, nine_), Number(Status::Misaligned));
  EXPECT_EQ(WriteJoint(101, nine_), Number(Status::ReadOnly));
  EXPECT_EQ(WriteJoint(151, nine_), Number(Status::WrongType));
  EXPECT_EQ(WriteJoint(153, nine_), Number(Status::NotAssigned));
  EXPECT_EQ(WriteRun(51, 2), Number(Status::NotAssigned));
  EXPECT_EQ(WriteRun(1, 2, 6), Number(Status::WrongCount));
  EXPECT_EQ(WriteRun(1, 0), Number(Status::WrongCount));
  ExpectRecord(client, 1, Position());
  ExpectRecord(client, 51, Position());
}

TEST_F(PositionTest, WindowsShowAndTakeTheirWordsOnly) {
  for (const int index : {1, 2}) robot.PositionRegister(2, index).SetCartesian(nine_, seven_);
  robot.PositionRegister(2, 2).SetJoint(nine_);
  Assign({"1 50 PR[G2:1]@1.25 0.0", "51 24 PR[G2:1]@27.12 0.0"});
  EXPECT_EQ(client.ReadReal(26), 1.0f);      // X of the second register
  EXPECT_EQ(client.Read(50, 1), Words{-7});  // its C7
  EXPECT_EQ(client.ReadReal(63), 1.0f);      // its J1
  EXPECT_EQ(client.ReadReal(73), 6.0f);      // its J6

  EXPECT_EQ(WriteJoint(1, nine_), Number(Status::WrongType));
  EXPECT_EQ(WriteJoint(63, nine_), Number(Status::WrongType)) << "J7 is not shown";
  EXPECT_EQ(WriteJoint(63, {6, 5, 4, 3, 2, 1}), 0);
  EXPECT_EQ(robot.PositionRegister(2, 2).joint[5], 1.0f);
  EXPECT_EQ(robot.PositionRegister(2, 2).joint[6], 7.0f);
  EXPECT_EQ(WriteRun(1, 2), 0);
  EXPECT_EQ(robot.PositionRegister(2, 2).xyzwpr[8], 117.0f);
  EXPECT_EQ(robot.PositionRegister(2, 2).config[6], 14);
  EXPECT_EQ(robot.PositionRegister(2, 2).validJ, 0);
  EXPECT_EQ(robot.PositionRegister(2, 1).xyzwpr[8], 108.0f);
  EXPECT_EQ(robot.PositionRegister(2, 1).config[6], 7);

  // A block over both pieces: the last one that was written decides which form holds.
  EXPECT_EQ(client.Write(DispId::WriteRShort, 1, Words(74)), 0);
  for (const int index : {1, 2}) {
    const Position& position = robot.PositionRegister(2, index);
    EXPECT_EQ(position.xyzwpr[0] + position.joint[0], 0.0f);
    EXPECT_EQ(position.joint[6], index == 2 ? 7.0f : 0.0f);
    EXPECT_EQ(position.validC, 0);
    EXPECT_EQ(position.validJ, 1);
  }
}

TEST_F(PositionTest, CurrentPositionIsSeenFromTheUserFrame) {
  Position& arm = robot.CurrentPosition(2);
  arm.xyzwpr = {100, 200, 300, 10, 20, 30, 1};
  arm.joint = {5};
  arm.ut = 2;
  robot.FrameOrigin(2, 3) = {100, 50, -25};
  Assign({"1 50 POS[G2:0] 0.0", "51 50 POS[G2:3] 0.0"});
  ExpectRecord(client, 1, arm);
  Position seen = arm;
  seen.xyzwpr = {0, 150, 325, 10, 20, 30, 1};
  seen.uf = 3;
  ExpectRecord(client, 51, seen);
}

TEST_F(DataTest, TasksAreCountedWithoutTheFilteredOnes) {
  robot.TaskList() = {{.program = "MAC", .line = 1, .state = 2, .macro = true},
                      {.program = "COMPILED", .line = 3, .state = 4, .velto = true},
                      {.program = "SIXTEEN-LETTERS!", .line = 5, .state = 6, .parentProgram = "P"}};
  const std::vector<std::pair<std::string, std::string>> cases{{"PRG[1]", "MAC"},
                                                               {"PRG[M1]", "COMPILED"},
                                                               {"PRG[V2]", "SIXTEEN-LETTERS!"},
                                                               {"PRG[MV1]", "SIXTEEN-LETTERS!"},
                                                               {"PRG[MV2]", ""}};
  for (const auto& [symbol, program] : cases) {
    Assign({"1 18 " + symbol + " 1"});
    EXPECT_EQ(client.ReadText(1, 8), program) << symbol;
  }
  Assign({"1 36 PRG[3] 1"});
  EXPECT_EQ(client.Read(9, 3), (Words{5, 6, 'P'}));
  EXPECT_EQ(client.Read(19, 18), Words(18)) << "no fourth task";
}

TEST_F(DataTest, AlarmsFillTheirRecordsAndAreCleared) {
  Alarm alarm{1, 2, 3, 4, 5, 2024, 7, 8, 9, 10, 11, "message", "cause", "eighteen bytes here"};
  robot.Alarms(AlarmList::Active) = {alarm, alarm};
  robot.Alarms(AlarmList::History) = {alarm};
  Assign({"1 300 ALM[1] 1", "301 22 ALM[E1]@1.11 1", "401 91 ALM[P1]@1.91 1"});
  const Words numbers{1, 2, 3, 4, 5, 2024, 7, 8, 9, 10, 11};
  EXPECT_EQ(client.Read(101, 11), numbers);
  EXPECT_EQ(client.ReadText(112, 40), "message");
  EXPECT_EQ(client.ReadText(152, 40), "cause");
  EXPECT_EQ(client.ReadText(192, 9), "eighteen bytes her");
  EXPECT_EQ(client.Read(201, 100), Words(100)) << "no third alarm";
  EXPECT_EQ(client.Read(301, 11), numbers);
  EXPECT_EQ(client.Read(312, 11), Words(11));
  EXPECT_EQ(client.Read(401, 91), Words(91));

  for (const char* command : {"", "CLRALMS", "CLRALM ", "CLRALM 0", "CLRALM -1", "CLRALM x"}) {
    EXPECT_EQ(client.Call(DispId::SendCommand, Ref(command)), Number(Status::UnknownCommand));
  }
  EXPECT_EQ(client.Read(1, 1), Words{1});
  EXPECT_EQ(client.Call(DispId::SendCommand, Ref("CLRALM 2")), 0);
  EXPECT_EQ(client.Read(1, 300), Words(300));
  EXPECT_EQ(client.Read(301, 11), numbers);
  EXPECT_EQ(robot.Commands(), std::vector<std::string>{"CLRALM 2"});
}

}  // namespace
}  // namespace orif::sim::test

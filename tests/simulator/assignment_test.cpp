#include "tests/simulator/Client.h"

namespace orif::sim::test {
namespace {

class AssignmentTest : public CellTest {};

TEST_F(AssignmentTest, AcceptsWhatTheControllerHasAndRefusesTheRestWithAText) {
  robot.SetVariable("$COUNT[2].$X", 1);
  robot.SetVariable("$RATE", 1.0f);
  robot.SetVariable("$TITLE", std::string("t"));
  robot.SetVariable("$HOME", Position());
  const std::vector<std::pair<Status, std::vector<std::string>>> cases{
      {Status::Ok,
       {"1 40 R[1] 1.0", "16382 2 R[20] 0", "1 250 PR[1] 0.0", "1 50 PR[G2:5] 0.0",
        "1 25 PR[1]@1.25 0.0", "1 50 POS[0] 0.0", "1 50 POS[G2:3] 0.0", "1 160 SR[1] 1",
        "1 40 WSO[C64] 1", "1 18 PRG[MV1] 1", "1 182 ALM[P1]@1.91 1", "1 2 $COUNT[2].$X 1",
        "1 2 $RATE 0", "1 40 $TITLE 1", "1 50 $HOME 0.0"}},
      {Status::IndexOutOfRange,
       {"1 42 R[1] 1.0", "1 2 R[0] 1.0", "1 2 R[21] 0", "1 300 PR[1] 0.0", "1 50 PR[G3:1] 0.0",
        "1 50 POS[4] 0.0", "1 40 WSO[C65] 1"}},
      {Status::WrongSize, {"1 3 R[1] 1.0", "1 0 R[1] 1.0", "1 40 $COUNT[2].$X 1"}},
      {Status::OutsideArea, {"16383 2 R[1] 1.0", "0 2 R[1] 0", "2147483647 2147483647 R[1] 0"}},
      {Status::WrongFactor, {"1 2 R[1] 2.0", "1 50 PR[1] 1", "1 40 SR[1] 0", "1 2 $RATE 1"}},
      {Status::UnknownVariable,
       {"1 2 R[G2:1] 1.0", "1 2 R[X1] 1.0", "1 2 QQ[1] 1.0", "1 40 QQ[C1] 1", "1 18 PRG[VM1] 1",
        "1 11 ALM[Q1]@1.11 1", "1 2 $count[2].$x 1"}},
      {Status::WrongWindow, {"1 50 PR[1]@1.51 0.0", "1 2 PR[1]@50.2 0.0", "1 1 PR[1]@0.1 0.0"}},
      {Status::MalformedPiece,
       {"", "1 2 R[1]", " 1 2 R[1] 1.0", "+1 2 R[1] 1.0", "01 2 R[1] 1.0", "99999999999 2 R[1] 1.0",
        "1 2 R[] 1.0", "1 2 R]1[ 1.0", "1 2 R[1]x 1.0", "1 2 R[1] 1.0 ", "1 50 PR[G0:1] 0.0",
        "1 50 PR[G2] 0.0", "1 25 PR[1]@1 0.0"}}};
  for (const auto& [status, pieces] : cases) {
    for (const std::string& piece : pieces) {
      client.Call(DispId::ClearRAssignment);
      client.Call(DispId::SetRAssignment, Ref("no piece"));
      EXPECT_EQ(client.Assign("SETASG " + piece), Number(status)) << piece;
      const std::string_view error =
          status == Status::Ok ? "Malformed assignment" : StatusText(status);
      EXPECT_EQ(client.Error(), error) << piece;
    }
  }
  EXPECT_EQ(client.Assign("setasg 1 2 R[1] 1.0"), Number(Status::MalformedPiece));
}

TEST_F(AssignmentTest, PiecesMayTouchButNotOverlap) {
  Assign({"11 4 R[1] 1.0"});
  for (const char* piece : {"SETASG 11 4 R[1] 1.0", "SETASG 9 4 R[5] 1.0", "SETASG 13 4 R[5] 1.0",
                            "SETASG 1 40 R[1] 1.0"}) {
    EXPECT_EQ(client.Assign(piece), Number(Status::OverlappingPiece)) << piece;
  }
  EXPECT_EQ(client.Assign("SETASG 15 2 R[3] 1.0"), 0);
  EXPECT_EQ(client.Assign("SETASG 9 2 R[4] 1.0"), 0);
}

TEST_F(AssignmentTest, ReadsComposeTheWordsOfTheMoment) {
  robot.NumericRegister(1) = 0x12345678;
  robot.NumericRegister(2) = -2;
  Assign({"6 2 R[2] 1.0", "2 2 R[1] 1.0"});
  EXPECT_EQ(client.Read(1, 8), (Words{0, 0x5678, 0x1234, 0, 0, -2, -1, 0}));
  EXPECT_EQ(client.Read(3, 4), (Words{0x1234, 0, 0, -2}));
  EXPECT_EQ(client.Read(16383, 1), Words{0});
  robot.NumericRegister(1) = 7;
  EXPECT_EQ(client.Read(2, 1), Words{7});
  client.Call(DispId::ClearRAssignment);
  EXPECT_EQ(client.Read(1, 8), Words(8));

  Words words(2, 9);
  EXPECT_EQ(client.Call(DispId::ReadRShort, Short(1), Ref(words), Short(0)), 0);
  EXPECT_EQ(client.Call(DispId::ReadRShort, Short(16383), Ref(words), Short(2)),
            Number(Status::OutsideArea));
  EXPECT_EQ(client.Call(DispId::ReadRShort, Short(0), Ref(words), Short(1)),
            Number(Status::OutsideArea));
  EXPECT_EQ(words, Words(2, 9));
}

TEST_F(AssignmentTest, AWriteIsAllOrNothing) {
  Assign({"1 4 R[1] 1.0", "5 2 R[9] 1.0", "7 2 R[10] 0", "9 50 POS[0] 0.0", "61 2 R[11] 0"});
  EXPECT_EQ(client.Write(DispId::WriteRLong, 3, Longs{1, 1, 1}), Number(Status::WrongType));
  EXPECT_EQ(client.Write(DispId::WriteRLong, 2, Longs(8, 1)), Number(Status::Misaligned));
  EXPECT_EQ(client.Write(DispId::WriteRShort, 5, Words(5, 1)), Number(Status::ReadOnly));
  EXPECT_EQ(client.Write(DispId::WriteRShort, 58, Words(2, 1)), Number(Status::ReadOnly));
  EXPECT_EQ(client.Write(DispId::WriteRShort, 62, Words(2, 1)), Number(Status::NotAssigned));
  EXPECT_EQ(client.Write(DispId::WriteRShort, 59, Words(4, 1)), Number(Status::NotAssigned));
  EXPECT_EQ(client.Write(DispId::WriteRShort, 0, Words(1, 1)), Number(Status::OutsideArea));
  for (const int index : {1, 2, 9, 10, 11}) {
    EXPECT_EQ(robot.NumericRegister(index), NumericValue(0)) << index;
  }

  EXPECT_EQ(client.Write(DispId::WriteRLong, 3, Longs{5, -6}), 0);
  EXPECT_EQ(robot.NumericRegister(2), NumericValue(5));
  EXPECT_EQ(robot.NumericRegister(9), NumericValue(-6));
  // Half a register and half of the next one, over the border of two pieces.
  EXPECT_EQ(client.Write(DispId::WriteRShort, 4, Words{1, 0}), 0);
  EXPECT_EQ(robot.NumericRegister(2), NumericValue(0x10005));
  EXPECT_EQ(robot.NumericRegister(9), NumericValue(-0x10000));
}

TEST_F(AssignmentTest, EachCoreObjectHasItsOwnMapOverTheSameData) {
  Client other(network);
  ASSERT_EQ(other.Connect("CELL"), 0);
  Assign({"1 2 R[1] 1.0"});
  ASSERT_EQ(other.Assign("SETASG 1 2 R[1] 0"), 0);
  EXPECT_EQ(client.Write(DispId::WriteRLong, 1, Longs{3}), 0);
  EXPECT_EQ(other.ReadReal(1), 3.0f);
  EXPECT_EQ(client.Call(DispId::Disconnect), 0);
  EXPECT_EQ(other.ReadReal(1), 3.0f);
}

}  // namespace
}  // namespace orif::sim::test

#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

// Every word of the last refresh is its own address, and a float is its first word.
class Positions : public TableTranscript {
 protected:
  Positions() {
    lower->On(DispId::ReadRShort, [](auto arguments) {
      for (std::int16_t i = 0; i < arguments[2].as.i2; ++i) {
        arguments[1].as.i2Ref[i] = static_cast<std::int16_t>(arguments[0].as.i2 + i);
      }
      return Long(1);
    });
    lower->On(DispId::ShortToFloat, [](auto arguments) { return Real(*arguments[0].as.i2Ref); });
    lower->On(DispId::WriteRShort, [this](auto arguments) {
      words.assign(arguments[1].as.i2Ref, arguments[1].as.i2Ref + arguments[2].as.i2);
      return Long(0);
    });
    lower->On(DispId::LastErrorText, [](auto) { return Text("no way"); });
  }

  void Refresh() {
    table->Refresh();
    Forget();
  }
  void Forget() {
    xyzwpr.fill(-1);
    config.fill(-1);
    joint.fill(-1);
    UF = UT = ValidC = ValidJ = -1;
  }
  void ShowAll() {
    SHOW(xyzwpr);
    SHOW(config);
    SHOW(joint);
    SHOW((std::array{UF, UT, ValidC, ValidJ}));
  }
  template <class T>
  static ArrayView<T> First(std::array<T, 9>& array, std::int32_t count, std::int32_t lower = 0) {
    return {array.data(), lower, lower + count - 1};
  }
  // The flat forms: the values come back in the arrays.
  template <class Item, class... Index>
  bool FlatXyzwpr(Item& item, Index... index) {
    auto& x = xyzwpr;
    auto& c = config;
    return item.GetValueXyzwpr(index..., x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], c[0],
                               c[1], c[2], c[3], c[4], c[5], c[6], UF, UT, ValidC);
  }
  template <class Item, class... Index>
  bool FlatJoint(Item& item, Index... index) {
    auto& j = joint;
    return item.GetValueJoint(index..., j[0], j[1], j[2], j[3], j[4], j[5], j[6], j[7], j[8], UT,
                              ValidJ);
  }

  std::vector<std::int16_t> words;  // of the last write of words
  std::array<float, 9> xyzwpr{};
  std::array<std::int16_t, 9> config{};
  std::array<float, 9> joint{};
  std::int16_t UF = -1;
  std::int16_t UT = -1;
  std::int16_t ValidC = -1;
  std::int16_t ValidJ = -1;
  const std::array<float, 9> nine{1, 2, 3, 4, 5, 6, 7, 8, 9};
  const std::array<std::int16_t, 7> seven{1, 2, 3, 4, 5, 6, 7};
};

TEST_F(Positions, AreRegistered) {
  TRACED(table->AddPosReg(POSREG, 1, 1, 10));
  TRACED(table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 4));
  TRACED(table->AddCurPos(CURPOS, 1));
  TRACED(table->AddSysVarPos(SYSVAR_POS, "$NAME"));
  TRACED(table->AddPosRegMG(POSREGMG, "c,J6", 1, 10));
  RUN(table->AddPosReg(POSREG, 2, 5, 5));
  RUN(table->AddPosRegXyzwpr(POSREG_XYZWPR, 3, 7, 7));
  RUN(table->AddCurPosUF(CURPOS, 2, 3));
  Say("what is not valid, in the order of the tests");
  RUN(table->AddPosReg(POSREG_XYZWPR, 0, 0, 0));
  RUN(table->AddPosReg(POSREG, 0, 0, 0));
  RUN(table->AddPosReg(POSREG, 1, 0, 1));
  RUN(table->AddPosReg(POSREG, 1, 1, 0));
  RUN(table->AddPosReg(POSREG, 1, 2, 1));
  RUN(table->AddPosRegXyzwpr(POSREG, 1, 1, 1));
  RUN(table->AddCurPos(POSREG, 0));
  RUN(table->AddCurPos(CURPOS, 0));
  RUN(table->AddSysVarPos(SYSVAR_INT, "$NAME"));
  RUN(table->AddSysVarPos(SYSVAR_POS, "NAME"));
  RUN(table->AddSysVarPos(SYSVAR_POS, ""));
  RUN(table->AddPosRegMG(POSREG, "", 1, 1));
  for (const char* group : {"", "X1", "J", "C,,J6", "C,", "J6.5", "Jmany", " C"}) {
    RUN(table->AddPosRegMG(POSREGMG, group, 1, 1));
  }
  RUN(table->AddPosRegMG(POSREGMG, "C", 0, 1));
  Say("sizes beyond 32 bits, beyond 16 bits, and beyond the area");
  RUN(table->AddPosReg(POSREG, 1, 1, Max));
  RUN(table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, Max));
  RUN(table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 80000000));
  RUN(table->AddPosRegMG(POSREGMG, "J9,J9", 1, 1000));
  RUN(table->AddPosRegMG(POSREGMG, "C", 1, Max));
  Say("a table that takes no items");
  core.DataTable2();
  RUN(table->AddPosReg(POSREG, 1, 1, 1));
  RUN(table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 1));
  RUN(table->AddPosRegMG(POSREGMG, "C", 1, 1));
  RUN(table->AddCurPos(CURPOS, 1));
  RUN(table->AddSysVarPos(SYSVAR_POS, "$NAME"));
}

TEST_F(Positions, AreRefusedByTheController) {
  lower->On(DispId::SetRAssignment, 5);
  RUN(table->AddPosReg(POSREG, 1, 1, 1));
  RUN(table->AddSysVarPos(SYSVAR_POS, "$NAME"));
  TRACED(table->AddCurPos(CURPOS, 1));
  Say("a refused second piece: the words of the first stay used");
  int pieces = 0;
  lower->On(DispId::SetRAssignment, [&](auto) { return Long(++pieces == 2 ? 5 : 0); });
  RUN(table->AddPosRegMG(POSREGMG, "C,J1,J2", 1, 1));
  RUN(table->Count());
  RUN(table->AddCurPos(CURPOS, 1));
}

TEST_F(Positions, AFaultInTheTextOfARefusalIsTold) {
  const auto registers = table->AddPosReg(POSREG, 1, 1, 1);
  const auto variable = table->AddSysVarPos(SYSVAR_POS, "$P");
  const auto staged = table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 1);
  const auto groups = table->AddPosRegMG(POSREGMG, "J1", 1, 1);
  for (const DispId id : {DispId::WriteRJoint, DispId::WriteRXyzwpr, DispId::WriteRXyzwprConfig,
                          DispId::WriteRShort}) {
    lower->On(id, -3);
  }
  lower->Throw(DispId::LastErrorText, "gone");
  staged->SetValueXyzwpr(1, nine, seven);
  RUN(registers->SetValueJoint(1, nine, 1, 2));
  RUN(registers->SetValueXyzwpr(1, nine, seven, 1, 2));
  RUN(variable->SetValueJoint(nine, 1, 2));
  RUN(staged->Update());
  RUN(groups->Update());
}

TEST_F(Positions, RegistersAreRead) {
  const auto item = table->AddPosReg(POSREG, 1, 5, 6);
  table->AddPosReg(POSREG, 2, 1, 1);
  RUN(item->GetValue(5, xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  Refresh();
  TRACED(item->GetValue(6, xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  ShowAll();
  Say("an index outside the range means what lies there");
  RUN(item->GetValue(7, xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  SHOW(UT);
  RUN(item->GetValue(4, xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(Max, xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  Say("flat forms");
  Forget();
  RUN(FlatXyzwpr(*item, 5));
  ShowAll();
  Forget();
  RUN(FlatJoint(*item, 5));
  ShowAll();
  Say("bounds: from below 0, six of nine, five, from 1, six of seven, a joint array of one");
  std::array<float, 10> below{};
  RUN(item->GetValue(5, ArrayView(below.data(), -1, 8), config, joint, UF, UT, ValidC, ValidJ));
  SHOW(below);
  Forget();
  RUN(item->GetValue(5, First(xyzwpr, 6), config, joint, UF, UT, ValidC, ValidJ));
  ShowAll();
  RUN(item->GetValue(5, First(xyzwpr, 5), config, joint, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(5, First(xyzwpr, 9, 1), config, joint, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(5, xyzwpr, First(config, 6), joint, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(5, xyzwpr, config, First(joint, 9, 1), UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(5, xyzwpr, config, First(joint, 1), UF, UT, ValidC, ValidJ));
  item->Kill();
  RUN(item->GetValue(5, {}, {}, {}, UF, UT, ValidC, ValidJ));
}

TEST_F(Positions, ARecordAtTheEndOfTheBuffer) {
  struct End {
    std::int32_t address;
    bool odd;  // whether 25 words come first
    std::int32_t registers;
  };
  for (const End& end : {End{16338, true, 6}, End{16339, false, 19}, End{16340, true, 7}}) {
    table->Clear();
    if (end.odd) table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 1);
    table->AddNumReg(NUMREG_INT, 1, end.registers);
    const auto item = table->AddPosReg(POSREG, 1, 1, 1);
    Refresh();
    const std::int32_t start = (end.odd ? 26 : 1) + 2 * end.registers;
    ASSERT_EQ((end.address - start) % 50, 0);
    SHOW(end.address);
    RUN(item->GetValue(1 + (end.address - start) / 50, xyzwpr, config, joint, UF, UT, ValidC,
                       ValidJ));
    SHOW((std::array{UF, UT, ValidC, ValidJ}));
  }
}

TEST_F(Positions, RegistersAreWritten) {
  table->AddNumReg(NUMREG_INT, 1, 1);
  const auto item = table->AddPosReg(POSREG, 1, 5, 6);
  RUN(item->SetValueJoint(6, nine, 2, 3));
  RUN(item->SetValueJoint(7, std::array{1.5F, 2.5F, 3.5F, 4.5F, 5.5F, 6.5F}, 0, 0));
  RUN(item->SetValueJoint(5, ArrayView<const float>(nine.data(), -5, -5), 0, 0));
  RUN(item->SetValueJoint2(5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2));
  RUN(item->SetValueXyzwpr(5, nine, seven, 1, 2));
  RUN(item->SetValueXyzwpr2(6, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7, 1, 2));
  TRACED(item->SetValueJoint(5, nine, 1, 2));
  TRACED(item->SetValueXyzwpr(5, nine, seven, 1, 2));
  lower->On(DispId::WriteRJoint, -3);
  lower->On(DispId::WriteRXyzwpr, -3);
  TRACED(item->SetValueJoint(5, nine, 1, 2));
  TRACED(item->SetValueXyzwpr(5, nine, seven, 1, 2));
  RUN(item->SetValueJoint(5, nine, 1, 2));
  Say("bounds");
  RUN(item->SetValueJoint(5, ArrayView<const float>(nine.data(), 1, 9), 1, 2));
  RUN(item->SetValueJoint(5, {}, 1, 2));
  RUN(item->SetValueXyzwpr(5, ArrayView<const float>(nine.data(), 0, 4), seven, 1, 2));
  RUN(item->SetValueXyzwpr(5, nine, ArrayView<const std::int16_t>(seven.data(), 1, 7), 1, 2));
  RUN(item->SetValueXyzwpr(Max, nine, seven, 1, 2));
  item->Kill();
  RUN(item->SetValueJoint(5, nine, 1, 2));
  RUN(item->SetValueXyzwpr(5, nine, seven, 1, 2));
}

TEST_F(Positions, AWriteTellsWhatKeepsItFromTheController) {
  Core unconnected([this] { return lower; });
  const auto early = unconnected.DataTable()->AddPosReg(POSREG, 1, 1, 1);
  RUN(early->SetValueXyzwpr(1, nine, seven, 1, 2));
  const auto first = table->AddPosReg(POSREG, 1, 1, 1);
  const auto second = core.DataTable2()->AddPosReg(POSREG, 1, 1, 1);
  core.Disconnect();
  RUN(first->SetValueXyzwpr(1, nine, seven, 1, 2));
  RUN(second->SetValueXyzwpr(1, nine, seven, 1, 2));
  RUN(second->SetValueJoint(1, nine, 1, 2));
  Expect(R"(
early->SetValueXyzwpr(1, nine, seven, 1, 2) -> true
    calls 25 WriteRXyzwpr(I2 1, R4& 1 x9, I2 9, I2& 1 x7, I2 7, I2& 1 x1, I2& 2 x1)
    |[DataPosReg.SetValueXyzwpr] ID=6, Err not connected yet|
first->SetValueXyzwpr(1, nine, seven, 1, 2) -> false
    |[DataPosReg.SetValueXyzwpr] ID=7, Err Core is Nothing|
    |[DataPosReg.SetValueXyzwpr] ID=7, Err Me.Invalid|
second->SetValueXyzwpr(1, nine, seven, 1, 2) -> false
    |[DataPosReg.SetValueXyzwpr] ID=9, Err already disconnedted|
    |[DataPosReg.SetValueXyzwpr] ID=9, Err Object variable not set|
second->SetValueJoint(1, nine, 1, 2) -> false
    |[DataPosReg.SetValueJoint] ID=9, Err Object variable not set|
)");
}

TEST_F(Positions, CurrentPositionIsRead) {
  const auto item = table->AddCurPos(CURPOS, 2);
  RUN(item->Group());
  Refresh();
  TRACED(item->GetValue(xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  ShowAll();
  Forget();
  RUN(FlatXyzwpr(*item));
  RUN(FlatJoint(*item));
  ShowAll();
  RUN(item->GetValue(First(xyzwpr, 5), config, joint, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(xyzwpr, First(config, 7, 1), joint, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(xyzwpr, config, First(joint, 9, 1), UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(xyzwpr, config, First(joint, 1), UF, UT, ValidC, ValidJ));
  item->Kill();
  RUN(item->GetValue(xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  RUN(FlatJoint(*item));
}

TEST_F(Positions, AVariableIsReadAndWritten) {
  const auto item = table->AddSysVarPos(SYSVAR_POS, "$Name");
  RUN(item->SysVarName());
  Refresh();
  TRACED(item->GetValue(xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  ShowAll();
  TRACED(item->SetValueJoint(ArrayView<const float>(nine.data(), 0, 5), 1, 2));
  TRACED(item->SetValueXyzwpr(nine, seven, 1, 2));
  Forget();
  RUN(FlatXyzwpr(*item));
  RUN(FlatJoint(*item));
  ShowAll();
  Say("a read does not test its arrays");
  Forget();
  RUN(item->GetValue(First(xyzwpr, 9, 1), First(config, 1), {}, UF, UT, ValidC, ValidJ));
  RUN(item->GetValue(xyzwpr, config, First(joint, 1), UF, UT, ValidC, ValidJ));
  ShowAll();
  RUN(item->SetValueJoint2(1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2));
  RUN(item->SetValueXyzwpr2(1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7, 1, 2));
  RUN(item->SetValueJoint(ArrayView<const float>(nine.data(), 1, 9), 1, 2));
  RUN(item->SetValueXyzwpr(ArrayView<const float>(nine.data(), 0, 4), seven, 1, 2));
  RUN(item->SetValueXyzwpr(nine, ArrayView<const std::int16_t>(seven.data(), 0, 5), 1, 2));
  lower->On(DispId::WriteRJoint, -3);
  lower->On(DispId::WriteRXyzwpr, -3);
  RUN(item->SetValueJoint(nine, 1, 2));
  RUN(item->SetValueXyzwpr(nine, seven, 1, 2));
  item->Kill();
  RUN(item->GetValue(xyzwpr, config, joint, UF, UT, ValidC, ValidJ));
  RUN(item->SetValueJoint(nine, 1, 2));
  RUN(item->SetValueXyzwpr(nine, seven, 1, 2));
}

TEST_F(Positions, CartesianRegistersAreStagedAndSentAtOnce) {
  std::vector<float> floats;
  lower->On(DispId::WriteRXyzwprConfig, [&](auto arguments) {
    floats.assign(arguments[2].as.r4Ref,
                  arguments[2].as.r4Ref + arguments[1].as.i2 * arguments[3].as.i2);
    return Long(0);
  });
  const auto item = table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 4);
  RUN(item->Update());
  TRACED(item->SetValueXyzwpr(3, nine, seven));
  TRACED(item->SetValueXyzwpr2(2, 11, 12, 13, 14, 15, 16, 17, 18, 19, 1, 2, 3, 4, 5, 6, 7));
  TRACED(item->Update());
  SHOW(floats);
  RUN(item->Update());
  Say("a longer array runs on; one that runs past the end leaves what fits, and the range widened");
  std::array<float, 12> twelve{21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32};
  std::array<std::int16_t, 8> eight{1, 2, 3, 4, 5, 6, 7, 8};
  RUN(item->SetValueXyzwpr(1, twelve, eight));
  RUN(item->SetValueXyzwpr(4, twelve, seven));
  RUN(item->SetValueXyzwpr(4, nine, eight));
  RUN(item->Update());
  SHOW(floats);
  Say("a reset leaves the last floats, two for each register in number");
  RUN(item->SetValueXyzwpr(4, ArrayView<const float>(nine.data(), -2, 3), seven));
  RUN(item->Update());
  SHOW(floats);
  Say("refused: what is staged stays");
  item->SetValueXyzwpr(1, nine, seven);
  lower->On(DispId::WriteRXyzwprConfig, -6);
  RUN(item->Update());
  lower->On(DispId::WriteRXyzwprConfig, 1);
  RUN(item->Update());
  item->SetValueXyzwpr(1, nine, seven);
  item->SetValueXyzwpr(2, nine, seven);
  RUN(item->Update());
  item->SetValueXyzwpr(1, nine, seven);
  RUN(item->Reset());
  RUN(item->Update());
  Say("bounds and range");
  RUN(item->SetValueXyzwpr(1, ArrayView<const float>(nine.data(), 0, 4), seven));
  RUN(item->SetValueXyzwpr(1, nine, ArrayView<const std::int16_t>(seven.data(), 0, 5)));
  RUN(item->SetValueXyzwpr(0, nine, seven));
  RUN(item->SetValueXyzwpr(5, nine, seven));
  core.Disconnect();
  RUN(item->SetValueXyzwpr(1, nine, seven));
  RUN(item->Update());
}

TEST_F(Positions, ABlockOfTheWholeAreaIsStagedToItsLastWord) {
  const auto cartesian = table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 655);
  RUN(cartesian->SetValueXyzwpr(655, nine, seven));
  RUN(cartesian->Update());
  for (const std::int32_t last : {1, 2}) {  // the group of the last words: cartesian, or joint
    table->Clear();
    const auto item = table->AddPosRegMG(POSREGMG, last == 1 ? "J9,C" : "C,J9", 1, 381);
    RUN(item->SetValueJoint(381, last, nine));
    RUN(item->SetValueXyzwpr(381, 3 - last, nine, seven));
    RUN(item->Update());
    SHOW(words);
  }
}

class MultiGroup : public Positions {
 protected:
  template <class Out>
  bool Joint(std::int32_t index, std::int32_t group, Out& j) {
    return item->GetValueJoint(index, group, j[0], j[1], j[2], j[3], j[4], j[5], j[6], j[7], j[8]);
  }
  bool Xyzwpr(std::int32_t index, std::int32_t group) {
    auto& x = xyzwpr;
    auto& c = config;
    return item->GetValueXyzwpr(index, group, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8],
                                c[0], c[1], c[2], c[3], c[4], c[5], c[6]);
  }
  bool Joint2(std::int32_t group) {
    return item->SetValueJoint2(1, group, 1, 2, 3, 4, 5, 6, 7, 8, 9);
  }

  std::shared_ptr<DataPosRegMG> item = table->AddPosRegMG(POSREGMG, "J6,C,J1", 1, 2);
};

TEST_F(MultiGroup, IsRead) {
  RUN(item->GroupCount());
  Refresh();
  TRACED(Joint(2, 1, joint));
  TRACED(Xyzwpr(2, 2));
  ShowAll();
  Say("what the group or the index forbids");
  RUN(Joint(1, 0, joint));
  RUN(Joint(1, 4, joint));
  RUN(Joint(1, 2, joint));
  RUN(Xyzwpr(1, 1));
  RUN(Joint(3, 1, joint));
  RUN(Xyzwpr(0, 2));
  Say("what cannot be decoded: before the last axis it is passed over");
  int reads = 0;
  for (const int failing : {5, 6, 9}) {
    reads = 0;
    lower->On(DispId::ShortToFloat, [&](auto) {
      if (++reads == failing) throw Fault("broken");
      return Real(static_cast<float>(reads));
    });
    RUN(Joint(1, 1, joint));
    SHOW(joint);
    reads = 0;
    RUN(Xyzwpr(1, 2));
  }
  lower->Throw(DispId::ShortToFloat, "broken");
  RUN(Joint(1, 3, joint));
  const auto four = table->AddPosRegMG(POSREGMG, "J4", 1, 1);
  RUN(four->GetValueJoint(1, 1, joint[0], joint[1], joint[2], joint[3], joint[4], joint[5],
                          joint[6], joint[7], joint[8]));
  item->Kill();
  RUN(Joint(1, 1, joint));
  RUN(Xyzwpr(1, 2));
}

TEST_F(MultiGroup, IsStagedAndSentAsOneBlock) {
  const std::array<float, 6> six{1, 2, 3, 4, 5, 6};
  TRACED(item->SetValueJoint(2, 1, six));
  TRACED(item->SetValueXyzwpr(1, 2, nine, seven));
  TRACED(item->Update());
  SHOW(words);
  RUN(item->Update());
  SHOW(words);
  RUN(Joint2(1));
  RUN(Joint2(3));
  RUN(item->SetValueXyzwpr2(2, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7));
  lower->On(DispId::WriteRShort, -8);
  RUN(item->Update());
  lower->On(DispId::WriteRShort, 0);
  RUN(item->Reset());
  Say("what the group, the number of values, the bounds or the index forbids");
  RUN(item->SetValueJoint(1, 0, six));
  RUN(item->SetValueJoint(1, 2, six));
  RUN(item->SetValueJoint(1, 1, nine));
  RUN(item->SetValueJoint(3, 1, six));
  RUN(Joint2(2));
  RUN(Joint2(4));
  RUN(item->SetValueXyzwpr(1, 4, nine, seven));
  RUN(item->SetValueXyzwpr(1, 1, nine, seven));
  RUN(item->SetValueXyzwpr(1, 2, ArrayView<const float>(nine.data(), 0, 4), seven));
  RUN(item->SetValueXyzwpr(1, 2, nine, ArrayView<const std::int16_t>(seven.data(), 1, 7)));
  RUN(item->SetValueXyzwpr(0, 2, nine, seven));
  Say("past the end of a block that a negative axis count cuts short");
  const auto cut = table->AddPosRegMG(POSREGMG, "C,J-2", 1, 1);
  RUN(cut->SetValueXyzwpr(1, 1, std::array<float, 12>{}, seven));
  RUN(cut->SetValueXyzwpr(1, 1, nine, seven));
  RUN(cut->SetValueJoint2(1, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9));
  core.Disconnect();
  RUN(item->SetValueJoint(1, 1, six));
  RUN(item->Update());
}

}  // namespace
}  // namespace orif::test

#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

using Longs = std::vector<std::int32_t>;
using Reals = std::vector<float>;

class NumReg : public TableTranscript {
 protected:
  NumReg() {
    longs = table->AddNumReg(NUMREG_INT, 1, 10);
    reals = table->AddNumReg(NUMREG_REAL, 5, 6);
    lower->On(DispId::ReadRShort, 1);
    lower->On(DispId::LastErrorText, [](auto) { return Text("no way"); });
  }

  void Refuse() {
    lower->On(DispId::WriteRLong, -4);
    lower->On(DispId::WriteRFloat, -4);
  }

  std::shared_ptr<DataNumReg> longs;  // ID 4
  std::shared_ptr<DataNumReg> reals;  // ID 5
  Variant value = "untouched";
};

TEST_F(NumReg, Reads) {
  Say("before any refresh, and outside the range");
  RUN(longs->GetValue(1, value));
  RUN(reals->GetValue(5, value));
  RUN(longs->GetValue(0, value));
  RUN(reals->GetValue(7, value));
  SHOW(value);
  Say("traced, after a refresh");
  core.DebugLog(true);
  table->Refresh();
  lower->On(DispId::ShortToLong, 70000);
  lower->On(DispId::ShortToFloat, [](auto) { return Real(1.5F); });
  RUN(longs->GetValue(10, value));
  SHOW(value);
  RUN(reals->GetValue(5, value));
  SHOW(value);
  Say("killed");
  longs->Kill();
  RUN(longs->GetValue(1, value));
}

TEST_F(NumReg, WritesOneRegister) {
  RUN(longs->SetValue(10, 2.5));
  RUN(longs->SetValue(1, "-7"));
  RUN(longs->SetValue(2, true));
  RUN(reals->SetValue(6, "2.25"));
  Say("traced; any status that is not negative is success");
  lower->On(DispId::WriteRLong, 1);
  TRACED(longs->SetValue(3, 5));
  Say("what it cannot write");
  RUN(longs->SetValue(11, 1));
  RUN(longs->SetValue(1, "seven"));
  RUN(longs->SetValue(1, 2147483648.0));
  RUN(reals->SetValue(5, 1e39));
  RUN(reals->SetValue(5, Reals{1}));
  Say("what the controller refuses");
  Refuse();
  RUN(longs->SetValue(1, 1));
  RUN(reals->SetValue(5, 1));
}

TEST_F(NumReg, WritesARunFromAVariant) {
  TRACED(longs->SetValues(9, Variant(Longs{7, 8, 9}, -5), 2));
  TRACED(reals->SetValues(5, Variant(Reals{0.5F, 1}), 2));
  Say("out of range, too short, or not such an array");
  RUN(longs->SetValues(10, Longs{1, 2}, 2));
  RUN(longs->SetValues(0, Longs{1, 2}, 2));
  RUN(longs->SetValues(1, Longs{1, 2}, 3));
  RUN(longs->SetValues(1, Longs{1, 2}, 0));
  RUN(longs->SetValues(Max, Longs{1, 2}, 2));
  RUN(reals->SetValues(5, Longs{1, 2}, 1));
  RUN(longs->SetValues(1, 5, 1));
  Refuse();
  RUN(longs->SetValues(1, Longs{1, 2}, 2));
}

TEST_F(NumReg, WritesARunFromTheCallersArray) {
  const std::array<std::int32_t, 3> ints{7, 8, 9};
  const std::array<float, 2> floats{0.5F, 1};
  TRACED(longs->SetValuesInt(8, ints, 3));
  TRACED(reals->SetValuesReal(5, floats, 1));
  Refuse();
  RUN(longs->SetValuesInt(9, ints, 3));
  RUN(longs->SetValuesInt(1, ints, 4));
  RUN(longs->SetValuesInt(1, {}, 0));
  RUN(longs->SetValuesReal(1, floats, 2));
  RUN(reals->SetValuesInt(5, ints, 1));
  Say("a negative count is the lower layer's to refuse");
  RUN(longs->SetValuesInt(1, ints, -3));
}

TEST_F(NumReg, AFaultInATextEndsTheMember) {
  Say("a value that has no text, and a sum that does not fit: before the index is looked at");
  TRACED(longs->SetValue(0, Longs{1}));
  TRACED(reals->SetValues(Max, Reals{1}, 1));
  RUN(longs->SetValue(0, Longs{1}));
  Say("a refusal whose text cannot be had");
  Refuse();
  lower->Throw(DispId::LastErrorText, "gone");
  RUN(longs->SetValue(1, 1));
  RUN(reals->SetValues(5, Reals{1}, 1));
  RUN(longs->SetValuesInt(1, Longs{1}, 1));
}

TEST_F(NumReg, AWriteThatReachedTheRobotIsNotReportedAsFailed) {
  lower->On(DispId::WriteRLong, [this](auto) {
    table->Kill();  // the item loses its Core half-way
    return Long(0);
  });
  TRACED(longs->SetValue(1, 1));
  Expect(R"(
longs->SetValue(1, 1) -> true
    calls 17 WriteRLong(I2 1, I4& 1 x1, I2 1)
    |[DataNumReg.SetValue] ID=4, Enter R[1], 1|
)");
}

TEST_F(NumReg, AnItemThatIsDroppedByItsOwnCallStaysUntilItReturns) {
  core.DebugLog(true);
  table->Refresh();
  DataNumReg* written = longs.get();
  lower->On(DispId::WriteRLong, [this](auto) {
    table->Clear();
    longs.reset();
    return Long(0);
  });
  RUN(written->SetValue(1, 1));
  reals = table->AddNumReg(NUMREG_REAL, 1, 1);
  table->Refresh();
  DataNumReg* read = reals.get();
  lower->On(DispId::ShortToFloat, [this](auto) {
    table->Clear();
    reals.reset();
    return Real(2);
  });
  RUN(read->GetValue(1, value));
}

TEST_F(NumReg, SharesTheContractOfAllItems) {
  RUN(reals->DataType());
  RUN(reals->StartIndex());
  RUN(reals->EndIndex());
  EXPECT_EQ(longs->DataTable(), table);
  core.DebugLog(true);
  RUN(longs->GetTypeName());
  RUN(reals->AddUserMessage("hello"));
  RUN(longs->Kill());
  RUN(longs->Valid());
  RUN(longs->DebugLog());
  RUN(table->Count());
  table->Kill();
  RUN(longs->DebugLog());
  RUN(longs->AddUserMessage("unheard"));
}

}  // namespace
}  // namespace orif::test

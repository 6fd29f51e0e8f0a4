#include "tests/support/RecordedCore.h"

namespace orif::test {
namespace {

class NumReg : public RecordedCore {
 protected:
  NumReg() {
    core.Connect("robot");
    table = core.DataTable();
    longs = table->AddNumReg(NUMREG_INT, 1, 10);
    reals = table->AddNumReg(NUMREG_REAL, 5, 6);
    lower->On(DispId::ReadRShort, 1);
    lower->On(DispId::LastErrorText, [](auto) { return Text("no way"); });
    lower->Calls();
  }

  void Refuse() {
    lower->On(DispId::WriteRLong, -4);
    lower->On(DispId::WriteRFloat, -4);
  }

  std::shared_ptr<DataTable> table;   // ID 3
  std::shared_ptr<DataNumReg> longs;  // ID 4
  std::shared_ptr<DataNumReg> reals;  // ID 5
  Variant value = "untouched";
};

TEST_F(NumReg, DecodesItsOwnWords) {
  core.DebugLog(true);
  ASSERT_TRUE(table->Refresh());
  lower->Calls();
  lower->On(DispId::ShortToLong,
            [](auto arguments) { return Long(arguments[0].as.i2Ref[0] + 70000); });
  lower->On(DispId::ShortToFloat, [](auto) { return Real(1.5F); });
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(longs->GetValue(10, value)); }),
            (Lines{"[DataNumReg.GetValue] ID=4, Enter ", "[DataNumReg.GetValue] ID=4, Return "}));
  EXPECT_EQ(value, Variant(70000));
  EXPECT_TRUE(reals->GetValue(5, value));
  EXPECT_EQ(value, Variant(1.5F));
  EXPECT_EQ(lower->Calls(), (Calls{"57(I2& 0 x2)", "58(I2& 0 x2)"}));
}

TEST_F(NumReg, RefusesWhatItCannotRead) {
  EXPECT_EQ(Trail([&] {
              EXPECT_FALSE(longs->GetValue(1, value));  // before any refresh
              EXPECT_FALSE(reals->GetValue(5, value));
              EXPECT_FALSE(longs->GetValue(0, value));
              EXPECT_FALSE(reals->GetValue(7, value));
            }),
            (Lines{"[DataNumReg.GetValue] ID=4, Err GetLastDataLong ",
                   "[DataNumReg.GetValue] ID=5, Err GetLastDataFloat ",
                   "[DataNumReg.GetValue] ID=4, Err invalid index ",
                   "[DataNumReg.GetValue] ID=5, Err invalid index "}));
  table->Refresh();
  longs->Kill();
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(longs->GetValue(1, value)); }),
            (Lines{"[DataNumReg.GetValue] ID=4, Err invalid index "}));
  EXPECT_EQ(value, Variant("untouched"));
}

TEST_F(NumReg, WritesOneRegister) {
  EXPECT_TRUE(longs->SetValue(10, 2.5));
  EXPECT_TRUE(longs->SetValue(1, "-7"));
  EXPECT_TRUE(longs->SetValue(2, true));
  EXPECT_TRUE(reals->SetValue(6, "2.25"));
  EXPECT_EQ(lower->Calls(), (Calls{"17(I2 19, I4& 2 x1, I2 1)", "17(I2 1, I4& -7 x1, I2 1)",
                                   "17(I2 3, I4& -1 x1, I2 1)", "21(I2 23, R4& 2.25 x1, I2 1)"}));
  lower->On(DispId::WriteRLong, 1);  // any status that is not negative is success
  core.DebugLog(true);
  EXPECT_EQ(
      Trail([&] { EXPECT_TRUE(longs->SetValue(3, 5)); }),
      (Lines{"[DataNumReg.SetValue] ID=4, Enter R[3], 5", "[DataNumReg.SetValue] ID=4, Return "}));
}

TEST_F(NumReg, RefusesWhatItCannotWrite) {
  EXPECT_EQ(
      Trail([&] {
        EXPECT_FALSE(longs->SetValue(11, 1));
        EXPECT_FALSE(longs->SetValue(1, "seven"));
        EXPECT_FALSE(longs->SetValue(1, 2147483648.0));
        EXPECT_FALSE(reals->SetValue(5, 1e39));
        EXPECT_FALSE(reals->SetValue(5, std::vector<float>{1}));
      }),
      (Lines{"[DataNumReg.SetValue] ID=4, Err invalid index ",
             "[DataNumReg.SetValue] ID=4, Err Type mismatch",
             "[DataNumReg.SetValue] ID=4, Err Overflow", "[DataNumReg.SetValue] ID=5, Err Overflow",
             "[DataNumReg.SetValue] ID=5, Err Type mismatch"}));
  EXPECT_EQ(lower->Calls(), Calls{});
  Refuse();
  EXPECT_EQ(
      Trail([&] {
        EXPECT_FALSE(longs->SetValue(1, 1));
        EXPECT_FALSE(reals->SetValue(5, 1));
      }),
      (Lines{"[DataNumReg.SetValue] ID=4, Err WriteRLong -4", "[DataNumReg.SetValue] ID=4, no way",
             "[DataNumReg.SetValue] ID=5, Err WriteRFloat -4",
             "[DataNumReg.SetValue] ID=5, no way"}));
}

TEST_F(NumReg, WritesARunFromAVariant) {
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] {
              EXPECT_TRUE(longs->SetValues(9, Variant(std::vector<std::int32_t>{7, 8, 9}, -5), 2));
            }),
            (Lines{"[DataNumReg.SetValues] ID=4, Enter R[9 - 11]",
                   "[DataNumReg.SetValues] ID=4, 7: 8: ", "[DataNumReg.SetValues] ID=4, Return "}));
  EXPECT_TRUE(reals->SetValues(5, Variant(std::vector<float>{0.5F, 1}), 2));
  EXPECT_EQ(lower->Calls(), (Calls{"17(I2 17, I4& 7 x2, I2 2)", "21(I2 21, R4& 0.5 x2, I2 2)"}));
  core.DebugLog(false);
  const Variant two(std::vector<std::int32_t>{1, 2});
  constexpr std::int32_t Max = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(Trail([&] {
              EXPECT_FALSE(longs->SetValues(10, two, 2));
              EXPECT_FALSE(longs->SetValues(0, two, 2));
              EXPECT_FALSE(longs->SetValues(1, two, 3));  // too short
              EXPECT_FALSE(longs->SetValues(1, two, 0));
              EXPECT_FALSE(longs->SetValues(Max, two, 2));
              EXPECT_FALSE(reals->SetValues(5, two, 1));  // integers for reals
              EXPECT_FALSE(longs->SetValues(1, 5, 1));    // no array
            }),
            (Lines{"[DataNumReg.SetValues] ID=4, Err invalid index ",
                   "[DataNumReg.SetValues] ID=4, Err invalid index ",
                   "[DataNumReg.SetValues] ID=4, Err Subscript out of range",
                   "[DataNumReg.SetValues] ID=4, Err Subscript out of range",
                   "[DataNumReg.SetValues] ID=4, Err Overflow",
                   "[DataNumReg.SetValues] ID=5, Err Type mismatch",
                   "[DataNumReg.SetValues] ID=4, Err Type mismatch"}));
  EXPECT_EQ(lower->Calls(), Calls{});
  Refuse();
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(longs->SetValues(1, two, 2)); }),
            (Lines{"[DataNumReg.SetValues] ID=4, Err WriteRLong -4",
                   "[DataNumReg.SetValues] ID=4, no way"}));
}

TEST_F(NumReg, WritesARunFromTheCallersArray) {
  const std::array<std::int32_t, 3> ints{7, 8, 9};
  const std::array<float, 2> floats{0.5F, 1};
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] {
              EXPECT_TRUE(longs->SetValuesInt(8, ints, 3));
              EXPECT_TRUE(reals->SetValuesReal(5, floats, 1));
            }),
            (Lines{"[DataNumReg.SetValuesInt] ID=4, Enter R[8 - 11], ",
                   "[DataNumReg.SetValuesInt] ID=4, Return ",
                   "[DataNumReg.SetValuesReal] ID=5, Enter R[5 - 6], ",
                   "[DataNumReg.SetValuesReal] ID=5, Return "}));
  EXPECT_EQ(lower->Calls(), (Calls{"17(I2 15, I4& 7 x3, I2 3)", "21(I2 21, R4& 0.5 x2, I2 1)"}));
  core.DebugLog(false);
  Refuse();
  EXPECT_EQ(Trail([&] {
              EXPECT_FALSE(longs->SetValuesInt(9, ints, 3));
              EXPECT_FALSE(longs->SetValuesInt(1, ints, 4));
              EXPECT_FALSE(longs->SetValuesInt(1, {}, 0));
              EXPECT_FALSE(longs->SetValuesReal(1, floats, 2));
              EXPECT_FALSE(reals->SetValuesInt(5, ints, 1));
              EXPECT_FALSE(longs->SetValuesInt(1, ints, -3));  // the lower layer's to refuse
            }),
            (Lines{"[DataNumReg.SetValuesInt] ID=4, Err invalid index ",
                   "[DataNumReg.SetValuesInt] ID=4, Err Subscript out of range",
                   "[DataNumReg.SetValuesInt] ID=4, Err Subscript out of range",
                   "[DataNumReg.SetValuesReal] ID=4, Err invalid type",
                   "[DataNumReg.SetValuesInt] ID=5, Err invalid type",
                   "[DataNumReg.SetValuesInt] ID=4, Err WriteRLong -4",
                   "[DataNumReg.SetValuesInt] ID=4, no way"}));
  EXPECT_EQ(lower->Calls(), (Calls{"17(I2 1, I4& 7 x3, I2 -3)", "get 64"}));
}

TEST_F(NumReg, AWriteThatReachedTheRobotIsNotReportedAsFailed) {
  lower->On(DispId::WriteRLong, [this](auto) {
    table->Kill();  // the item loses its Core half-way
    return Long(0);
  });
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(longs->SetValue(1, 1)); }),
            (Lines{"[DataNumReg.SetValue] ID=4, Enter R[1], 1"}));
}

TEST_F(NumReg, ItemsShareTheirContract) {
  EXPECT_EQ(longs->DataType(), NUMREG_INT);
  EXPECT_EQ(reals->DataType(), NUMREG_REAL);
  EXPECT_EQ(reals->StartIndex(), 5);
  EXPECT_EQ(reals->EndIndex(), 6);
  EXPECT_EQ(longs->DataTable(), table);
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] {
              EXPECT_EQ(longs->GetTypeName(), "DataNumReg");
              reals->AddUserMessage("hello");
            }),
            (Lines{"[DataNumReg.GetTypeName] ID=4, DataNumReg",
                   "[DataNumReg.AddUserMessage] ID=5, hello"}));
  longs->Kill();
  EXPECT_FALSE(longs->Valid());
  EXPECT_EQ(table->Count(), 2);
  EXPECT_TRUE(longs->DebugLog());
  table->Kill();
  EXPECT_FALSE(longs->DebugLog());
  EXPECT_EQ(Trail([&] { longs->AddUserMessage("unheard"); }), Lines{});
}

}  // namespace
}  // namespace orif::test

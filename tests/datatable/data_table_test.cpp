#include <cstring>

#include "tests/support/RecordedCore.h"

namespace orif::test {
namespace {

constexpr std::int32_t Max = std::numeric_limits<std::int32_t>::max();

class Table : public RecordedCore {
 protected:
  Table() {
    core.Connect("robot");
    table = core.DataTable();
    lower->Calls();
  }

  std::shared_ptr<DataTable> table;  // ID 3
};

TEST_F(Table, RegistersAnItemInThreeSteps) {
  core.DebugLog(true);
  std::shared_ptr<DataNumReg> item;
  EXPECT_EQ(Trail([&] { item = table->AddNumReg(NUMREG_INT, 1, 10); }),
            (Lines{"[DataTable.AddNumReg] ID=3, Enter Type=0,StartIndex=1,EndIndex=10",
                   "[DataNumReg.Init] ID=4, Enter Type=0,StartIndex=1,EndIndex=10",
                   "[DataNumReg.Init] ID=4, Return ", "[DataNumReg.GetSetasg] ID=4, Enter ",
                   "[DataNumReg.GetSetasg] ID=4, Return "}));
  EXPECT_TRUE(item->Valid());
  EXPECT_TRUE(table->AddNumReg(NUMREG_REAL, 5, 6));
  EXPECT_TRUE(table->AddNumReg(NUMREG_INT, 3, 3));
  EXPECT_EQ(lower->Calls(), (Calls{"13(text& SETASG 1 20 R[1] 1.0)", "13(text& SETASG 21 4 R[5] 0)",
                                   "13(text& SETASG 25 2 R[3] 1.0)"}));
  EXPECT_EQ(table->Count(), 3);
  EXPECT_EQ(core.mlngDataTableCount(), 3);
}

TEST_F(Table, ARefusedItemLeavesNothingBehind) {
  EXPECT_EQ(
      Trail([&] {
        EXPECT_EQ(table->AddNumReg(POSREG, 0, 0), nullptr);
        EXPECT_EQ(table->AddNumReg(NUMREG_INT, 0, 5), nullptr);
        EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 0), nullptr);
        EXPECT_EQ(table->AddNumReg(NUMREG_INT, 6, 5), nullptr);
        EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, Max), nullptr);
      }),
      (Lines{"[DataNumReg.Init] ID=4, Err invalid type ", "[DataTable.AddNumReg] ID=3, DataInit",
             "[DataNumReg.Init] ID=5, Err invalid index ", "[DataTable.AddNumReg] ID=3, DataInit",
             "[DataNumReg.Init] ID=6, Err invalid index ", "[DataTable.AddNumReg] ID=3, DataInit",
             "[DataNumReg.Init] ID=7, Err invalid index ", "[DataTable.AddNumReg] ID=3, DataInit",
             "[DataNumReg.GetSetasg] ID=8, Err Overflow",
             "[DataTable.AddNumReg] ID=3, Err invalid asg"}));
  EXPECT_EQ(lower->Calls(), Calls{});
  lower->On(DispId::SetRAssignment, 7);
  core.DebugLog(true);
  EXPECT_EQ(
      Trail([&] { EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 1), nullptr); }),
      (Lines{"[DataTable.AddNumReg] ID=3, Enter Type=0,StartIndex=1,EndIndex=1",
             "[DataNumReg.Init] ID=9, Enter Type=0,StartIndex=1,EndIndex=1",
             "[DataNumReg.Init] ID=9, Return ", "[DataNumReg.GetSetasg] ID=9, Enter ",
             "[DataNumReg.GetSetasg] ID=9, Return ",
             "[DataTable.mblnAssign] ID=3, Err SetRAssignment 7",
             "[DataTable.AddNumReg] ID=3, Err assign", "[DataNumReg.Class_Terminate] ID=9, Enter",
             "[DataNumReg.Class_Terminate] ID=9, Return"}));
  core.DebugLog(false);
  lower->Throw(DispId::SetRAssignment, "broken");
  EXPECT_EQ(Trail([&] { EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 1), nullptr); }),
            (Lines{"[DataTable.AddNumReg] ID=3, Err assign"}));
  EXPECT_EQ(table->Count(), 0);
  lower->Calls();
  lower->On(DispId::SetRAssignment, 0);
  EXPECT_TRUE(table->AddNumReg(NUMREG_INT, 2, 2));
  EXPECT_EQ(lower->Calls(), (Calls{"13(text& SETASG 1 2 R[2] 1.0)"}));
}

TEST_F(Table, TheAreaEndsAtWord16383OverBothTables) {
  ASSERT_TRUE(table->AddNumReg(NUMREG_INT, 1, 8181));  // 16362 words: the next one is 16363
  const auto table2 = core.DataTable2();
  EXPECT_EQ(
      Trail([&] { EXPECT_EQ(table2->AddNumReg(NUMREG_INT, 1, 11), nullptr); }),
      (Lines{"[DataTable.mblnAssign] ID=5, Out of max", "[DataTable.AddNumReg] ID=5, Err assign"}));
  lower->Calls();
  EXPECT_TRUE(table2->AddNumReg(NUMREG_INT, 1, 10));  // words 16363 to 16382
  EXPECT_EQ(table2->AddNumReg(NUMREG_INT, 1, 1), nullptr);
  EXPECT_EQ(lower->Calls(), (Calls{"13(text& SETASG 16363 20 R[1] 1.0)"}));
}

TEST_F(Table, ASecondTableFixesTheFirstUntilEitherIsCleared) {
  table->AddNumReg(NUMREG_INT, 1, 2);
  for (const bool clearSecond : {false, true}) {
    const auto table2 = core.DataTable2();
    ASSERT_TRUE(table2->AddNumReg(NUMREG_INT, 1, 1));
    EXPECT_TRUE(table->Fixed());
    EXPECT_EQ(Trail([&] { EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 1), nullptr); }), Lines{});
    lower->Calls();
    EXPECT_TRUE((clearSecond ? table2 : table)->Clear());
    EXPECT_EQ(lower->Calls(), (Calls{"12"}));
    EXPECT_FALSE(table->Fixed());
    EXPECT_FALSE(table2->Valid());
    EXPECT_EQ(table2->Count(), 0);
    EXPECT_NE(core.DataTable2(), table2);
    EXPECT_TRUE(table->Clear());
    EXPECT_TRUE(table->AddNumReg(NUMREG_INT, 1, 1));
    EXPECT_EQ(lower->Calls().back(), "13(text& SETASG 1 2 R[1] 1.0)");
  }
}

TEST_F(Table, ClearTellsWhatItDoesAndReleasesItemsInOrder) {
  const auto kept = table->AddNumReg(NUMREG_INT, 1, 1);
  table->AddNumReg(NUMREG_INT, 2, 2);
  table->AddNumReg(NUMREG_INT, 3, 3);
  core.DebugLog(true);
  EXPECT_EQ(
      Trail([&] { EXPECT_TRUE(table->Clear()); }),
      (Lines{"[DataTable.Clear] ID=3, Enter", "[DataTable.Clear] ID=3, ClearRAssignment",
             "[DataTable.Clear] ID=3, Be invalid", "[DataNumReg.Class_Terminate] ID=5, Enter",
             "[DataNumReg.Class_Terminate] ID=5, Return",
             "[DataNumReg.Class_Terminate] ID=6, Enter",
             "[DataNumReg.Class_Terminate] ID=6, Return",
             "[DataTable.Clear] ID=3, Create New Collection", "[DataTable.Clear] ID=3, Return"}));
  EXPECT_FALSE(kept->Valid());
  // The second table loses its Core half-way through its own Clear, and its last reference with it.
  auto* table2 = core.DataTable2().get();
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(table2->Clear()); }).back(),
            "[DataTable.Clear] ID=7, Create New Collection");
}

TEST_F(Table, KillDetachesWithoutTellingTheController) {
  const auto item = table->AddNumReg(NUMREG_INT, 1, 1);
  lower->Calls();
  EXPECT_EQ(Trail([&] { table->Kill(); }), Lines{});
  EXPECT_EQ(lower->Calls(), Calls{});
  EXPECT_FALSE(table->Valid() || item->Valid());
  EXPECT_EQ(core.DataTable(), table);  // the first table stays the first table
  EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 1), nullptr);
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table->Refresh()); }),
            (Lines{"[DataTable.Refresh] ID=3, Err Me.Invalid "}));
}

TEST_F(Table, ItemTakesAPositionAndNothingElse) {
  const auto first = table->AddNumReg(NUMREG_INT, 1, 1);
  const auto second = table->AddNumReg(NUMREG_INT, 2, 2);
  EXPECT_EQ(table->Item(1), first);
  EXPECT_EQ(table->Item(2.4), second);
  for (const Variant& other :
       {Variant(0), Variant(3), Variant(-1), Variant("1"), Variant(), Variant(1e10), Variant(true),
        Variant(std::vector<std::int32_t>{1})}) {
    EXPECT_EQ(table->Item(other), nullptr);
  }
  core.DebugLog(true);
  EXPECT_EQ(
      Trail([&] {
        table->Item(1);
        table->Item("1");
      }),
      (Lines{"[DataTable.Item] ID=3, Enter Index=1", "[DataTable.Item] ID=3, Type is DataNumReg",
             "[DataTable.Item] ID=3, Return", "[DataTable.Item] ID=3, Enter Index=1",
             "[DataTable.Item] ID=3, Err Item is Nothing", "[DataTable.Item] ID=3, Return"}));
  EXPECT_EQ(
      Trail([&] {
        EXPECT_EQ(table->GetTypeName(), "DataTable");
        table->AddUserMessage("hello");
      }),
      (Lines{"[DataTable.GetTypename] ID=3, DataTable", "[DataTable.AddUserMessage] ID=3, hello"}));
}

TEST_F(Table, RefreshReadsAllWordsAtOnce) {
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table->Refresh()); }),
            (Lines{"[DataTable.Refresh] ID=3, Err Invalid NextAddr 1"}));
  table->AddNumReg(NUMREG_INT, 1, 10);
  const auto table2 = core.DataTable2();
  table2->AddNumReg(NUMREG_INT, 1, 3);
  lower->On(DispId::ReadRShort, 1);
  lower->Calls();
  core.DebugLog(true);
  EXPECT_EQ(Trail([&] { EXPECT_TRUE(table->Refresh()); }),
            (Lines{"[DataTable.Refresh] ID=3, Enter ", "[DataTable.Refresh] ID=3, Return #ms"}));
  EXPECT_TRUE(table2->Refresh());
  EXPECT_EQ(lower->Calls(), (Calls{"56(I2 1, I2& 0 x20, I2 20)", "56(I2 21, I2& 0 x6, I2 6)"}));
  lower->On(DispId::ReadRShort, 0);
  lower->On(DispId::LastErrorText, [](auto) { return Text("timed out"); });
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table->Refresh()); }),
            (Lines{"[DataTable.Refresh] ID=3, Enter ", "[DataTable.Refresh] ID=3, Err ReadRShort 0",
                   "[DataTable.Refresh] ID=3, timed out", "[DataTable.Refresh] ID=3, Return #ms"}));
  core.DebugLog(false);
  lower->Throw(DispId::ReadRShort, "broken");
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table->Refresh()); }),
            (Lines{"[DataTable.Refresh] ID=3, Err broken"}));
}

TEST_F(Table, AnEmptySecondTableLeavesTheAnswerToTheLowerLayer) {
  table->AddNumReg(NUMREG_INT, 1, 1);
  const auto table2 = core.DataTable2();
  lower->Calls();
  EXPECT_FALSE(table2->Refresh());
  EXPECT_EQ(lower->Calls(), (Calls{"56(I2 3, I2& 0 x1, I2 0)", "get 64"}));
}

TEST_F(Table, DecodesARealOfTheLastRefreshOnly) {
  table->AddNumReg(NUMREG_REAL, 1, 2);
  float value = -1;
  EXPECT_EQ(Trail([&] { EXPECT_FALSE(table->GetLastDataFloat(1, value)); }), Lines{});
  lower->On(DispId::ReadRShort, [](auto arguments) {
    const float values[] = {1.5F, -2.25F};
    std::memcpy(arguments[1].as.i2Ref, values, sizeof values);
    return Long(4);
  });
  lower->On(DispId::ShortToFloat, [](auto arguments) {
    float real = 0;
    std::memcpy(&real, arguments[0].as.i2Ref, sizeof real);
    return Real(real);
  });
  ASSERT_TRUE(table->Refresh());
  EXPECT_TRUE(table->GetLastDataFloat(3, value));
  EXPECT_EQ(value, -2.25F);
  EXPECT_TRUE(table->GetLastDataFloat(16384, value));  // the last pair of words of the buffer
  EXPECT_EQ(value, 0);
  value = -1;
  EXPECT_EQ(Trail([&] {
              for (const std::int32_t address : {0, -1, 16385, Max, -Max - 1}) {
                EXPECT_FALSE(table->GetLastDataFloat(address, value)) << address;
              }
              lower->Throw(DispId::ShortToFloat, "broken");
              EXPECT_FALSE(table->GetLastDataFloat(1, value));
              lower->On(DispId::ShortToFloat, [](auto) { return Text("many"); });
              EXPECT_FALSE(table->GetLastDataFloat(1, value));
            }),
            Lines{});
  EXPECT_EQ(value, -1);
  // A table that is cleared and filled again still has the refresh of before.
  lower->On(DispId::ShortToFloat, [](auto) { return Real(3); });
  table->Clear();
  EXPECT_TRUE(table->AddNumReg(NUMREG_REAL, 1, 1));
  EXPECT_TRUE(table->GetLastDataFloat(1, value));
  lower->On(DispId::ReadRShort, -1);
  EXPECT_FALSE(table->Refresh());
  EXPECT_FALSE(table->GetLastDataFloat(1, value));
}

}  // namespace
}  // namespace orif::test

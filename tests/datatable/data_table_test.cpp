#include <cstring>

#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

using Table = TableTranscript;

TEST_F(Table, RegistersAnItemInThreeSteps) {
  TRACED(table->AddNumReg(NUMREG_INT, 1, 10));
  RUN(table->AddNumReg(NUMREG_REAL, 5, 6));
  RUN(table->AddNumReg(NUMREG_INT, 3, 3));
  RUN(table->Count());
  RUN(core.mlngDataTableCount());
}

TEST_F(Table, ARefusedItemLeavesNothingBehind) {
  RUN(table->AddNumReg(POSREG, 0, 0));
  RUN(table->AddNumReg(NUMREG_INT, 0, 5));
  RUN(table->AddNumReg(NUMREG_INT, 1, 0));
  RUN(table->AddNumReg(NUMREG_INT, 6, 5));
  RUN(table->AddNumReg(NUMREG_INT, 1, Max));
  Say("refused by the controller, traced");
  lower->On(DispId::SetRAssignment, 7);
  TRACED(table->AddNumReg(NUMREG_INT, 1, 1));
  Say("a fault of the lower layer");
  lower->Throw(DispId::SetRAssignment, "broken");
  RUN(table->AddNumReg(NUMREG_INT, 1, 1));
  RUN(table->Count());
  lower->On(DispId::SetRAssignment, 0);
  RUN(table->AddNumReg(NUMREG_INT, 2, 2));
}

TEST_F(Table, AnItemIsThereOnceItsBlockIsAccepted) {
  table->AddNumReg(NUMREG_INT, 1, 1);
  std::function<void()> host;
  lower->On(DispId::SetRAssignment, [&host](auto) {
    if (const auto action = std::exchange(host, nullptr)) action();
    return Long(0);
  });
  Say("the host looks while it is assigned");
  std::int32_t count = 0;
  std::shared_ptr<DataItem> item;
  host = [&] { count = table->Count(), item = table->Item(2); };
  RUN(table->AddNumReg(NUMREG_INT, 2, 2));
  RUN(table->Item(2));
  SHOW(count);
  EXPECT_EQ(item, nullptr);
  Say("the host registers as many as there was room for");
  std::vector<std::shared_ptr<DataItem>> between;
  host = [&] {
    for (int i = 1; i <= 100; ++i) between.push_back(table->AddNumReg(NUMREG_INT, i, i));
  };
  const auto late = table->AddNumReg(NUMREG_INT, 3, 3);
  EXPECT_EQ(table->Item(102), between.back());
  EXPECT_EQ(table->Item(103), late);
  RUN(late->Valid());
  RUN(table->AddNumReg(NUMREG_INT, 4, 4));
  Say("the host clears the table, at its start or not, and registers again");
  for (const bool first : {false, true}) {
    if (first) table->Clear();
    host = [this] {
      table->Clear();
      table->AddNumReg(NUMREG_INT, 7, 7);
    };
    RUN(table->AddNumReg(NUMREG_INT, 5, 5));
    RUN(table->Count());
  }
  Say("the host ends the table");
  host = [this] { table->Kill(); };
  RUN(table->AddPosRegMG(POSREGMG, "C,C", 1, 1));
  RUN(table->Count());
}

TEST_F(Table, TheAreaEndsAtWord16383OverBothTables) {
  lower->On(DispId::ReadRShort, 1);
  Say("one table: a word too many, then all of them");
  RUN(table->AddNumReg(NUMREG_INT, 1, 8192));
  RUN(table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 655));
  RUN(table->AddNumReg(NUMREG_INT, 1, 4));
  RUN(table->AddNumReg(NUMREG_INT, 1, 1));
  RUN(table->Refresh());
  Say("a second table behind a full one has no words");
  RUN(core.DataTable2()->AddNumReg(NUMREG_INT, 1, 1));
  RUN(core.DataTable2()->Refresh());
  Say("the same words in two tables");
  table->Clear();
  RUN(table->AddNumReg(NUMREG_INT, 1, 4));
  const auto table2 = core.DataTable2();
  RUN(table2->AddNumReg(NUMREG_INT, 1, 8188));
  RUN(table2->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 655));
  RUN(table2->AddNumReg(NUMREG_INT, 1, 1));
  RUN(table->Refresh());
  RUN(table2->Refresh());
}

TEST_F(Table, ASecondTableFixesTheFirstUntilEitherIsCleared) {
  table->AddNumReg(NUMREG_INT, 1, 2);
  for (const bool clearSecond : {false, true}) {
    const auto table2 = core.DataTable2();
    RUN(table2->AddNumReg(NUMREG_INT, 1, 1));
    RUN(table->Fixed());
    RUN(table->AddNumReg(NUMREG_INT, 1, 1));
    RUN((clearSecond ? table2 : table)->Clear());
    RUN(table->Fixed());
    RUN(table2->Valid());
    EXPECT_NE(core.DataTable2(), table2);
    RUN(table->Clear());
    RUN(table->AddNumReg(NUMREG_INT, 1, 1));
  }
}

TEST_F(Table, ClearReleasesItemsInOrder) {
  const auto kept = table->AddNumReg(NUMREG_INT, 1, 1);
  table->AddNumReg(NUMREG_INT, 2, 2);
  table->AddNumReg(NUMREG_INT, 3, 3);
  core.DebugLog(true);
  RUN(table->Clear());
  RUN(kept->Valid());
}

TEST_F(Table, ATableIsKeptByItsOwnClear) {
  core.DebugLog(true);
  Say("the second table loses its Core half-way, and its last reference with it");
  auto* table2 = core.DataTable2().get();
  RUN(table2->Clear());
}

TEST_F(Table, KillDetachesWithoutTellingTheController) {
  const auto item = table->AddNumReg(NUMREG_INT, 1, 1);
  RUN(table->Kill());
  RUN(table->Valid());
  RUN(item->Valid());
  EXPECT_EQ(core.DataTable(), table);  // the first table stays the first table
  RUN(table->AddNumReg(NUMREG_INT, 1, 1));
  RUN(table->Refresh());
  RUN(table->Clear());
  Expect(R"(
table->Kill()
table->Valid() -> false
item->Valid() -> false
table->AddNumReg(NUMREG_INT, 1, 1) -> empty
table->Refresh() -> false
    |[DataTable.Refresh] ID=3, Err Me.Invalid |
table->Clear() -> true
)");
}

TEST_F(Table, ItemTakesAPositionAndNothingElse) {
  const auto first = table->AddNumReg(NUMREG_INT, 1, 1);
  const auto second = table->AddNumReg(NUMREG_INT, 2, 2);
  EXPECT_EQ(table->Item(1), first);
  EXPECT_EQ(table->Item(2.4), second);
  for (const Variant& other : {Variant(0), Variant(3), Variant(-1), Variant("1"), Variant(),
                               Variant(1e10), Variant(true), Variant(std::vector<float>{1})}) {
    EXPECT_EQ(table->Item(other), nullptr);
  }
  core.DebugLog(true);
  RUN(table->Item(1));
  RUN(table->Item("1"));
  RUN(table->GetTypeName());
  RUN(table->AddUserMessage("hello"));
  Say("an index that has no text");
  RUN(table->Item(std::vector<float>{1}));
}

TEST_F(Table, RefreshReadsAllWordsAtOnce) {
  RUN(table->Refresh());
  table->AddNumReg(NUMREG_INT, 1, 10);
  const auto table2 = core.DataTable2();
  Say("an empty second table leaves the answer to the lower layer");
  RUN(table2->Refresh());
  table2->AddNumReg(NUMREG_INT, 1, 3);
  lower->On(DispId::ReadRShort, 1);
  TRACED(table->Refresh());
  TRACED(table2->Refresh());
  lower->On(DispId::ReadRShort, 0);
  lower->On(DispId::LastErrorText, [](auto) { return Text("timed out"); });
  TRACED(table->Refresh());
  Say("a text that cannot be had, and a fault of the read itself");
  lower->Throw(DispId::LastErrorText, "gone");
  RUN(table->Refresh());
  lower->Throw(DispId::ReadRShort, "broken");
  RUN(table->Refresh());
}

TEST_F(Table, DecodesARealOfTheLastRefreshOnly) {
  table->AddNumReg(NUMREG_REAL, 1, 2);
  float value = -1;
  RUN(table->GetLastDataFloat(1, value));
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
  table->Refresh();
  RUN(table->GetLastDataFloat(3, value));
  SHOW(value);
  Say("the last pair of words of the buffer, and what is outside");
  RUN(table->GetLastDataFloat(16384, value));
  value = -1;
  RUN(table->GetLastDataFloat(16385, value));
  RUN(table->GetLastDataFloat(0, value));
  RUN(table->GetLastDataFloat(Max, value));
  RUN(table->GetLastDataFloat(-Max - 1, value));
  Say("what the lower layer cannot convert");
  lower->Throw(DispId::ShortToFloat, "broken");
  RUN(table->GetLastDataFloat(1, value));
  lower->On(DispId::ShortToFloat, [](auto) { return Text("many"); });
  RUN(table->GetLastDataFloat(1, value));
  SHOW(value);
  Say("a table that is cleared and filled again still has the refresh of before");
  lower->On(DispId::ShortToFloat, [](auto) { return Real(3); });
  table->Clear();
  RUN(table->AddNumReg(NUMREG_REAL, 1, 1));
  RUN(table->GetLastDataFloat(1, value));
  lower->On(DispId::ReadRShort, -1);
  table->Refresh();
  RUN(table->GetLastDataFloat(1, value));
}

using Kinds = RecordedCore;

// Clients of other languages know the kinds by their numbers alone.
TEST_F(Kinds, HaveNumbersThatTheirItemsTell) {
  const auto table = core.DataTable();
  table->AddNumReg(NUMREG_INT, 1, 1);
  table->AddNumReg(NUMREG_REAL, 1, 1);
  table->AddPosReg(POSREG, 1, 1, 1);
  table->AddCurPos(CURPOS, 1);
  table->AddTask(TASK, 1);
  table->AddSysVar(SYSVAR_INT, "$NAME");
  table->AddSysVar(SYSVAR_REAL, "$NAME");
  table->AddSysVarPos(SYSVAR_POS, "$NAME");
  table->AddSysVar(SYSVAR_STRING, "$NAME");
  for (const auto alarms : {ALARM_LIST, ALARM_CURRENT, ALARM_PASSWORD}) table->AddAlarm(alarms, 1);
  table->AddPosRegXyzwpr(POSREG_XYZWPR, 1, 1, 1);
  for (const auto text :
       {STRREG,      STRREG_COMMENT, NUMREG_COMMENT, POSREG_COMMENT, SDI_COMMENT,
        SDO_COMMENT, RDI_COMMENT,    RDO_COMMENT,    UI_COMMENT,     UO_COMMENT,
        SI_COMMENT,  SO_COMMENT,     WI_COMMENT,     WO_COMMENT,     WSI_COMMENT,
        WSO_COMMENT, GI_COMMENT,     GO_COMMENT,     AI_COMMENT,     AO_COMMENT}) {
    table->AddString(text, 1, 1);
  }
  for (const auto task : {TASK_IGNORE_MACRO, TASK_IGNORE_VELTO, TASK_IGNORE_MACRO_VELTO}) {
    table->AddTask(task, 1);
  }
  table->AddPosRegMG(POSREGMG, "C", 1, 1);
  ASSERT_EQ(table->Count(), 37);
  for (std::int32_t kind = 0; kind < 37; ++kind) {
    EXPECT_EQ(table->Item(kind + 1)->DataType(), kind);
  }
  EXPECT_EQ(table->AddStringEx(CURPOS, "XY[", 1, 1)->DataType(), 3);  // only kept
}

}  // namespace
}  // namespace orif::test

// What users write, and what it is taken for.
#include "live/Name.h"

#include "live/UsageError.h"
#include "tests/support/Sheet.h"

namespace orif::live::test {
namespace {

class Names : public orif::test::Sheet<testing::Test> {
 protected:
  // A line for each text: what it names, or why it names nothing.
  void Parse(std::initializer_list<const char*> texts, int line = __builtin_LINE()) {
    for (const char* text : texts) {
      At(line) << text << " -> ";
      try {
        const Name name = ParseName(text);
        sheet_ << name.Canonical() << "  first " << name.Item(name.first) << ", type "
               << (name.type ? static_cast<int>(*name.type) : 0) << ", group " << name.group << ", "
               << name.Count() << " of " << name.Fields().size() << '\n';
      } catch (const UsageError& error) {
        sheet_ << error.what() << '\n';
      }
    }
  }
};

TEST_F(Names, AreParsedWithTheirFieldsAndWrittenInOneForm) {
  Parse({"R[1]", "r[007-10]", "R[5]:Real", "R[1-3]:int", "R[2].comment", "PR[G2:1].x", "pr[g1:3]",
         "PR[1-2].Config", "POS[0]", "POS[G3:0-2].j9", "SR[4]", "$A[1].$B:int", "$NAME:pos.uf",
         "PRG[MV1-2].line", "prg[m3]", "ALM[E1].severity_TEXT", "ALM[P2]", "DO[1-16]",
         "GI[9].comment"});
  Expect(R"(
R[1] -> R[1]  first R[1], type 0, group 1, 1 of 1
r[007-10] -> R[7-10]  first R[7], type 0, group 1, 4 of 1
R[5]:Real -> R[5]:real  first R[5], type 1, group 1, 1 of 1
R[1-3]:int -> R[1-3]:int  first R[1], type 0, group 1, 3 of 1
R[2].comment -> R[2].comment  first R[2], type 0, group 1, 1 of 1
PR[G2:1].x -> PR[G2:1].X  first PR[G2:1], type 2, group 2, 1 of 21
pr[g1:3] -> PR[3]  first PR[3], type 2, group 1, 1 of 21
PR[1-2].Config -> PR[1-2].config  first PR[1], type 2, group 1, 2 of 21
POS[0] -> POS[0]  first POS[0], type 3, group 1, 1 of 21
POS[G3:0-2].j9 -> POS[G3:0-2].J9  first POS[G3:0], type 3, group 3, 3 of 21
SR[4] -> SR[4]  first SR[4], type 13, group 1, 1 of 1
$A[1].$B:int -> $A[1].$B:int  first $A[1].$B, type 5, group 1, 1 of 1
$NAME:pos.uf -> $NAME:pos.UF  first $NAME, type 7, group 1, 1 of 21
PRG[MV1-2].line -> PRG[MV1-2].line  first PRG[MV1], type 35, group 1, 2 of 4
prg[m3] -> PRG[M3]  first PRG[M3], type 33, group 1, 1 of 4
ALM[E1].severity_TEXT -> ALM[E1].severity_text  first ALM[E1], type 9, group 1, 1 of 9
ALM[P2] -> ALM[P2]  first ALM[P2], type 11, group 1, 1 of 9
DO[1-16] -> DO[1-16]  first DO[1], type 0, group 1, 16 of 1
GI[9].comment -> GI[9].comment  first GI[9], type 0, group 1, 1 of 1
)");
}

TEST_F(Names, TellTheNearestOneByItselfToo) {
  const auto nearest = [](const char* text) -> std::string {
    try {
      return "none, it is one: " + ParseName(text).text;
    } catch (const UsageError& error) {
      return error.Nearest();
    }
  };
  EXPECT_EQ(nearest("R[1..3]"), "R[1-3]");
  EXPECT_EQ(nearest("RR[3]"), "R[3]");
  EXPECT_EQ(nearest("PR[2].config_"), "PR[2].config");
  EXPECT_EQ(nearest("PR[G2:7-2]"), "PR[G2:2-7]");
  EXPECT_EQ(nearest("XQZW[2]"), "");
}

TEST_F(Names, AreRefusedWithTheNearestRightForm) {
  Parse({"",
         "R",
         "R1",
         "R(3)",
         "R[1..3]",
         "R[1,2]",
         "R[1:3]",
         "R[ 1 - 3 ]",
         "PR[2:1]",
         "R[]",
         "R[1",
         "R[1]]",
         "RR[3]",
         "XQ[2]",
         "Q[1]",
         "PS[0]",
         "ARM[1]",
         "R[0]",
         "R[7-2]",
         "PR[G2:7-2].X",
         "R[9999999999]",
         "R[1]:string",
         "R[1].X",
         "PR[1].Q",
         "PR[1].E4",
         "PRG[1].lines",
         "R[1].comments",
         "SR[1]:int",
         "$NAME",
         "$NAME:integer",
         "$:int",
         "$A B:int",
         "$N:int.X",
         "PR[G0:1]",
         "R[G2:1]",
         "PRG[E1]",
         "PR[M1]"});
  Expect(R"(
 -> '': not an item; there are R, POS, PR, SR, PRG, ALM, DI, DO, RI, RO, UI, UO, SI, SO, GI and GO, and $NAME for a variable
R -> 'R': not an item; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
R1 -> 'R1': not an item; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
R(3) -> 'R(3)': not an item; nearest is R[3] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[1..3] -> 'R[1..3]': not an item; nearest is R[1-3] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[1,2] -> 'R[1,2]': not an item; nearest is R[1-2] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[1:3] -> 'R[1:3]': not an item; nearest is R[1-3] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[ 1 - 3 ] -> 'R[ 1 - 3 ]': not an item; nearest is R[1-3] (written R[1], R[1-10], R[1]:int or R[1]:real)
PR[2:1] -> 'PR[2:1]': not an item; nearest is PR[G2:1] (written PR[1], PR[1-10] or PR[G2:1])
R[] -> 'R[]': not an item; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[1 -> 'R[1': not an item; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[1]] -> 'R[1]]': not an item; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
RR[3] -> 'RR[3]': there is no item RR; nearest is R[3] (written R[1], R[1-10], R[1]:int or R[1]:real)
XQ[2] -> 'XQ[2]': there is no item XQ; there are R, POS, PR, SR, PRG, ALM, DI, DO, RI, RO, UI, UO, SI, SO, GI and GO, and $NAME for a variable
Q[1] -> 'Q[1]': there is no item Q; there are R, POS, PR, SR, PRG, ALM, DI, DO, RI, RO, UI, UO, SI, SO, GI and GO, and $NAME for a variable
PS[0] -> 'PS[0]': there is no item PS; nearest is POS[0] (written POS[0] or POS[G2:0], the number being the user frame)
ARM[1] -> 'ARM[1]': there is no item ARM; nearest is ALM[1] (written ALM[1], ALM[1-10], ALM[E1] or ALM[P1])
R[0] -> 'R[0]': R is counted from 1: R[1]
R[7-2] -> 'R[7-2]': the range runs backwards; write R[2-7]
PR[G2:7-2].X -> 'PR[G2:7-2].X': the range runs backwards; write PR[G2:2-7].X
R[9999999999] -> 'R[9999999999]': 9999999999 is too large a number
R[1]:string -> 'R[1]:string': R has no type 'string'; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
R[1].X -> 'R[1].X': R[1] has no field 'X'; it has comment
PR[1].Q -> 'PR[1].Q': PR[1] has no field 'Q'; it has X, Y, Z, W, P, R, E1, E2, E3, config, J1, J2, J3, J4, J5, J6, J7, J8, J9, UF, UT and comment
PR[1].E4 -> 'PR[1].E4': PR[1] has no field E4; nearest is .E1
PRG[1].lines -> 'PRG[1].lines': PRG[1] has no field lines; nearest is .line
R[1].comments -> 'R[1].comments': R[1] has no field comments; nearest is .comment
SR[1]:int -> 'SR[1]:int': SR has no type 'int'; nearest is SR[1] (written SR[1] or SR[1-10])
$NAME -> '$NAME': a variable takes its type with it: $NAME:int, $NAME:real, $NAME:string or $NAME:pos
$NAME:integer -> '$NAME:integer': a variable takes its type with it: $NAME:int, $NAME:real, $NAME:string or $NAME:pos
$:int -> '$:int': a variable's name has letters, digits, _ $ . and brackets: $NAME:int
$A B:int -> '$A B:int': a variable's name has letters, digits, _ $ . and brackets: $NAME:int
$N:int.X -> '$N:int.X': $N has one value and no fields
PR[G0:1] -> 'PR[G0:1]': motion groups are counted from 1; nearest is PR[1] (written PR[1], PR[1-10] or PR[G2:1])
R[G2:1] -> 'R[G2:1]': R has no motion groups; nearest is R[1] (written R[1], R[1-10], R[1]:int or R[1]:real)
PRG[E1] -> 'PRG[E1]': PRG has no list E; nearest is PRG[1] (written PRG[1], PRG[1-10], PRG[M1], PRG[V1] or PRG[MV1])
PR[M1] -> 'PR[M1]': PR has no list M; nearest is PR[1] (written PR[1], PR[1-10] or PR[G2:1])
)");
}

TEST_F(Names, OfHostileLengthAreRefusedAtOnce) {
  EXPECT_THROW(ParseName("R[" + std::string(1'000'000, '1') + "]"), UsageError);
  EXPECT_THROW(ParseName(std::string(1'000'000, '[')), UsageError);
  EXPECT_THROW(ParseName(std::string("R[1]\0", 5)), UsageError);
  Expect("\n");
}

}  // namespace
}  // namespace orif::live::test

// What allocates nothing, and what happens when there is no memory. This program counts every
// allocation of the process and can let one of them fail.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "live/live.h"
#include "orif/orif.h"
#include "simulator/Demo.h"
#include "tests/support/FullPass.h"

namespace {
long allocations = 0;
bool watched = false;  // whether allocations count for the one that fails
long failing = 0;      // which of them fails, from 1 on
}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (watched && --failing == 0) throw std::bad_alloc();
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
// Not inline: where it is, g++ takes the pair of free and new for a mistake.
[[gnu::noinline]] void Free(void* memory) { std::free(memory); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory); }

namespace orif {
namespace {

template <class Action>
long AllocationsOf(const Action& action) {
  const long before = allocations;
  action();
  return allocations - before;
}

class Allocation : public testing::Test {
 protected:
  Allocation() {
    EXPECT_TRUE(core.Connect(sim::DemoHost));
    table = core.DataTable();
  }

  Core core{sim::DemoNetwork().Factory()};
  std::shared_ptr<DataTable> table;
};

TEST_F(Allocation, ReadingAllocatesNothing) {
  const auto longs = table->AddNumReg(NUMREG_INT, 1, 10);
  const auto reals = table->AddNumReg(NUMREG_REAL, 1, 10);
  const auto registers = table->AddPosReg(POSREG, 1, 1, 2);
  const auto groups = table->AddPosRegMG(POSREGMG, "C,J6", 1, 1);
  const auto current = table->AddCurPos(CURPOS, 1);
  const auto texts = table->AddString(STRREG, 1, 1);
  const auto task = table->AddTask(TASK, 1);
  const auto alarms = table->AddAlarm(ALARM_LIST, 1);
  EXPECT_GT(AllocationsOf([&] { table->AddNumReg(NUMREG_INT, 1, 1); }), 0);  // the count counts
  Variant value;
  std::array<float, 9> x{};
  std::array<float, 9> j{};
  std::array<std::int16_t, 7> c{};
  std::int16_t word = 0;
  std::array<std::string, 3> s{std::string(80, ' '), std::string(80, ' '), std::string(80, ' ')};
  EXPECT_EQ(AllocationsOf([&] {
              EXPECT_TRUE(table->Refresh());
              EXPECT_TRUE(longs->GetValue(1, value));
              EXPECT_TRUE(reals->GetValue(10, value));
              EXPECT_TRUE(table->GetLastDataFloat(1, x[0]));
              EXPECT_TRUE(registers->GetValue(2, x, c, j, word, word, word, word));
              EXPECT_TRUE(registers->GetValueJoint(1, j[0], j[1], j[2], j[3], j[4], j[5], j[6],
                                                   j[7], j[8], word, word));
              EXPECT_TRUE(current->GetValue(x, c, j, word, word, word, word));
              EXPECT_TRUE(groups->GetValueJoint(1, 2, j[0], j[1], j[2], j[3], j[4], j[5], j[6],
                                                j[7], j[8]));
              EXPECT_TRUE(texts->GetValue(1, s[0]));
              EXPECT_TRUE(task->GetValue(s[0], word, word, s[1]));
              EXPECT_TRUE(alarms->GetValue(1, word, word, word, word, word, word, word, word, word,
                                           word, word, s[0], s[1], s[2]));
              EXPECT_TRUE(core.ReadSDO(1, c, 7));
            }),
            0);
}

TEST(LiveAllocation, RefreshingNumbersAllocatesNothing) {
  auto network = sim::DemoNetwork();
  live::Controller cell({.host = sim::DemoHost,
                         .factory = network.Factory(),
                         .tags = {"R[1-100]", "R[101-200]:int", "PR[1-5].X", "PR[1-5].J1",
                                  "DO[1-16]", "DI[3]", "GI[1-4]", "POS[0].Z", "$OVERRIDE:int"}});
  EXPECT_TRUE(cell.Refresh());
  int turn = 0;
  EXPECT_EQ(AllocationsOf([&] {
              for (turn = 1; turn <= 3; ++turn) {
                network.Find(sim::DemoHost)->NumericRegister(1) = turn;
                EXPECT_TRUE(cell.Refresh());
              }
            }),
            0);
  EXPECT_EQ(cell["R[1]"].value, live::Value(3));
}

// Runs the pass with the k-th allocation failing, for every k. What each member answered is its
// own affair; nothing may escape it, and the state has to agree with the answers.
TEST(AllocationSweep, LeavesEverythingConsistent) {
  for (const bool traced : {false, true}) {
    long runs = 0;
    for (bool hit = true; hit; ++runs) {
      sim::Network network;
      test::FullPass::SetUp(network.AddController("cell"));
      test::FullPass pass(network.Factory(), [](bool on) { watched = on; });
      failing = runs + 1;
      pass.Run(traced);
      hit = failing <= 0;
      ASSERT_TRUE(pass.Answers()[0] || hit);
      ASSERT_FALSE(testing::Test::HasFailure()) << "allocation " << runs << " failing";
    }
    EXPECT_GT(runs, 100);
    RecordProperty(traced ? "allocations while traced" : "allocations", static_cast<int>(runs - 1));
  }
}

}  // namespace
}  // namespace orif

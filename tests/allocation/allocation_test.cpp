// What allocates nothing. This program counts every allocation of the process.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {
long allocations = 0;
}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

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
    EXPECT_TRUE(core.Connect(sim::kDemoHost));
    table = core.DataTable();
  }

  Core core{sim::DemoNetwork().Factory()};
  std::shared_ptr<DataTable> table;
};

TEST_F(Allocation, ReadingNumericRegistersAllocatesNothing) {
  const auto longs = table->AddNumReg(NUMREG_INT, 1, 10);
  const auto reals = table->AddNumReg(NUMREG_REAL, 1, 10);
  EXPECT_GT(AllocationsOf([&] { table->AddNumReg(NUMREG_INT, 1, 1); }), 0);  // the count counts
  Variant value;
  float real = 0;
  EXPECT_EQ(AllocationsOf([&] {
              EXPECT_TRUE(table->Refresh());
              EXPECT_TRUE(longs->GetValue(1, value));
              EXPECT_TRUE(reals->GetValue(10, value));
              EXPECT_TRUE(table->GetLastDataFloat(1, real));
            }),
            0);
}

}  // namespace
}  // namespace orif

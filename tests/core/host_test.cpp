// The lower layer may run the host's code while it is called. What that does to tables shows in
// the sanitizers at the latest.
#include <cstring>

#include "tests/support/RecordedCore.h"

namespace orif::test {
namespace {

using HostCode = RecordedCore;

TEST_F(HostCode, MayMakeTheTableThatIsBeingMade) {
  for (const bool second : {false, true}) {
    auto owner = std::make_unique<Core>([this] { return lower; });
    std::shared_ptr<DataTable> made;
    bool entered = false;
    lower->On(DispId::ClearRAssignment, [&](auto) {
      if (!std::exchange(entered, true)) made = owner->DataTable();
      return Long(0);
    });
    const auto table = second ? owner->DataTable2() : owner->DataTable();
    EXPECT_EQ(owner->DataTable(), made);
    owner.reset();
    EXPECT_FALSE(made->Valid());
  }
}

TEST_F(HostCode, MayDropTheTableThatDecodesAReal) {
  auto owner = std::make_unique<Core>([this] { return lower; });
  auto table = owner->DataTable();
  table->AddNumReg(NUMREG_REAL, 1, 1);
  lower->On(DispId::ReadRShort, [](auto arguments) {
    const float written = 2.5F;
    std::memcpy(arguments[1].as.i2Ref, &written, sizeof written);
    return Long(2);
  });
  ASSERT_TRUE(table->Refresh());
  lower->On(DispId::ShortToFloat, [&](auto arguments) {
    owner.reset();
    table.reset();
    float real = 0;
    std::memcpy(&real, arguments[0].as.i2Ref, sizeof real);
    return Real(real);
  });
  float value = 0;
  EXPECT_TRUE(table->GetLastDataFloat(1, value));
  EXPECT_EQ(value, 2.5F);
}

}  // namespace
}  // namespace orif::test

#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

using Index = std::int32_t;
using BitRead = bool (Core::*)(Index, ArrayView<std::int16_t>, Index) noexcept;
using BitWrite = bool (Core::*)(Index, ArrayView<const std::int16_t>, Index) noexcept;

class SignalIo : public Transcript {
 protected:
  SignalIo() {
    lower->On(DispId::LastErrorText, [](auto) { return Text("no way"); });
  }
  void AnswerAll(std::int32_t status) {
    for (std::int32_t id = 27; id <= 60; ++id) lower->On(static_cast<DispId>(id), status);
    for (const auto id : {RecordingDispatch::NamedSI, RecordingDispatch::NamedUI}) {
      lower->On(static_cast<DispId>(id), status);
    }
  }

  std::array<std::int16_t, 10> bits{1, 0, 1};
  std::array<std::int32_t, 4> groups{100000, 2, 3, 4};
};

TEST_F(SignalIo, EveryMemberHasItsOperationAndItsSuccess) {
  for (const std::int32_t status : {0, 1, -1}) {
    AnswerAll(status);
    core.DebugLog(status == 1);
    SHOW(status);
    for (const BitRead read : {&Core::ReadSDO, &Core::ReadSDI, &Core::ReadRDO, &Core::ReadRDI,
                               &Core::ReadSO, &Core::ReadSI, &Core::ReadUO, &Core::ReadUI}) {
      RUN((core.*read)(3, bits, 10));
    }
    for (const BitWrite write : {&Core::WriteSDO, &Core::WriteSDI, &Core::WriteRDO, &Core::WriteRDI,
                                 &Core::WriteSO, &Core::WriteSI, &Core::WriteUO, &Core::WriteUI}) {
      RUN((core.*write)(3, bits, 10));
    }
    RUN(core.ReadGO(1, groups, 4));
    RUN(core.WriteGO(1, groups, 4));
    RUN(core.ReadGI(1, groups, 4));
    RUN(core.WriteGI(1, groups, 4));
  }
  TRACED(core.WriteGO(1, groups, 4));
}

TEST_F(SignalIo, BlocksIndicesAndCounts) {
  Say("the second block");
  RUN(core.ReadSDO(11000, bits, 3));
  RUN(core.ReadSDO(11005, bits, 3));
  RUN(core.WriteSDO(11001, bits, 3));
  RUN(core.ReadSDI(11005, bits, 3));
  Say("one member tests its index");
  RUN(core.ReadSDO(0, bits, 3));
  RUN(core.WriteSDO(0, bits, 3));
  RUN(core.ReadRDO(-1, bits, 3));
  Say("bounds: 1 to 5 holds five, 0 to 3 does not");
  RUN(core.ReadSDO(1, ArrayView(bits.data(), 1, 5), 5));
  RUN(core.ReadSDO(1, ArrayView(bits.data(), 0, 3), 5));
  RUN(core.WriteSI(1, ArrayView<const std::int16_t>(bits.data(), 0, 3), 5));
  RUN(core.ReadGI(1, groups, 5));
  Say("a negative count is the lower layer's to refuse; an array without elements is a fault");
  RUN(core.ReadSDI(1, bits, -1));
  RUN(core.ReadSDI(1, {}, 0));
  RUN(core.WriteGO(1, {}, 2));
  Say("16 bits, but for the members that go by name");
  std::vector<std::int16_t> many(32768);
  RUN(core.ReadSDI(32767, many, 32767));
  RUN(core.ReadSDI(32768, many, 1));
  RUN(core.ReadSDI(1, many, 32768));
  RUN(core.WriteUI(40000, many, 32768));
  Say("the member without a check: its shift, and what the array lacks");
  RUN(core.WriteGO(10000, groups, 4));
  RUN(core.WriteGO(10001, groups, 4));
  std::vector<std::int32_t> sent;
  lower->On(DispId::WriteGO, [&](auto arguments) {
    sent.assign(arguments[1].as.i4Ref, arguments[1].as.i4Ref + arguments[2].as.i2);
    return Long(0);
  });
  RUN(core.WriteGO(1, groups, 6));
  EXPECT_EQ(sent, (std::vector<std::int32_t>{100000, 2, 3, 4, 0, 0}));
  RUN(core.WriteGO(1, ArrayView<const std::int32_t>(groups.data(), 0, 0), 2));
  EXPECT_EQ(sent, (std::vector<std::int32_t>{100000, 0}));
  RUN(core.WriteGO(1, groups, 32768));
  RUN(core.WriteGO(1, groups, std::numeric_limits<Index>::max()));
  Say("a text that cannot be had, with statuses that would be success without it");
  AnswerAll(1);
  lower->Throw(DispId::LastErrorText, "gone");
  for (const bool traced : {false, true}) {
    core.DebugLog(traced);
    RUN(core.WriteSDO(1, bits, 1));
    RUN(core.WriteSI(1, bits, 1));
    RUN(core.WriteGI(1, groups, 1));
    RUN(core.WriteGO(1, groups, 1));
  }
  lower->On(DispId::WriteGO, -1);
  RUN(core.WriteGO(1, groups, 1));
  core.DebugLog(false);
  Say("faults of the lower layer, and no lower core object");
  lower->Throw(DispId::ReadUI, "broken");
  TRACED(core.ReadUI(1, bits, 1));
  core.Connect("robot");
  core.Disconnect();
  RUN(core.ReadUI(1, bits, 1));
}

}  // namespace
}  // namespace orif::test

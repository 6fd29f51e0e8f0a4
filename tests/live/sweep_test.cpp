// Every lower call fails once, in every way, and the link is lost at every call. No value is shown
// as good that is not, and in the end everything is back.
#include <gtest/gtest.h>

#include "tests/live/Rig.h"
#include "tests/support/AnswerRules.h"

namespace orif::live::test {
namespace {

using orif::test::Rule;
using orif::test::Way;

class Sweep {
 public:
  /// Lets the call number `target`, from 1 on, go wrong.
  /// No way: the link is lost there.
  Sweep(long target, std::optional<Way> way) : target_(target), way_(way) {}

  /// Runs a life with many refreshes and writes. Answers how many lower calls it made.
  long Run() {
    Controller cell({.host = "cell",
                     .factory = Between::Factory(
                         network_.Factory(),
                         [this](auto id, auto call, auto arguments, Dispatch& inner) {
                           return Before(static_cast<DispId>(id), call, arguments, inner);
                         }),
                     .tags = {"R[1]", "R[2]:real", "PR[1].X", "SR[1]", "$SPEED:int", "PRG[1].line",
                              "ALM[1].message", "DO[1-4]", "GI[2]", "R[1].comment"},
                     .clock = clock_});
    cell.Connect();
    for (int turn = 1; turn <= 4; ++turn) {
      Refresh(cell);
      const std::vector<Assignment> writes{
          {"R[1]", turn}, {"SR[1]", "text"}, {"PR[1].X", turn}, {"DO[1]", true}};
      const auto answers = cell.Write(writes);
      if (std::ranges::all_of(answers, &Answer::done)) {
        EXPECT_EQ(robot_.NumericRegister(1), sim::NumericValue(turn));
      }
      cell.ClearAlarms();
    }
    // It is back at the latest once two waits have passed, and everything is good.
    const long before = calls_;
    for (int i = 0; i < 3; ++i) {
      clock_->time += 60s;
      Refresh(cell);
    }
    if (target_ > before) return calls_;
    EXPECT_EQ(cell.State(), Link::Up);
    for (const Tag& tag : cell.Tags()) {
      const bool refused = tag.quality == Quality::Refused && wentWrong_ == DispId::SetRAssignment;
      EXPECT_TRUE(tag.quality == Quality::Good || refused) << tag.name;
    }
    cell.Close();
    return calls_;
  }

 private:
  std::optional<OrvexValue> Before(DispId id, OrvexCall call, std::span<const OrvexValue> arguments,
                                   Dispatch& inner) {
    if (++calls_ != target_) return {};
    wentWrong_ = id;
    if (!way_) {
      robot_.FaultInjection().LoseConnections();
      return {};
    }
    // A wrong value is nobody's to see; the controller carries out what counts as success.
    const auto number = static_cast<std::int32_t>(id);
    const Rule rule = orif::test::RuleOf(number, call);
    const bool succeeds = orif::test::Succeeds(rule, *way_);
    if (succeeds && rule == Rule::Value) return {};
    if (succeeds) inner.Invoke(number, call, arguments);
    return orif::test::WrongAnswer(*way_);
  }

  // Whatever the refresh answers, what is good is what the cell has now.
  void Refresh(Controller& cell) {
    clock_->time += 10ms;
    const std::int32_t now = ++value_;
    robot_.NumericRegister(1) = now;
    robot_.NumericRegister(2) = static_cast<float>(now);
    robot_.PositionRegister(1, 1).xyzwpr[0] = static_cast<float>(now);
    robot_.StringRegister(1) = std::to_string(now);
    robot_.SetVariable("$SPEED", now);
    robot_.Signal(sim::SignalKind::SDO, 2) = now % 2;
    robot_.Signal(sim::SignalKind::GI, 2) = now;
    const bool good = cell.Refresh();
    const auto expect = [&](const char* name, const Value& value) {
      const Tag& tag = cell[name];
      EXPECT_TRUE(tag.quality != Quality::Good || tag.value == value) << tag.name;
      EXPECT_TRUE(tag.quality != Quality::Good || tag.time == clock_->Wall()) << tag.name;
      EXPECT_EQ(tag.quality == Quality::Good, tag.reason == nullptr) << tag.name;
    };
    expect("R[1]", now);
    expect("R[2]", static_cast<float>(now));
    expect("PR[1].X", static_cast<float>(now));
    expect("SR[1]", std::to_string(now));
    expect("$SPEED:int", now);
    expect("DO[2]", now % 2 != 0);
    expect("GI[2]", now);
    EXPECT_TRUE(good || cell.LastReason() != Reason{});
  }

  long target_;
  std::optional<Way> way_;
  sim::Network network_;
  sim::Controller& robot_ = MakeCell(network_);
  std::shared_ptr<HandClock> clock_ = std::make_shared<HandClock>();
  long calls_ = 0;
  std::int32_t value_ = 0;
  DispId wentWrong_{};
};

class LiveSweep : public testing::TestWithParam<std::optional<Way>> {};

TEST_P(LiveSweep, ShowsNothingAsGoodThatIsNot) {
  const long calls = Sweep(0, GetParam()).Run();
  ASSERT_GT(calls, 100);
  for (long target = 1; target <= calls; ++target) {
    Sweep(target, GetParam()).Run();
    ASSERT_FALSE(HasFailure()) << "call " << target;
  }
}

INSTANTIATE_TEST_SUITE_P(Way, LiveSweep,
                         testing::Values(Way::Negative, Way::Zero, Way::Positive, Way::Thrown,
                                         Way::WrongType, Way::Empty, std::nullopt));

}  // namespace
}  // namespace orif::live::test

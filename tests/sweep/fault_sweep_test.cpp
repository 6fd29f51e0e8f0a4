// Every call into the lower layer fails once, in every way, and every member answers by its own
// rules.
#include "tests/support/AnswerRules.h"
#include "tests/support/FullPass.h"
#include "tests/support/RecordingDispatch.h"

namespace orif::test {
namespace {

constexpr std::array Ways{Way::Negative,  Way::Zero,  Way::Positive, Way::Thrown,
                          Way::WrongType, Way::Empty, Way::HalfFill, Way::NoFill};

struct Plan {
  std::size_t target = 0;  // the call that fails, from 1 on; 0: none
  Way way = Way::Negative;
  std::size_t calls = 0;
  const FullPass* pass = nullptr;
  bool watched = false;
  // Of the failing call:
  std::size_t step = 0;
  std::int32_t id = 0;
  Rule rule = Rule::Ignored;
};

class Failing : public Dispatch {
 public:
  Failing(std::shared_ptr<Dispatch> inner, Plan& plan) : inner_(std::move(inner)), plan_(plan) {}

  std::int32_t Lookup(std::string_view name) override { return inner_->Lookup(name); }

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    if (!plan_.watched || ++plan_.calls != plan_.target) return inner_->Invoke(id, call, arguments);
    plan_.step = plan_.pass->Steps() - 1;
    plan_.id = id;
    plan_.rule = RuleOf(id, call);
    // The controller carries out what counts as success, and nothing else.
    const bool read = id == static_cast<std::int32_t>(DispId::ReadRShort);
    if (Succeeds(plan_.rule, plan_.way) && !(read && plan_.way == Way::NoFill)) {
      inner_->Invoke(id, call, arguments);
      if (read && plan_.way == Way::HalfFill) {
        for (int i = arguments[2].as.i2 / 2; i < arguments[2].as.i2; ++i)
          arguments[1].as.i2Ref[i] = -1;
      }
    }
    return WrongAnswer(plan_.way);
  }

 private:
  std::shared_ptr<Dispatch> inner_;
  Plan& plan_;
};

std::vector<bool> RunWith(Plan& plan, bool traced, std::vector<std::string>& names) {
  sim::Network network;
  FullPass::SetUp(network.AddController("cell"));
  const DispatchFactory make = network.Factory();
  FullPass pass([&] { return std::make_shared<Failing>(make(), plan); },
                [&](bool watched) { plan.watched = watched; });
  plan.pass = &pass;
  pass.Run(traced);
  names.clear();
  for (std::size_t i = 0; i < pass.Steps(); ++i) names.push_back(pass.Name(i));
  const auto id = static_cast<DispId>(plan.id);
  const bool unconnected = id == DispId::Connect || id == DispId::Reset || id == DispId::HostName;
  EXPECT_TRUE(pass.settled || unconnected || id == DispId::ClearRAssignment ||
              id == DispId::SetRAssignment || id == DispId::Disconnect);
  return pass.Answers();
}

class FaultSweep : public testing::TestWithParam<Way> {};

TEST_P(FaultSweep, EveryMemberAnswersByItsOwnRules) {
  for (const bool traced : {false, true}) {
    std::vector<std::string> names;
    Plan none;
    const std::vector<bool> good = RunWith(none, traced, names);
    ASSERT_GT(none.calls, 150U);
    RecordProperty(traced ? "calls while traced" : "calls", static_cast<int>(none.calls));
    for (std::size_t target = 1; target <= none.calls; ++target) {
      Plan plan;
      plan.target = target;
      plan.way = GetParam();
      const std::vector<bool> answers = RunWith(plan, traced, names);
      ASSERT_NE(plan.id, 0);
      for (std::size_t step = 0; step < plan.step; ++step) ASSERT_EQ(answers[step], good[step]);
      // Members without an answer of their own have nothing to say.
      const std::string& name = names[plan.step];
      const bool silent = name == "Core" || name == "settings" || plan.id == 64;
      const bool status = plan.rule != Rule::Value && plan.rule != Rule::Ignored;
      const bool expected =
          silent ? good[plan.step] : (good[plan.step] || status) && Succeeds(plan.rule, plan.way);
      ASSERT_EQ(answers[plan.step], expected)
          << name << " after call " << target << " of operation " << plan.id;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Way, FaultSweep, testing::ValuesIn(Ways));

}  // namespace
}  // namespace orif::test

// What of the page no browser shows in a minute: the last hour, and whom the gate keeps out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "simulator/Network.h"
#include "tools/page/Cell.h"
#include "tools/page/Gate.h"
#include "tools/page/Plant.h"

namespace orif::page {
namespace {

using namespace std::chrono_literals;

// "1..3=2" for each step that has something, with how often the same comes in a row.
std::string Text(const std::array<History::Step, History::Steps>& steps) {
  std::string all;
  std::string last;
  int times = 0;
  const auto end = [&] {
    if (times > 0) all += (all.empty() ? "" : " ") + std::to_string(times) + "x" + last;
    times = 0;
  };
  const auto number = [](float value) {
    return std::isnan(value) ? std::string("-") : std::to_string(std::lround(value));
  };
  for (const History::Step& step : steps) {
    const std::string one =
        number(step.least) + ".." + number(step.greatest) + "=" + number(step.last);
    if (one != last) end();
    last = one;
    ++times;
  }
  end();
  return all;
}

TEST(PageHistory, KeepsTheLastHour) {
  History history;
  EXPECT_EQ(Text(history.Read(1000)), "120x-..-=-");
  history.Add(1000, 5);
  history.Add(1000, 9);
  history.Add(1000, 7);
  EXPECT_EQ(Text(history.Read(1000)), "119x-..-=- 1x5..9=7");
  // What is unchanged goes on, and is where the next step begins.
  history.Add(1003, 8);
  EXPECT_EQ(Text(history.Read(1005)), "114x-..-=- 1x5..9=7 2x7..7=7 1x7..8=8 2x8..8=8");
  // Lost within a step, and back in a later one.
  history.Add(1006, History::None);
  history.Add(1009, 1);
  EXPECT_EQ(Text(history.Read(1010)),
            "109x-..-=- 1x5..9=7 2x7..7=7 1x7..8=8 2x8..8=8 1x8..8=- 2x-..-=- 2x1..1=1");
  // Full: the oldest go.
  for (int step = 1011; step < 1130; ++step) history.Add(step, static_cast<float>(step));
  EXPECT_EQ(std::lround(history.Read(1129)[0].last), 1);
  EXPECT_EQ(std::lround(history.Read(1129)[119].last), 1129);
  history.Add(99'999, 3);
  EXPECT_EQ(Text(history.Read(99'999)), "119x1129..1129=1129 1x3..1129=3");
}

TEST(PageCell, TellsNothingOfStepsThatNobodyRead) {
  sim::Network network;
  auto& robot = network.AddController("cell1");
  robot.NumericRegister(1) = 4;
  live::Controller controller(
      {.host = "cell1", .factory = network.Factory(), .tags = {"R[1]", "SR[1]", "ALM[1].id"}});
  Cell cell("press1", "cell1");
  std::uint64_t version = 0;
  EXPECT_THAT(cell.ChangesSince(version), testing::IsEmpty());
  const Cell::Instant begin{History::StepLength * 1000};
  const auto refresh = [&](std::chrono::seconds at) {
    const bool good = controller.Refresh();
    cell.Refreshed(controller, controller.Changed(), good, begin + at);
  };
  refresh(0s);
  EXPECT_EQ(cell.ChangesSince(version).size(), 3);
  EXPECT_EQ(cell.Age(begin + 2s), 2000ms);
  refresh(30s);
  // The component hangs for two steps, and the value is the same as before.
  refresh(130s);
  EXPECT_THAT(cell.ChangesSince(version), testing::IsEmpty());
  robot.NumericRegister(1) = 6;
  refresh(140s);
  EXPECT_EQ(cell.ChangesSince(version).at(0).reading.value.Text(), "6");
  EXPECT_EQ(Text(cell.HistoryOf("R[1]", begin + 200s).value()),
            "113x-..-=- 2x4..4=4 2x-..-=- 1x4..6=6 2x-..-=-");
  EXPECT_EQ(Text(cell.HistoryOf("SR[1]", begin + 200s).value()), "120x-..-=-");
  EXPECT_FALSE(cell.HistoryOf("R[2]", begin));
}

TEST(PagePlant, HasTheCellsThatTheHostHolds) {
  Plant plant("hall1");
  auto first = plant.Add("press1", "a");
  const auto looked = plant.Find("press1");  // as somebody who looks at it
  const auto second = plant.Add("press1", "b");
  first.reset();
  EXPECT_EQ(plant.Cells().size(), 1);
  EXPECT_EQ(plant.Find("press1"), second);
  EXPECT_NE(looked, second);
  auto third = plant.Add("press0", "c");
  EXPECT_EQ(plant.Cells().front(), third);
  third.reset();
  EXPECT_EQ(plant.Find("press0"), nullptr);
}

TEST(PageGate, KeepsOutWhoGuesses) {
  Gate gate("0123456789abcdef");
  const Gate::Instant now{};
  using enum Gate::Answer;
  for (const char* wrong : {"0", "0123456789abcdeg", "0123456789abcde", "0123456789abcdef0",
                            "0123456789abcdef0123456789abcdef"}) {
    EXPECT_EQ(gate.Ask("a", wrong, now), Closed) << wrong;
  }
  for (int i = 0; i < 100; ++i) EXPECT_EQ(gate.Ask("a", "", now), Closed);
  EXPECT_EQ(gate.Ask("a", "0123456789abcdef", now), Open);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(gate.Ask("a", "wrong", now), Closed);
  EXPECT_EQ(gate.Ask("a", "0123456789abcdef", now + 59s), Later);
  EXPECT_EQ(gate.Ask("b", "0123456789abcdef", now + 59s), Open);
  EXPECT_EQ(gate.Ask("a", "0123456789abcdef", now + 60s), Open);
  for (int i = 0; i < 2'000; ++i) gate.Ask(std::to_string(i), "wrong", now);
  EXPECT_EQ(gate.Ask("c", "wrong", now), Later);
  EXPECT_EQ(gate.Ask("c", "wrong", now + 60s), Closed);
}

TEST(PageGate, KnowsItsOwnComputer) {
  for (const char* here : {"127.0.0.1", "127.9.9.9", "localhost", "LocalHost", "::1", "[::1]"}) {
    EXPECT_TRUE(IsLoopback(here)) << here;
  }
  for (const char* elsewhere : {"", "0.0.0.0", "::", "127.0.0.1.example.com", "127.1", "10.0.0.1",
                                "localhost.example.com", "127.0.0.1 "}) {
    EXPECT_FALSE(IsLoopback(elsewhere)) << elsewhere;
  }
  EXPECT_EQ(WhyNoToken("a-token.of_23~characters"), "");
  for (const char* bad : {"", "short", "sixteen bytes; no", "sixteen-bytes-\xc3\xa4\xc3\xb6"}) {
    EXPECT_NE(WhyNoToken(bad), "") << bad;
  }
}

}  // namespace
}  // namespace orif::page

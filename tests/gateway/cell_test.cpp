#include "tools/gateway/Cell.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(GatewayCell, StartsAgainAndIsQuietOnceMuted) {
  const std::filesystem::path scenario =
      std::filesystem::path(testing::TempDir()) / ("cell" + std::to_string(::getpid()) + ".json");
  Metrics metrics("hall1");
  Log log(false, -1);
  std::vector<std::string> states;  // guarded by the cell
  std::atomic<int> rows = 0;
  std::promise<void> read;
  CellSettings settings{.name = "press", .period = 20ms, .tags = {{.names = {"R[1]"}}}};
  settings.connection.simulate = scenario.string();
  auto counts = metrics.Cell("press");
  Cell cell(std::move(settings), std::make_shared<std::atomic<std::int64_t>>(0), std::move(counts),
            log,
            {.row =
                 [&](const Row&) {
                   if (rows++ == 0) read.set_value();
                 },
             .state = [&](const CellState& state) { states.push_back(state.state); }});
  EXPECT_FALSE(cell.Start());
  EXPECT_THAT(states, ElementsAre("lost"));
  std::ofstream(scenario) << R"({"name": "x", "controllers": [{"host": "a", "behaviour":
      [{"what": "R[1]", "ramp": {"from": 0, "to": 1000000, "over": "1000s"}}]}]})";
  EXPECT_TRUE(cell.Start());
  EXPECT_EQ(read.get_future().wait_for(20s), std::future_status::ready);
  cell.Mute();
  EXPECT_THAT(states, ElementsAre("lost", "up", "closed"));
  EXPECT_EQ(metrics.Count().cells, 0);  // it is gone from the page, too
  const int before = rows;
  std::this_thread::sleep_for(100ms);  // it goes on to refresh
  cell.Stop();
  EXPECT_EQ(rows, before);
  EXPECT_THAT(states, testing::SizeIs(3));
  std::filesystem::remove(scenario);
}

}  // namespace
}  // namespace orif::gateway

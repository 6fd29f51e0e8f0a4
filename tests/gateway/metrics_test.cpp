// What stands on the page of metrics.
#include "tools/gateway/Metrics.h"

#include <chrono>
#include <thread>

#include <gmock/gmock.h>

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(GatewayMetrics, OfCells) {
  Metrics metrics("hall1");
  const auto press = metrics.Cell("press1");
  const auto hostile = metrics.Cell("a\"} 1\nb\\ü");
  EXPECT_THAT(metrics.Text(), Not(HasSubstr("age_seconds{")));

  press->Up(true);
  press->Refreshed(true, 3ms, 2, 1);
  press->Refreshed(false, 700ms, 5, 4);
  press->Row();
  hostile->Up(false);
  hostile->Up(true);
  hostile->Up(true);
  hostile->Up(false);
  EXPECT_THAT(
      metrics.Text(),
      AllOf(HasSubstr("orif_gateway_info{gateway=\"hall1\",version=\"0."),
            HasSubstr("\norif_cell_up{cell=\"press1\"} 1\n"),
            HasSubstr("\norif_cell_up{cell=\"a\\\"} 1\\nb\\\\ü\"} 0\n"),
            HasSubstr("\norif_cell_refresh_seconds_bucket{cell=\"press1\",le=\"0.0025\"} 0\n"),
            HasSubstr("\norif_cell_refresh_seconds_bucket{cell=\"press1\",le=\"0.005\"} 1\n"),
            HasSubstr("\norif_cell_refresh_seconds_count{cell=\"press1\"} 2\n"),
            HasSubstr("\norif_cell_last_good_refresh_age_seconds{cell=\"press1\"} "),
            HasSubstr("\norif_cell_reconnects_total{cell=\"press1\"} 0\n"),
            HasSubstr("\norif_cell_reconnects_total{cell=\"a\\\"} 1\\nb\\\\ü\"} 0\n"),
            HasSubstr("\norif_cell_refused_items{cell=\"press1\"} 4\n"),
            HasSubstr("\norif_cell_rows_total{cell=\"press1\"} 1\n"),
            HasSubstr("\norif_cell_skipped_turns_total{cell=\"press1\"} 5\n")));
  EXPECT_EQ(metrics.Count().cells, 2);
  EXPECT_EQ(metrics.Count().cellsUp, 1);
}

TEST(GatewayMetrics, GoOnAfterAReloadAndEndWithTheCell) {
  Metrics metrics("hall1");
  auto before = metrics.Cell("press1");
  before->Up(true);
  before->Refreshed(true, 1ms, 7, 0);
  auto after = metrics.Cell("press1");
  before.reset();
  after->Up(false);
  after->Up(true);
  after->Refreshed(true, 1ms, 2, 0);  // another monitor
  EXPECT_THAT(metrics.Text(), AllOf(HasSubstr("reconnects_total{cell=\"press1\"} 1\n"),
                                    HasSubstr("skipped_turns_total{cell=\"press1\"} 9\n"),
                                    HasSubstr("refresh_seconds_count{cell=\"press1\"} 2\n")));
  after.reset();
  EXPECT_THAT(metrics.Text(), Not(HasSubstr("press1")));
  metrics.Cell("press1")->Row();
  EXPECT_EQ(metrics.Count().cells, 0);
}

TEST(GatewayMetrics, OfBrokerAndBuffer) {
  Metrics metrics("hall1");
  // An alert on a rise sees none in a counter that was not there before.
  EXPECT_THAT(metrics.Text(),
              AllOf(HasSubstr("\norif_published_rows_total{late=\"true\"} 0\n"),
                    HasSubstr("\norif_dropped_rows_total{reason=\"limit\"} 0\n"),
                    HasSubstr("\norif_dropped_rows_total{reason=\"memory\"} 0\n"),
                    HasSubstr("\norif_dropped_rows_total{reason=\"refused\"} 0\n")));
  for (const bool up : {true, true, false, true}) metrics.BrokerUp(up);
  metrics.Buffer(12, 34'000'000'000, 100'000'000'000, true);
  metrics.Published(false, 3);
  metrics.Published(true, 4);
  metrics.Published(true, 1);
  metrics.Dropped("limit", 3'000'000'017);
  EXPECT_THAT(
      metrics.Text(),
      AllOf(HasSubstr("\norif_broker_up 1\n"), HasSubstr("\norif_broker_connects_total 2\n"),
            HasSubstr("\norif_buffer_rows 12\n"), HasSubstr("\norif_buffer_bytes 34000000000\n"),
            HasSubstr("\norif_buffer_limit_bytes 100000000000\n"),
            HasSubstr("\norif_buffer_writable 1\n"),
            HasSubstr("\norif_published_rows_total{late=\"false\"} 1\n"),
            HasSubstr("\norif_published_rows_total{late=\"true\"} 2\n"),
            HasSubstr("\norif_published_messages_total 8\n"),
            HasSubstr("\norif_dropped_rows_total{reason=\"limit\"} 3000000017\n")));
}

TEST(GatewayMetrics, WhileCellsComeAndGo) {
  Metrics metrics("hall1");
  std::atomic<bool> ended = false;
  std::jthread scraper([&] {
    while (!ended) metrics.Text();
  });
  for (int i = 0; i < 2000; ++i) {
    const auto cell = metrics.Cell("cell" + std::to_string(i % 50));
    cell->Up(true);
    cell->Refreshed(true, 1ms, i, 0);
  }
  ended = true;
  scraper.join();
  EXPECT_EQ(metrics.Count().cells, 0);
}

}  // namespace
}  // namespace orif::gateway

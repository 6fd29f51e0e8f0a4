#include "tools/gateway/Storage.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

TEST(GatewayStorage, DropsWhatIsOverTheLimitWhileNothingElseIsToDo) {
  const std::filesystem::path directory =
      std::filesystem::path(testing::TempDir()) / ("storage" + std::to_string(::getpid()));
  std::filesystem::create_directories(directory);
  std::vector<ParcelPtr> parcels;
  for (int id = 1; id <= 5000; ++id) {
    Row row{.id = id, .cell = "c", .number = id, .values = std::string(100, 'x')};
    parcels.push_back(std::make_shared<Parcel>(std::move(row), Outbox::Instant(), false));
  }
  Buffer(directory / "buffer.db", 100'000'000).Write(parcels, {});
  Buffer buffer(directory / "buffer.db", 100'000);
  Outbox outbox(buffer.LastId() + 1, 100'000);
  Metrics metrics("hall1");
  Log log(false, -1);
  Health health;
  {
    const Storage storage(buffer, outbox, metrics, log, health.Watch("storage"));
    const auto begin = std::chrono::steady_clock::now();
    while (storage.Rows() > 500 && std::chrono::steady_clock::now() - begin < 20s) {
      std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(storage.Rows() + storage.Dropped(), 5000);
  }
  EXPECT_FALSE(buffer.IsOverLimit());
  std::filesystem::remove_all(directory);
}

}  // namespace
}  // namespace orif::gateway

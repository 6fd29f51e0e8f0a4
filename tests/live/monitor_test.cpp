// Monitors on threads of their own: what they tell, writes from other threads, a component that
// hangs.
#include "live/Monitor.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "live/UsageError.h"
#include "tests/live/Rig.h"

#include <gtest/gtest.h>

namespace orif::live::test {
namespace {

/// Waits for what other threads do.
class Happening {
 public:
  template <class Change>
  void Note(const Change& change) {
    const std::lock_guard lock(mutex_);
    change();
    changed_.notify_all();
  }
  template <class Condition>
  [[nodiscard]] bool Wait(const Condition& condition, Milliseconds atMost = 20s) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, atMost, condition);
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
};

class Monitoring : public testing::Test {
 protected:
  Settings Of(std::vector<std::string> tags) {
    Settings settings{.host = "cell", .factory = network.Factory(), .tags = std::move(tags)};
    settings.timeOut = 200ms;
    settings.retry = {20ms, 100ms};
    return settings;
  }

  sim::Network network;
  sim::Controller& robot = MakeCell(network);
  Happening happening;
};

TEST_F(Monitoring, TellsChangesAndComesBack) {
  std::string told;
  Monitor monitor(
      Of({"R[1]", "DO[3]"}), 5ms,
      {.onRefresh =
           [&](const Refreshed& now) {
             happening.Note([&] {
               for (const std::size_t i : now.changed) {
                 const Tag& tag = now.controller.Tags()[i];
                 told += tag.name + "=" + tag.value.Text() + " " +
                         std::string(ToText(tag.quality)) + "; ";
               }
             });
           },
       .onLink =
           [&](Link link, const Reason& reason) {
             happening.Note([&] { told += std::string(ToText(link)) + reason.text + "; "; });
           }});
  const auto says = [&](const char* text) {
    return happening.Wait([&] { return told.find(text) != std::string::npos; });
  };
  EXPECT_TRUE(says("connecting; up; R[1]=5 good; DO[3]=on good; ")) << told;
  EXPECT_EQ(monitor.State(), Link::Up);
  EXPECT_EQ(monitor.Read("R[1]").value, Value(5));

  const auto answers = monitor.Write({{"R[1]", 6}, {"DO[3]", false}}).get();
  EXPECT_TRUE(answers[0] && answers[1]);
  EXPECT_TRUE(says("R[1]=6 good; DO[3]=off good; ")) << told;
  EXPECT_THROW(monitor.Write({{"R[2]", 1}}), UsageError);
  EXPECT_TRUE(monitor.ClearAlarms().get());

  {
    const auto lock = network.Lock();
    robot.FaultInjection().LoseConnections();
  }
  EXPECT_TRUE(says("lostConnection lost; R[1]=6 stale; DO[3]=off stale; ")) << told;
  EXPECT_TRUE(says("connecting; up; R[1]=6 good; DO[3]=off good; ")) << told;
  EXPECT_TRUE(monitor.Stop());
  EXPECT_TRUE(says("closed")) << told;
  EXPECT_EQ(monitor.State(), Link::Closed);
  EXPECT_EQ(monitor.Read("R[1]").quality, Quality::Stale);
  EXPECT_EQ(monitor.Write({{"R[1]", 1}}).get().front().reason.ToText(),
            "cell: the monitor has ended");
}

TEST_F(Monitoring, StartsWhileTheControllerIsOff) {
  {
    const auto lock = network.Lock();
    robot.FaultInjection().FailNext("Connect", {-1, "Host is off"}, 3);
  }
  int attempts = 0;
  bool good = false;
  Monitor monitor(Of({"R[1]"}), 10s, {.onRefresh = [&](const Refreshed& now) {
                    happening.Note([&] {
                      ++attempts;
                      good = now.good;
                    });
                  }});
  EXPECT_TRUE(happening.Wait([&] { return good; }));  // long before the next turn
  EXPECT_EQ(attempts, 4);
}

TEST_F(Monitoring, ManyAtOnceWithWritesFromOtherThreads) {
  std::vector<std::unique_ptr<Monitor>> monitors;
  for (int i = 0; i < 8; ++i) {
    monitors.push_back(std::make_unique<Monitor>(Of({"R[1-20]", "PR[1]", "DO[1-8]"}), 1ms));
  }
  std::vector<std::jthread> writers;
  for (int i = 0; i < 8; ++i) {
    writers.emplace_back([&, i] {
      for (int n = 0; n < 50; ++n) {
        const std::string name = "R[" + std::to_string(i + 1) + "]";
        const auto answer = monitors[static_cast<std::size_t>(i)]->Write({{name, n}}).get().front();
        EXPECT_TRUE(answer || TellsLostLink(answer.reason) ||
                    answer.reason.text.find("the link to") == 0);
        monitors[static_cast<std::size_t>(n % 8)]->ReadAll();
        if (n == 25) {
          const auto lock = network.Lock();
          robot.FaultInjection().LoseConnections();
        }
      }
    });
  }
  writers.clear();
  for (auto& monitor : monitors) EXPECT_TRUE(monitor->Stop());
}

TEST_F(Monitoring, EndsFromItsOwnCallBack) {
  std::unique_ptr<Monitor> monitor;
  bool stopped = false;
  happening.Note([&] {
    monitor = std::make_unique<Monitor>(Of({"R[1]"}), 1ms,
                                        MonitorEvents{.onRefresh = [&](const Refreshed&) {
                                          happening.Note([&] {
                                            if (monitor != nullptr) stopped = monitor->Stop();
                                            monitor = nullptr;
                                          });
                                        }});
  });
  EXPECT_TRUE(happening.Wait([&] { return monitor == nullptr; }));
  EXPECT_TRUE(stopped);
}

TEST_F(Monitoring, LeavesAComponentThatHangsBehind) {
  std::atomic<bool> hangs = false;
  bool hanging = false;
  int calls = 0;
  auto settings = Of({"R[1]", "DO[1]"});
  settings.factory = Between::Factory(network.Factory(), [&](auto id, auto, auto, Dispatch&) {
    if (static_cast<DispId>(id) == DispId::ReadSDO && hangs) {
      happening.Note([&] { hanging = true; });
      EXPECT_TRUE(happening.Wait([&] { return !hangs; }));
    }
    return std::optional<OrvexValue>();
  });
  bool closed = false;
  auto monitor = std::make_unique<Monitor>(
      settings, 1ms,
      MonitorEvents{.onRefresh = [&](const Refreshed&) { happening.Note([&] { ++calls; }); },
                    .onLink =
                        [&](Link link, const Reason&) {
                          happening.Note([&] { closed = link == Link::Closed; });
                        }});
  EXPECT_TRUE(happening.Wait([&] { return calls > 0; }));
  happening.Note([&] { hangs = true; });
  EXPECT_TRUE(happening.Wait([&] { return hanging; }));
  auto answer = monitor->Write({{"R[1]", 1}});
  const auto before = std::chrono::steady_clock::now();
  EXPECT_FALSE(monitor->Stop());
  EXPECT_GE(std::chrono::steady_clock::now() - before, 200ms);
  EXPECT_LT(std::chrono::steady_clock::now() - before, 5s);
  EXPECT_EQ(answer.get().front().reason.text, "the monitor has ended");
  const int soFar = calls;
  monitor = nullptr;
  // The component returns after all; the thread ends and tells nobody.
  happening.Note([&] { hangs = false; });
  EXPECT_FALSE(happening.Wait([&] { return closed || calls > soFar; }, 100ms));
}

TEST_F(Monitoring, SendsNothingMoreOnceAbandoned) {
  std::atomic<bool> hangs = true;
  bool hanging = false;
  bool returned = false;
  auto settings = Of({"R[1-2]:int"});
  settings.factory = Between::Factory(network.Factory(), [&](auto id, auto, auto, Dispatch&) {
    const auto operation = static_cast<DispId>(id);
    if (operation == DispId::WriteRLong && hangs) {
      happening.Note([&] { hanging = true; });
      EXPECT_TRUE(happening.Wait([&] { return !hangs; }));
    }
    if (operation == DispId::Disconnect) happening.Note([&] { returned = true; });
    return std::optional<OrvexValue>();
  });
  auto monitor = std::make_unique<Monitor>(settings, 1ms);
  auto answers = monitor->Write({{"R[1]", 70}, {"R[2]", 70}});
  EXPECT_TRUE(happening.Wait([&] { return hanging; }));
  EXPECT_FALSE(monitor->Stop());
  monitor = nullptr;
  EXPECT_EQ(answers.get().back().reason.text,
            "the monitor ended before the answer came; it may have been done");
  happening.Note([&] { hangs = false; });
  EXPECT_TRUE(happening.Wait([&] { return returned; }));
  const auto lock = network.Lock();
  EXPECT_NE(robot.NumericRegister(2), sim::NumericValue(70));
}

TEST_F(Monitoring, TellsWhatAWriteMakesStale) {
  bool good = false;
  std::string stale;
  Monitor monitor(Of({"R[1]:int"}), 10s, {.onRefresh = [&](const Refreshed& now) {
                    happening.Note([&] {
                      good = now.good;
                      for (const std::size_t i : now.changed) {
                        const Tag& tag = now.controller.Tags()[i];
                        if (tag.quality == Quality::Stale) stale = tag.name;
                      }
                    });
                  }});
  EXPECT_TRUE(happening.Wait([&] { return good; }));
  {
    const auto lock = network.Lock();
    robot.FaultInjection().LoseConnections();
  }
  EXPECT_FALSE(monitor.Write({{"R[1]", 1}}).get().front());
  EXPECT_TRUE(happening.Wait([&] { return stale == "R[1]"; }));
  EXPECT_TRUE(happening.Wait([&] { return good; }));  // long before the next turn
}

TEST_F(Monitoring, CarriesOutRequestsBesideRefreshesThatTakeTooLong) {
  auto settings = Of({"R[1]:int"});
  settings.factory = Between::Factory(network.Factory(), [&](auto id, auto, auto, Dispatch&) {
    if (static_cast<DispId>(id) == DispId::ReadRShort) std::this_thread::sleep_for(5ms);
    return std::optional<OrvexValue>();
  });
  Monitor monitor(settings, 1ms);
  for (int i = 0; i < 5; ++i) {
    auto answer = monitor.Write({{"R[1]", i}});
    ASSERT_EQ(answer.wait_for(10s), std::future_status::ready);
    EXPECT_TRUE(answer.get().front());
  }
}

TEST_F(Monitoring, WaitsForACallBackThatRuns) {
  std::atomic<bool> inside = false;
  std::atomic<bool> through = false;
  Monitor monitor(Of({"R[1]"}), 1ms, {.onRefresh = [&](const Refreshed&) {
                    if (through) return;
                    happening.Note([&] { inside = true; });
                    std::this_thread::sleep_for(500ms);  // longer than the time-out
                    through = true;
                  }});
  EXPECT_TRUE(happening.Wait([&] { return inside.load(); }));
  monitor.Stop();
  EXPECT_TRUE(through);
}

}  // namespace
}  // namespace orif::live::test

// Whether the gateway's own threads do their work. A thread says so by a beat; who watches it
// looks at how long ago that was, and so never waits for it.
#pragma once

#include <atomic>
#include <chrono>
#include <list>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace orif::gateway {

/// Of one thread, which beats it at least every few seconds, also while it waits.
class Heartbeat {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Heartbeat(std::string name) : name_(std::move(name)) {}
  void Beat() { last_ = Clock::now(); }

 private:
  friend class Health;
  const std::string name_;
  std::atomic<Clock::time_point> last_ = Clock::now();
};

/// All heartbeats. Any thread may use it at any time.
class Health {
 public:
  /// A thread that has not beaten for longer than `limit` stands still.
  explicit Health(std::chrono::nanoseconds limit = std::chrono::seconds(30)) : limit_(limit) {}

  /// A heartbeat for the thread `name`, which is watched from now on. It lives as long as Health.
  Heartbeat& Watch(std::string name);

  /// The names of the threads that stand still.
  std::vector<std::string> Stuck(Heartbeat::Clock::time_point now = Heartbeat::Clock::now()) const;

 private:
  const std::chrono::nanoseconds limit_;
  mutable std::mutex mutex_;  // guards the list, not the beats
  std::list<Heartbeat> beats_;
};

}  // namespace orif::gateway

// Lets the time of a simulated network pass as the computer's does, for those who own one and want
// that. Not installed.
#pragma once

#include <chrono>
#include <mutex>
#include <utility>

#include "simulator/Network.h"

namespace orif::sim {

/// Begins when it is made. Any thread may use it.
class RealTime {
 public:
  explicit RealTime(Network network) : network_(std::move(network)) {}
  RealTime(const RealTime&) = delete;
  RealTime& operator=(const RealTime&) = delete;
  ~RealTime() = default;

  /// Advances the network to the present.
  void Follow() {
    using std::chrono::milliseconds;
    const std::lock_guard lock(mutex_);
    const auto passed =
        std::chrono::floor<milliseconds>(std::chrono::steady_clock::now() - followedTo_);
    followedTo_ += passed;
    network_.Advance(passed);
  }

 private:
  std::mutex mutex_;
  Network network_;
  std::chrono::steady_clock::time_point followedTo_ = std::chrono::steady_clock::now();
};

}  // namespace orif::sim

// The waits before a lost link is tried again. Internal.
#pragma once

#include <random>

#include "live/Clock.h"

namespace orif::live {

class Backoff {
 public:
  explicit Backoff(const Retry& retry)
      : retry_(retry), wait_(retry.first), random_(std::random_device()()) {}

  /// The next wait.
  Milliseconds Next() {
    const Milliseconds wait = wait_;
    wait_ = wait_ > retry_.most / 2 ? retry_.most : wait_ * 2;
    std::uniform_real_distribution<double> part(0, retry_.shortened);
    return wait - std::chrono::duration_cast<Milliseconds>(wait * part(random_));
  }

  /// The next wait is the first again.
  void Reset() { wait_ = retry_.first; }

 private:
  Retry retry_;
  Milliseconds wait_;
  std::minstd_rand random_;
};

}  // namespace orif::live

// The last hour of a number in 120 steps of 30 s, each with the least, the greatest and the last
// value. A full one takes 1440 bytes; one of a value that never changes a few.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace orif::page {

class History {
 public:
  static constexpr std::size_t Steps = 120;
  static constexpr std::chrono::seconds StepLength{30};

  /// Steps are counted from the beginning of the steady clock.
  static std::int64_t StepAt(std::chrono::steady_clock::time_point time) {
    return time.time_since_epoch() / StepLength;
  }

  static constexpr float None = std::numeric_limits<float>::quiet_NaN();

  struct Step {
    float least = None;
    float greatest = None;
    float last = None;
  };

  /// From now on, in `step`, the value is this; None if there is none.
  void Add(std::int64_t step, float value);

  /// The steps up to `step`, oldest first. The value goes on as it was last.
  std::array<Step, Steps> Read(std::int64_t step) const;

 private:
  Step& Newest() { return ring_[(begin_ + ring_.size() - 1) % ring_.size()]; }
  void Append(float value);

  std::vector<Step> ring_;
  std::size_t begin_ = 0;    // index of the oldest
  std::int64_t newest_ = 0;  // number of the newest
};

}  // namespace orif::page

// Time for controllers and monitors: where it comes from, when the next refresh is due, and how
// long to wait before a lost link is tried again.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>

#include "live/live_export.h"

namespace orif::live {

/// Milliseconds, in which periods and time-outs are counted.
using Milliseconds = std::chrono::milliseconds;

/// The longest wait and the longest period.
inline constexpr Milliseconds LongestWait = std::chrono::days(1);

/// The computer's clocks. A program that simulates time gives a controller one of its own.
class ORIF_LIVE_HEADER_TYPE Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock() = default;

  /// A time that never goes back.
  virtual std::chrono::steady_clock::time_point Now() const {
    return std::chrono::steady_clock::now();
  }

  /// Date and time.
  virtual std::chrono::system_clock::time_point Wall() const {
    return std::chrono::system_clock::now();
  }
};

/// A steady pace: turns are due a whole number of periods after the first one. If one came late,
/// the last one that was missed is made up for at once, and those before it are left out.
class Turns {
 public:
  /// A time that never goes back.
  using Time = std::chrono::steady_clock::time_point;

  /// A turn `every` so often; more than 0.
  explicit Turns(Milliseconds every) : every_(every) {}

  /// When the next turn is due, if the one before has ended at `now`. The first one is due at once.
  /// Call it once for each turn. Turns that are left out meanwhile count as skipped if `counted`.
  Time Next(Time now, bool counted = true) {
    if (!start_) {
      start_ = now;
      return now;
    }
    const std::int64_t next = turn_ + 1;
    turn_ = std::max<std::int64_t>(next, (now - *start_) / every_);
    if (counted) skipped_ += turn_ - next;
    return *start_ + turn_ * every_;
  }

  /// How many turns were left out and counted.
  std::int64_t Skipped() const { return skipped_; }

 private:
  Milliseconds every_;
  std::optional<Time> start_;
  std::int64_t turn_ = 0;
  std::int64_t skipped_ = 0;
};

/// How long to wait before a lost link is tried again: `first` at first, then twice as long each
/// time, up to `most`. Each wait is shortened at random, so that programs which lost their links
/// together do not all come back at the same moment.
struct Retry {
  Milliseconds first{1000};  ///< more than 0
  Milliseconds most{30000};  ///< not less than `first`
  double shortened = 0.25;   ///< by up to which part of itself, from 0 (never) to 1
};

}  // namespace orif::live

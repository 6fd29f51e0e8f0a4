// When something that comes and goes is there: from a time on, for so long, and again after a
// period. Times are the simulator's own, counted from the making of a controller; they pass when
// Network::Advance says so. Plain values, used by everything that changes by itself.
#pragma once

#include <chrono>
#include <cstdint>

namespace orif::sim {

using Time = std::chrono::milliseconds;

/// Before anything has begun.
inline constexpr Time BeforeStart{-1};

struct Schedule {
  static constexpr Time Forever = std::chrono::hours(24) * 36500;

  Time at{};
  Time length = Forever;
  Time every{};  // from one beginning to the next; 0 comes only once

  /// How many times it has begun, or ended, up to and including `now`.
  std::int64_t Begun(Time now) const { return Count(now - at); }
  std::int64_t Ended(Time now) const { return Count(now - at - length); }

  bool IsOn(Time now) const { return Begun(now) > Ended(now); }

  /// When it begins for the time `number`, counted from 0.
  Time Begin(std::int64_t number) const { return at + number * every; }

 private:
  std::int64_t Count(Time since) const {
    if (since < Time::zero()) return 0;
    return every > Time::zero() ? since / every + 1 : 1;
  }
};

}  // namespace orif::sim

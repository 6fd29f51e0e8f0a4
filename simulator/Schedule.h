// When something is on that comes and goes: it comes at a time, stays for a while, and may come
// again after a period. Times are simulated: they count from 0 when a controller is made, and only
// Network::Advance moves them on. Plain values.
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
  Time every{};  // from one beginning to the next; 0: it comes only once

  /// How many times it has begun up to and including `now`.
  std::int64_t Begun(Time now) const { return Count(now - at); }

  /// How many times it has ended up to and including `now`.
  std::int64_t Ended(Time now) const { return Count(now - at - length); }

  bool IsOn(Time now) const { return Begun(now) > Ended(now); }

  /// When occurrence `number` begins, counted from 0.
  Time Begin(std::int64_t number) const { return at + number * every; }

 private:
  std::int64_t Count(Time since) const {
    if (since < Time::zero()) return 0;
    return every > Time::zero() ? since / every + 1 : 1;
  }
};

}  // namespace orif::sim

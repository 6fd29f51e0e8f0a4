// The time that commands go by: the machine's, or with --fast the simulator's, which passes as fast
// as the tool can go. With --simulate the clock also drives the simulated cell.
#pragma once

#include <chrono>

#include "tools/orif/Session.h"

namespace orif::tool {

class Clock {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using WallTime = std::chrono::sys_time<Milliseconds>;

  explicit Clock(Cell& cell);

  /// Time since the clock was made; never goes back. Asking does not move simulated time.
  Milliseconds Now() const;

  /// Date and time in UTC. With --fast it starts at a fixed date, so that two runs are alike.
  WallTime Wall() const;

  /// Waits until Now() reaches `when` or the user interrupts.
  void SleepUntil(Milliseconds when);

 private:
  void AdvanceCell(Milliseconds until);

  sim::Network* network_;
  bool fast_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  Milliseconds cellTime_{0};  // the simulated cell's time
};

/// "2026-01-01T00:00:00.000Z".
std::string Iso8601(Clock::WallTime time);

}  // namespace orif::tool

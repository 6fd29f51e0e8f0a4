// The time by which commands run: that of the machine, or under --fast that of the simulator, which
// passes as fast as the tool can go. Under --simulate the clock is also what drives the simulated
// cell.
#pragma once

#include <chrono>

#include "tools/orif/Session.h"

namespace orif::tool {

class Clock {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using WallTime = std::chrono::sys_time<Milliseconds>;

  explicit Clock(Cell& cell);

  /// Since the clock was made; never goes back. Simulated time does not move by asking.
  Milliseconds Now() const;

  /// Date and time, UTC. Under --fast a fixed date and the time since then, so that two runs are
  /// alike.
  WallTime Wall() const;

  /// Waits until Now() is `when`, or the user interrupts.
  void SleepUntil(Milliseconds when);

 private:
  void AdvanceCell(Milliseconds until);

  sim::Network* network_;
  bool fast_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  Milliseconds cellTime_{0};  // as far as the simulated cell has come
};

/// "2026-01-01T00:00:00.000Z".
std::string Iso8601(Clock::WallTime time);

}  // namespace orif::tool

// The time that commands go by: the machine's, or with --fast the simulator's, which passes as fast
// as the tool can go. With --simulate the clock also drives the simulated cell.
#pragma once

#include <chrono>
#include <functional>

#include "live/Clock.h"
#include "tools/orif/Cell.h"

namespace orif::tool {

class Clock : public live::Clock {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using WallTime = std::chrono::sys_time<Milliseconds>;

  explicit Clock(Cell& cell);

  /// Never goes back. Asking does not move simulated time.
  std::chrono::steady_clock::time_point Now() const override;

  /// Date and time in UTC. With --fast it starts at a fixed date, so that two runs are alike.
  std::chrono::system_clock::time_point Wall() const override;

  /// Waits until Now() reaches `when`, the user interrupts, or `meanwhile` answers false; it is
  /// called again and again, and at least once.
  void SleepUntil(std::chrono::steady_clock::time_point when,
                  const std::function<bool()>& meanwhile);

 private:
  Milliseconds Passed() const;
  void AdvanceCell(Milliseconds until);

  sim::Network* network_;
  bool fast_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  Milliseconds cellTime_{0};  // the simulated cell's time
};

}  // namespace orif::tool

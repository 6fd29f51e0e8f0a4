#include "tools/orif/Clock.h"

#include <algorithm>

#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;

constexpr auto FastStart = std::chrono::sys_days{std::chrono::year{2026} / 1 / 1};

// How often the cell moves at least, and how soon an interrupt is noticed.
constexpr Clock::Milliseconds LongestSleep = 20ms;

}  // namespace

Clock::Clock(Cell& cell) : network_(cell.Simulated()), fast_(cell.Options().fast) {}

Clock::Milliseconds Clock::Passed() const {
  return std::chrono::floor<Milliseconds>(std::chrono::steady_clock::now() - start_);
}

std::chrono::steady_clock::time_point Clock::Now() const {
  return fast_ ? start_ + cellTime_ : std::chrono::steady_clock::now();
}

std::chrono::system_clock::time_point Clock::Wall() const {
  return fast_ ? FastStart + cellTime_ : std::chrono::system_clock::now();
}

void Clock::AdvanceCell(Milliseconds until) {
  const Milliseconds step = std::max(until - cellTime_, 0ms);
  if (network_ != nullptr) network_->Advance(step);
  cellTime_ += step;
}

void Clock::SleepUntil(std::chrono::steady_clock::time_point when,
                       const std::function<bool()>& meanwhile) {
  if (fast_) {
    AdvanceCell(std::chrono::ceil<Milliseconds>(when - start_));
    if (meanwhile) meanwhile();
    return;
  }
  // At least one look, also where turns are always late.
  while (true) {
    AdvanceCell(Passed());
    if ((meanwhile && !meanwhile()) || platform::Interrupted() || Now() >= when) return;
    platform::Sleep(std::min(std::chrono::ceil<Milliseconds>(when - Now()), LongestSleep));
  }
}

}  // namespace orif::tool

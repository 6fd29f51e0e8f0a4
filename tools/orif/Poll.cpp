#include "tools/orif/Poll.h"

#include <algorithm>
#include <utility>

#include "tools/orif/Error.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;
using Milliseconds = Pace::Milliseconds;

/// How long to wait before a lost link is tried again.
constexpr Milliseconds RetryAfter = 1s;

}  // namespace

Poll::Poll(Cell& cell, std::vector<Designation> designations, const Pace& pace)
    : cell_(cell),
      clock_(cell),
      designations_(std::move(designations)),
      pace_(pace),
      live_(std::make_unique<Live>(cell_, designations_)) {
  platform::CatchInterrupt();
}

std::optional<Link> Poll::Next() {
  if (!WaitUntilDue()) return {};
  began_ = clock_.Now();
  wall_ = clock_.Wall();
  const Link link = lost_ ? ConnectAnew() : Refresh();
  took_ = clock_.Now() - began_;
  ++refreshes_;
  return link;
}

bool Poll::WaitUntilDue() {
  if (turn_ < 0) start_ = clock_.Now();
  const std::int64_t next = turn_ + 1;
  turn_ = std::max<std::int64_t>(next, (clock_.Now() - start_) / pace_.every);
  const Milliseconds due = turn_ * pace_.every;
  if ((pace_.length && due >= *pace_.length) || (pace_.count && refreshes_ >= *pace_.count))
    return false;
  if (!lost_) skipped_ += turn_ - next;
  clock_.SleepUntil(start_ + due);
  return !platform::Interrupted();
}

Link Poll::Refresh() {
  if (live_->readout.Read()) return Link::Up;
  if (refreshes_ == 0) throw live_->session.Refusal("the values cannot be read");
  // The controller may allow one connection only: end this one before the next begins.
  live_->session.Core().Disconnect();
  lost_ = true;
  retryAt_ = began_ + RetryAfter;
  ++gaps_;
  return Link::Lost;
}

Link Poll::ConnectAnew() {
  if (began_ < retryAt_) return Link::StillLost;
  try {
    auto live = std::make_unique<Live>(cell_, designations_);
    if (live->readout.Read()) {
      live_ = std::move(live);
      lost_ = false;
      return Link::Back;
    }
  } catch (const Error&) {
    // Not back yet. The trail has the reason.
  }
  retryAt_ = clock_.Now() + RetryAfter;
  return Link::StillLost;
}

}  // namespace orif::tool

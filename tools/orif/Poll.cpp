#include "tools/orif/Poll.h"

#include <utility>

#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

live::Settings With(live::Settings settings, const std::shared_ptr<Clock>& clock) {
  settings.clock = clock;
  return settings;
}

}  // namespace

Poll::Poll(Cell& cell, const std::vector<std::string>& items, const Pace& pace)
    : clock_(std::make_shared<Clock>(cell)),
      controller_(With(cell.Settings(items), clock_)),
      pace_(pace),
      pacer_(pace.every) {
  platform::CatchInterrupt();
  if (!controller_.Connect() && !pace_.wait) throw NoConnection(controller_);
}

std::optional<Link> Poll::Next() {
  const auto due = pacer_.Due(clock_->Now());
  const auto sinceStart = pacer_.SinceStart(due);
  if ((pace_.length && sinceStart >= *pace_.length) || (pace_.count && refreshes_ >= *pace_.count))
    return {};
  bool goesOn = true;
  clock_->SleepUntil(due, [&] { return goesOn = !meanwhile_ || meanwhile_(); });
  if (platform::Interrupted() || !goesOn) return {};

  const auto began = clock_->Now();
  began_ = pacer_.SinceStart(began);
  wall_ = std::chrono::floor<Pace::Milliseconds>(clock_->Wall());
  const bool first = refreshes_++ == 0;
  if (onRefresh_) onRefresh_(true);
  const bool good = controller_.Refresh();
  if (onRefresh_) onRefresh_(false);
  took_ = std::chrono::floor<Pace::Milliseconds>(clock_->Now() - began);
  if (first && !pace_.wait) CheckFirstRefresh(controller_, good);
  pacer_.Take();
  return pacer_.link.Next(good);
}

}  // namespace orif::tool

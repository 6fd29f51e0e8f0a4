#include "simulator/FaultInjection.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "simulator/Operations.h"

namespace orif::sim {

void FaultInjection::FailNext(std::string_view operation, Failure failure, int times) {
  if (!ReachesController(operation)) {
    throw std::invalid_argument("No operation with the controller: " + std::string(operation));
  }
  if (times > 0) orders_.push_back({std::string(operation), std::move(failure), times});
}

void FaultInjection::Stop() {
  orders_.clear();
  delay_ = 0;
  cut_ = false;
}

std::int32_t FaultInjection::Delay() const {
  std::int32_t delay = delay_;
  for (const LateAnswers& late : delays_) {
    if (late.schedule.IsOn(now_)) delay = std::max(delay, late.milliseconds);
  }
  return delay;
}

bool FaultInjection::LinkIsDown() const {
  return cut_ ||
         std::ranges::any_of(drops_, [this](const Schedule& drop) { return drop.IsOn(now_); });
}

std::int64_t FaultInjection::Losses() const {
  std::int64_t losses = losses_;
  for (const Schedule& drop : drops_) losses += drop.Begun(now_);
  return losses;
}

std::optional<Failure> FaultInjection::Take(std::string_view operation) {
  const auto order = std::ranges::find(orders_, operation, &Order::operation);
  if (order == orders_.end()) return std::nullopt;
  Failure failure = order->failure;
  if (--order->times == 0) orders_.erase(order);
  return failure;
}

}  // namespace orif::sim

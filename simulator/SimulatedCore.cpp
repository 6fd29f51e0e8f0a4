#include "simulator/SimulatedCore.h"

#include <algorithm>

#include "orif/base/Fault.h"
#include "simulator/Operation.h"

namespace orif::sim {
namespace {

Failure FailureOf(Status status) {
  return {static_cast<std::int32_t>(status), std::string(StatusText(status))};
}

}  // namespace

OrvexValue SimulatedCore::Invoke(std::int32_t id, OrvexCall call,
                                 std::span<const OrvexValue> arguments) {
  lateness_ = 0;
  const Operation* operation = Find(id, call);
  if (operation == nullptr) throw Fault("Unknown operation");
  const Arguments checked(operation->parameters, arguments);
  if (operation->place == Operation::Place::Local) return operation->handler(*this, checked);
  const auto lock = network_.Lock();
  if (operation->place == Operation::Place::Connection) {
    if (const auto obstacle = Reach(operation->name)) return Answer(*obstacle);
  }
  return operation->handler(*this, checked);
}

std::int32_t SimulatedCore::Lookup(std::string_view name) {
  const auto operation = std::ranges::find(Operations(), name, &Operation::name);
  if (operation == Operations().end()) throw Fault("Unknown operation " + std::string(name));
  return operation->id;
}

std::optional<Failure> SimulatedCore::Obstacle(std::string_view operation, Controller& controller) {
  if (auto failure = controller.FaultInjection().Take(operation)) return failure;
  const std::int32_t delay = controller.FaultInjection().Delay();
  const bool tooLate = delay > 0 && delay > timeOut_;
  lateness_ = tooLate ? std::max(timeOut_, 0) : delay;  // nobody waits any longer
  if (tooLate) return FailureOf(Status::TimedOut);
  return std::nullopt;
}

std::optional<Failure> SimulatedCore::Reach(std::string_view operation) {
  if (!controller_) return FailureOf(Status::NotConnected);
  if (controller_->FaultInjection().Losses() != losses_) return FailureOf(Status::ConnectionLost);
  return Obstacle(operation, *controller_);
}

OrvexValue SimulatedCore::Answer(const Failure& failure) {
  lastError_ = failure.text;
  return MakeValue(failure.status);
}

OrvexValue SimulatedCore::Answer(Status status) {
  return status == Status::Ok ? MakeValue(std::int32_t{0}) : Answer(FailureOf(status));
}

void SimulatedCore::DropConnection() {
  map_.Clear();
  controller_.reset();
}

}  // namespace orif::sim

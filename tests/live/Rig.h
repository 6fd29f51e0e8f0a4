// A Controller over a simulated cell, with time that tests move on.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "live/live.h"
#include "simulator/Network.h"

namespace orif::live::test {

using namespace std::chrono_literals;  // NOLINT(google-build-using-namespace): for tests

class HandClock : public Clock {
 public:
  std::chrono::steady_clock::time_point Now() const override {
    return std::chrono::steady_clock::time_point(time);
  }
  std::chrono::system_clock::time_point Wall() const override {
    return std::chrono::system_clock::time_point(time);
  }

  Milliseconds time{0};
};

/// Passes calls on to another object, unless `before` throws or answers itself.
class Between : public Dispatch {
 public:
  using Before = std::function<std::optional<OrvexValue>(
      std::int32_t id, OrvexCall call, std::span<const OrvexValue> arguments, Dispatch& inner)>;

  Between(std::shared_ptr<Dispatch> inner, Before before)
      : inner_(std::move(inner)), before_(std::move(before)) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    if (const auto answer = before_(id, call, arguments, *inner_)) return *answer;
    return inner_->Invoke(id, call, arguments);
  }
  std::int32_t Lookup(std::string_view name) override { return inner_->Lookup(name); }

  /// A factory that puts `before` in front of the objects of `factory`.
  static DispatchFactory Factory(DispatchFactory factory, Before before) {
    return [factory = std::move(factory), before = std::move(before)] {
      return std::make_shared<Between>(factory(), before);
    };
  }

 private:
  std::shared_ptr<Dispatch> inner_;
  Before before_;
};

/// The cell "cell" with data of every kind.
inline sim::Controller& MakeCell(sim::Network& network) {
  sim::Controller& robot = network.AddController("cell");
  robot.NumericRegister(1) = 5;
  robot.NumericRegister(2) = 2.5F;
  robot.Comment(sim::CommentKind::NumericRegister, 1) = "parts";
  sim::Position& position = robot.PositionRegister(1, 1);
  position.xyzwpr = {400, 0, 300, 180, -90, 0, 0, 0, 0};
  position.validC = 1;
  robot.StringRegister(1) = "gripper";
  robot.SetVariable("$SPEED", 80);
  robot.SetVariable("$LOAD", 2.5F);
  robot.SetVariable("$MODE", std::string("AUTO"));
  robot.TaskList() = {{.program = "MAIN", .line = 12, .state = 1}};
  robot.Alarms(sim::AlarmList::Active) = {
      {.id = 11, .number = 7, .year = 2026, .message = "Door open"}};
  robot.Signal(sim::SignalKind::SDO, 3) = 1;
  robot.Signal(sim::SignalKind::GI, 2) = 77;
  return robot;
}

}  // namespace orif::live::test

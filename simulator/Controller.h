// The data of one simulated controller, set up and looked at through typed accessors, shared by
// every core object that is connected to it. Made by a Network. The sizes given at its making never
// change, so that an assignment can refer to its data. Nothing here is locked: core objects and
// behaviours come here under the network's lock, and whoever else does while other threads use the
// network takes it himself (Network::Lock).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/Alarms.h"
#include "simulator/Behaviour.h"
#include "simulator/FaultInjection.h"
#include "simulator/NumericRegisters.h"
#include "simulator/Positions.h"
#include "simulator/Signals.h"
#include "simulator/Tasks.h"
#include "simulator/Texts.h"
#include "simulator/Variables.h"

namespace orif::sim {

/// How much of each kind of data a controller has. It never changes once the controller is made.
struct Capacity {
  std::size_t numericRegisters = 10000;  ///< R[1] and up
  std::size_t positionRegisters = 500;   ///< of each motion group
  std::size_t stringRegisters = 500;     ///< SR[1] and up
  std::size_t motionGroups = 8;          ///< 1 and up
  std::size_t userFrames = 9;            ///< of each motion group, the world frame not counted
};

/// Indices, motion groups and signal numbers count from 1. Members throw std::out_of_range for one
/// that the controller does not have.
class Controller {
 public:
  /// All registers are 0 or empty; there are no variables, tasks or alarms.
  explicit Controller(const Capacity& capacity = {});
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;
  ~Controller() = default;

  /// A numeric register, integer or real: `NumericRegister(1) = 5` or `= 2.5f`.
  NumericValue& NumericRegister(std::int32_t index) { return numericRegisters_.At(index); }

  /// A position register. Its fields validC and validJ say which form it holds.
  Position& PositionRegister(std::int32_t group, std::int32_t index) {
    return positionRegisters_.At(group, index);
  }

  /// The current position of a motion group in the world frame.
  Position& CurrentPosition(std::int32_t group) { return currentPositions_.At(group); }

  /// The origin of a user frame in the world frame: X, Y and Z in mm.
  CurrentPositions::Origin& FrameOrigin(std::int32_t group, std::int32_t frame) {
    return currentPositions_.FrameOrigin(group, frame);
  }

  /// Sets a system variable: an integer, a real, a text or a position. A new name makes a new
  /// variable. Throws std::invalid_argument for another type than the variable has.
  void SetVariable(std::string_view name, VariableValue value) {
    variables_.Set(name, std::move(value));
  }

  /// The value of a system variable. Throws std::out_of_range if there is none of that name.
  const VariableValue& Variable(std::string_view name) const { return variables_.At(name); }

  /// A string register. Clients read its first 80 bytes.
  std::string& StringRegister(std::int32_t index) { return texts_.StringRegister(index); }

  /// The comment of a register or a signal. Clients read its first 80 bytes.
  std::string& Comment(CommentKind kind, std::int32_t index) { return texts_.Comment(kind, index); }

  /// A signal: 0 or 1 for a bit, a whole number for a group.
  std::int32_t& Signal(SignalKind kind, std::int32_t number) { return signals_.At(kind, number); }

  /// The tasks, in the order in which the controller lists them.
  std::vector<Task>& TaskList() { return tasks_.List(); }

  /// An alarm list, newest alarm first. The command "CLRALM" empties the active one.
  std::vector<Alarm>& Alarms(AlarmList list) { return alarms_.List(list); }

  /// The commands that clients sent and the controller accepted, oldest first.
  const std::vector<std::string>& Commands() const { return commands_; }

  /// Makes the controller fail, answer late or lose its connections.
  sim::FaultInjection& FaultInjection() { return faultInjection_; }

  /// Adds what the controller does by itself, as if it had been doing so since its time began.
  void Add(Behaviour behaviour);

  /// Adds an alarm that comes and goes by itself.
  void Add(Alarm alarm, const Schedule& schedule) { alarms_.Add(std::move(alarm), schedule, now_); }

  /// Moves the controller's time on. It starts at 0 and moves in no other way; Network::Advance
  /// calls this for all controllers. Throws std::invalid_argument for a negative time.
  void Advance(Time by);

  /// The controller's time.
  Time Now() const { return now_; }

  /// For core objects: opens the data that an assignment piece names.
  OpenedSource Open(const Piece& piece);

  /// For core objects: carries out a command, "CLRALM" alone or with a number above 0.
  Status Run(std::string_view command);

  /// For core objects, which read and write runs of signals.
  sim::Signals& Signals() { return signals_; }

 private:
  NumericRegisters numericRegisters_;
  PositionRegisters positionRegisters_;
  CurrentPositions currentPositions_;
  Variables variables_;
  Texts texts_;
  Tasks tasks_;
  sim::Alarms alarms_;
  sim::Signals signals_;
  std::vector<std::string> commands_;
  sim::FaultInjection faultInjection_;
  std::vector<Behaviour> behaviours_;
  Time now_{};
};

}  // namespace orif::sim

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
#include "simulator/Misbehaviour.h"
#include "simulator/NumericRegisters.h"
#include "simulator/Positions.h"
#include "simulator/Signals.h"
#include "simulator/Tasks.h"
#include "simulator/Texts.h"
#include "simulator/Variables.h"

namespace orif::sim {

/// How much of each kind of data a controller has.
struct Layout {
  std::size_t numericRegisters = 10000;  ///< R[1] and up
  std::size_t positionRegisters = 500;   ///< of each motion group
  std::size_t stringRegisters = 500;     ///< SR[1] and up
  std::size_t motionGroups = 8;          ///< 1 and up
  std::size_t userFrames = 9;            ///< of each motion group, the world frame not counted
};

/// Indices, groups and signal numbers count from 1; one that the controller does not have throws
/// std::out_of_range.
class Controller {
 public:
  /// With all registers 0 and empty, no variables, tasks or alarms.
  explicit Controller(const Layout& layout = {});
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;
  ~Controller() = default;

  /// Integer or real: `NumericRegister(1) = 5` or `= 2.5f`.
  NumericValue& NumericRegister(std::int32_t index) { return numericRegisters_.At(index); }

  /// In both forms, of which the register holds one.
  Position& PositionRegister(std::int32_t group, std::int32_t index) {
    return positionRegisters_.At(group, index);
  }

  /// Where a motion group stands, in the world frame.
  Position& CurrentPosition(std::int32_t group) { return currentPositions_.At(group); }

  /// X, Y and Z of a user frame's origin in the world frame, in mm.
  CurrentPositions::Origin& FrameOrigin(std::int32_t group, std::int32_t frame) {
    return currentPositions_.FrameOrigin(group, frame);
  }

  /// System variables: integer, real, text or position. Setting one that is new makes it; a
  /// variable keeps the type that it was made with (std::invalid_argument).
  void SetVariable(std::string_view name, VariableValue value) {
    variables_.Set(name, std::move(value));
  }
  const VariableValue& Variable(std::string_view name) const { return variables_.At(name); }

  /// Texts, of which the words show up to 80 bytes.
  std::string& StringRegister(std::int32_t index) { return texts_.StringRegister(index); }
  std::string& Comment(CommentKind kind, std::int32_t index) { return texts_.Comment(kind, index); }

  /// 0 or 1 for a bit signal.
  std::int32_t& Signal(SignalKind kind, std::int32_t number) { return signals_.At(kind, number); }

  /// In the order in which the controller lists them.
  std::vector<Task>& TaskList() { return tasks_.List(); }

  /// "CLRALM" empties the active alarms.
  std::vector<Alarm>& Alarms(AlarmList list) { return alarms_.List(list); }

  /// The commands that were accepted, oldest first.
  const std::vector<std::string>& Commands() const { return commands_; }

  /// Failing, answering late, losing connections.
  Misbehaviour& Misbehave() { return misbehaviour_; }

  /// What the controller does by itself from now on, as if it had done so since its time began.
  void Add(Behaviour behaviour);
  void Add(Alarm alarm, const Schedule& schedule) { alarms_.Add(std::move(alarm), schedule, now_); }

  /// Lets time pass; it begins with 0 and passes in no other way. Throws std::invalid_argument for
  /// a negative time.
  void Advance(Time by);
  Time Now() const { return now_; }

  /// What core objects do with a controller: open the data that a piece names, carry out a command
  /// line ("CLRALM", or "CLRALM" with a number above 0), read and write runs of signals.
  OpenedSource Open(const Piece& piece);
  Status Run(std::string_view command);
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
  Misbehaviour misbehaviour_;
  std::vector<Behaviour> behaviours_;
  Time now_{};
};

}  // namespace orif::sim

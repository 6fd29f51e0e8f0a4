#include "simulator/Controller.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "simulator/Piece.h"

namespace orif::sim {

Controller::Controller(const Capacity& capacity)
    : numericRegisters_(capacity.numericRegisters),
      positionRegisters_(capacity.motionGroups, capacity.positionRegisters),
      currentPositions_(capacity.motionGroups, capacity.userFrames),
      texts_(capacity.stringRegisters, capacity.numericRegisters, capacity.positionRegisters) {}

void Controller::Add(Behaviour behaviour) {
  behaviour(*this, BeforeStart, now_);
  behaviours_.push_back(std::move(behaviour));
}

void Controller::Advance(Time by) {
  if (by < Time::zero()) throw std::invalid_argument("Time does not pass backwards");
  const Time before = std::exchange(now_, now_ + by);
  for (const Behaviour& behaviour : behaviours_) behaviour(*this, before, now_);
  alarms_.Advance(before, now_);
  faultInjection_.Advance(now_);
}

OpenedSource Controller::Open(const Piece& piece) {
  if (piece.symbol.starts_with('$')) return variables_.Open(piece);
  const bool comment = piece.letters == "C";
  const bool grouped = piece.symbol == "PR" || piece.symbol == "POS";
  if (piece.group != 0 && !grouped) return {Status::UnknownVariable, nullptr};
  if (comment || piece.symbol == "SR") return texts_.Open(piece);
  if (piece.symbol == "R") return numericRegisters_.Open(piece);
  if (piece.symbol == "PR") return positionRegisters_.Open(piece);
  if (piece.symbol == "POS") return currentPositions_.Open(piece);
  if (piece.symbol == "PRG") return tasks_.Open(piece);
  if (piece.symbol == "ALM") return alarms_.Open(piece);
  return {Status::UnknownVariable, nullptr};
}

Status Controller::Run(std::string_view command) {
  static constexpr std::string_view ClearAlarms = "CLRALM";
  if (!command.starts_with(ClearAlarms)) return Status::UnknownCommand;
  const std::string_view rest = command.substr(ClearAlarms.size());
  if (!rest.empty()) {
    const bool number = rest.size() > 1 && rest[0] == ' ' && rest[1] != '0' &&
                        rest.find_first_not_of("0123456789", 1) == rest.npos;
    if (!number) return Status::UnknownCommand;
  }
  alarms_.List(AlarmList::Active).clear();
  commands_.emplace_back(command);
  return Status::Ok;
}

}  // namespace orif::sim

// The positions of a controller: its position registers and the current position of each motion
// group. Owned by a Controller, one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulator/Position.h"

namespace orif::sim {

struct Piece;

class PositionRegisters {
 public:
  /// Registers 1 to `count` for each of `groups` motion groups, none of them valid in either form.
  PositionRegisters(std::size_t groups, std::size_t count)
      : groups_(groups, std::vector<Position>(count)) {}

  /// Throws std::out_of_range if there is no such group or register.
  Position& At(std::int32_t group, std::int32_t index) {
    return groups_.at(static_cast<std::size_t>(group) - 1).at(static_cast<std::size_t>(index) - 1);
  }

  /// Opens "PR[n]" for group 1 or "PR[Gg:n]" for any group: whole records or a window of each.
  OpenedSource Open(const Piece& piece);

 private:
  std::vector<std::vector<Position>> groups_;
};

class CurrentPositions {
 public:
  using Origin = std::array<float, 3>;  // X, Y, Z in mm

  /// `frames` user frames, not counting the world frame, which is user frame 0.
  CurrentPositions(std::size_t groups, std::size_t frames);

  /// The current position of `group` in the world frame.
  Position& At(std::int32_t group) { return Of(group).position; }

  /// The origin of user frame `frame`, from 1 on, in the world frame. Frames are not rotated.
  Origin& FrameOrigin(std::int32_t group, std::int32_t frame) {
    return Of(group).origins.at(static_cast<std::size_t>(frame) - 1);
  }

  /// Opens "POS[f]" for group 1 or "POS[Gg:f]" for any group: the position in user frame f, read
  /// only.
  OpenedSource Open(const Piece& piece);

 private:
  class Cells;

  struct Group {
    Position position;
    std::vector<Origin> origins;
  };

  Group& Of(std::int32_t group) { return groups_.at(static_cast<std::size_t>(group) - 1); }

  std::vector<Group> groups_;
};

}  // namespace orif::sim

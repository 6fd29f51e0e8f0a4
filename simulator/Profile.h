// A value over time: points that it passes in steps or in straight lines, and what happens after
// the last one. Ramps, cycles and taught paths are all profiles. Plain values; a Behaviour makes
// data of a Controller follow one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "simulator/Schedule.h"
#include "simulator/Variables.h"

namespace orif::sim {

/// After the last point: stay there, start over, or go back and forth.
enum class Then { Hold, Repeat, Bounce };

/// From point to point: stay until the time of the next one, or move there evenly. Texts always
/// step, and so do the configuration and the frames of a position.
enum class Motion { Stepwise, Linear };

class Profile {
 public:
  struct Point {
    Time time{};
    VariableValue value;
  };

  /// The first value holds until the time of the first point. After `length`, which is not before
  /// the last point, the profile repeats or turns round. Throws std::invalid_argument unless the
  /// times rise and all values are of one type, positions with the same valid forms.
  Profile(std::vector<Point> points, Time length, Motion motion, Then then);

  VariableValue At(Time time) const;

  /// Whether the value changes, or another point is reached, between the two times.
  bool Changes(Time before, Time now) const;

 private:
  std::pair<std::int64_t, std::size_t> Leg(Time time) const;
  Time WithinRound(Time time) const;
  std::size_t PointBefore(Time within) const;

  std::vector<Point> points_;
  Time length_;
  Motion motion_;
  Then then_;
};

}  // namespace orif::sim

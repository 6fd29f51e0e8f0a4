// What a value is at any time: a list of points that it passes, in steps or in straight lines, and
// how it goes on behind the last. A ramp, a cycle and a taught path are all profiles. Plain values;
// a Behaviour lets data of a Controller follow one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "simulator/Schedule.h"
#include "simulator/Variables.h"

namespace orif::sim {

/// Behind the last point: stay there, begin again, or go back and forth.
enum class Then { Hold, Repeat, Bounce };

/// From point to point: stay until the next one, or go there evenly. Texts always step, and so do
/// a position's configuration and frames.
enum class Motion { Stepwise, Linear };

class Profile {
 public:
  struct Point {
    Time time{};
    VariableValue value;
  };

  /// The first value holds until the first point's time. `length`, at least the last point's time,
  /// is when it repeats or turns. Throws std::invalid_argument unless times rise and all values
  /// are of one type, positions with the same forms.
  Profile(std::vector<Point> points, Time length, Motion motion, Then then);

  VariableValue At(Time time) const;

  /// Whether the value moves, or another point is reached, between the two times.
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

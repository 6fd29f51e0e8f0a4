// The turns of a program that refreshes at a steady pace, and what its refreshes tell of the link.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "live/Clock.h"
#include "tools/orif/Link.h"

namespace orif::tool {

class Pacer {
 public:
  using Time = live::Turns::Time;
  using Milliseconds = std::chrono::milliseconds;

  explicit Pacer(Milliseconds every) : turns_(every) {}

  /// When the next turn is due, if the one before has ended at `now`. Asking again before it is
  /// taken does not change it.
  Time Due(Time now) {
    if (!due_) due_ = turns_.Next(now, !link.IsLost());
    if (!start_) start_ = due_;
    return *due_;
  }

  /// The turn is taken.
  void Take() { due_.reset(); }

  /// A time since the first turn was due; 0 before there is one.
  Milliseconds SinceStart(Time time) const {
    return start_ ? std::chrono::floor<Milliseconds>(time - *start_) : Milliseconds(0);
  }

  /// How many turns were left out.
  std::int64_t Skipped() const { return turns_.Skipped(); }

  LinkStates link;

 private:
  live::Turns turns_;
  std::optional<Time> start_;
  std::optional<Time> due_;
};

}  // namespace orif::tool

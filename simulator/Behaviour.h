// What a simulated controller does by itself as time passes. It depends on the time alone, not on
// the steps in which time passes. Controller::Add takes it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "simulator/Profile.h"
#include "simulator/Schedule.h"

namespace orif::sim {

class Controller;

/// Called when the time has passed from `before` to `now`, and at first with BeforeStart. While
/// time passes, the network's lock is held.
using Behaviour = std::function<void(Controller& robot, Time before, Time now)>;

/// Calls `put` with the profile's value whenever it changes. What a client writes in between stays
/// until the next change.
Behaviour Follow(Profile profile, std::function<void(Controller&, const VariableValue&)> put);

/// Runs the task `program` from line `first` to line `last` and over again, `each` on every line.
Behaviour WalkLines(std::string program, std::int16_t first, std::int16_t last, Time each);

}  // namespace orif::sim

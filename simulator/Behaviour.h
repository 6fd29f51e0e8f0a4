// What a simulated controller does by itself while its time passes. What one does depends on the
// time alone, never on the steps in which it passes. Given to Controller::Add.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "simulator/Course.h"
#include "simulator/Schedule.h"

namespace orif::sim {

class Controller;

/// Called when the time has passed from `before` to `now`, and at first with BeforeStart. While
/// time passes, the network's lock is held.
using Behaviour = std::function<void(Controller& robot, Time before, Time now)>;

/// Lets `put` store the value of the course whenever that changes. What a client writes in the
/// meantime stays until then.
Behaviour Follow(Course course, std::function<void(Controller&, const VariableValue&)> put);

/// Keeps the task `program` running from line `first` to line `last` and round again, `each` for
/// every line.
Behaviour WalkLines(std::string program, std::int16_t first, std::int16_t last, Time each);

}  // namespace orif::sim

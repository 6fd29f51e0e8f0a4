#include "simulator/Behaviour.h"

#include <algorithm>
#include <utility>

#include "simulator/Controller.h"

namespace orif::sim {

Behaviour Follow(Profile profile, std::function<void(Controller&, const VariableValue&)> put) {
  return [profile = std::move(profile), put = std::move(put)](Controller& robot, Time before,
                                                              Time now) {
    if (profile.Changes(before, now)) put(robot, profile.At(now));
  };
}

Behaviour WalkLines(std::string program, std::int16_t first, std::int16_t last, Time each) {
  return [program = std::move(program), first, last, each](Controller& robot, Time /*before*/,
                                                           Time now) {
    auto& tasks = robot.TaskList();
    const auto task = std::ranges::find(tasks, program, &Task::program);
    if (task == tasks.end()) return;
    task->line = static_cast<std::int16_t>(first + now / each % (last - first + 1));
    task->state = Task::Running;
  };
}

}  // namespace orif::sim

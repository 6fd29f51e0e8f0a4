// "orif tasks": lists the programs that run on the controller.
#include <array>
#include <string>

#include "tools/orif/Cell.h"
#include "tools/orif/List.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {
namespace {

constexpr auto TaskColumns = std::to_array<ListColumn>(
    {{"PROGRAM", "program"}, {"LINE", "line"}, {"STATE", "state"}, {"CALLED BY", "parent"}});

}  // namespace

void ShowTasks(const TaskOptions& options) {
  const auto tasks = (std::string("PRG[") + (options.noMacros ? "M" : "") +
                      (options.noVelto ? "V" : "") + "1-" + std::to_string(options.count) + "]");
  Cell cell(options.connection);
  Controller controller(cell.Settings({tasks}));
  ReadOnce(controller);
  PrintList(controller, options.format, TaskColumns, "no tasks");
}

}  // namespace orif::tool

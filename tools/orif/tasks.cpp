// "orif tasks": the programs that run on the controller.
#include <CLI/CLI.hpp>

#include "tools/orif/Commands.h"
#include "tools/orif/Format.h"
#include "tools/orif/List.h"
#include "tools/orif/Readout.h"

namespace orif::tool {
namespace {

struct TaskOptions {
  std::shared_ptr<Connection> connection;
  std::int32_t count = 20;
  bool noMacros = false;
  bool noVelto = false;
  std::string format;
};

constexpr auto TaskColumns = std::to_array<ListColumn>(
    {{"PROGRAM", "program"}, {"LINE", "line"}, {"STATE", "state"}, {"CALLED BY", "parent"}});

void ShowTasks(const TaskOptions& options) {
  const auto tasks =
      ParseDesignation(std::string("PRG[") + (options.noMacros ? "M" : "") +
                       (options.noVelto ? "V" : "") + "1-" + std::to_string(options.count) + "]");
  Cell cell(*options.connection);
  Session session(cell);
  Readout readout(session, {tasks});
  if (!readout.Read()) throw session.Refusal("the tasks could not be read");
  PrintList(readout, options.format, TaskColumns, "no tasks");
}

}  // namespace

void AddTasksCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("tasks", "List the programs that run");
  const auto options = std::make_shared<TaskOptions>();
  command->add_option("--count", options->count, "How many at most, 1 to 64; 20 by itself")
      ->option_text("N")
      ->check(CLI::Range(1, 64));
  command->add_flag("--no-macros", options->noMacros, "Leave out macro programs");
  command->add_flag("--no-velto", options->noVelto, "Leave out VELTO programs");
  AddFormatOption(*command, options->format);
  options->connection = AddConnectionOptions(*command);
  command->footer("Example:\n  orif tasks --no-macros --host cell1");
  command->callback([options] { ShowTasks(*options); });
}

}  // namespace orif::tool

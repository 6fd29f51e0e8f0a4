// The command-line tool: reads, writes, watches and records the data of a robot controller.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tools/orif/Commands.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"
#include "tools/orif/Session.h"
#include "tools/orif/platform/platform.h"

namespace {

using orif::tool::Exit;

// "--simulate" takes the argument behind it only if that is a scenario file: items may stand there
// too.
std::vector<std::string> Arguments(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const bool file = i + 1 < arguments.size() && arguments[i + 1].ends_with(".json");
    if (arguments[i] == "--simulate" && !file) {
      arguments[i] += std::string("=") + orif::tool::DemoCell;
    }
  }
  return arguments;
}

int Fail(Exit code, const std::string& message) {
  std::cout.flush();
  std::cerr << "orif: " << message << '\n';
  return static_cast<int>(code);
}

// Says so where the first word is no command; the parser would only miss one.
void CheckCommand(const CLI::App& app, const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.front().starts_with('-')) return;
  std::vector<std::string> commands;
  for (const CLI::App* command : app.get_subcommands({})) commands.push_back(command->get_name());
  if (std::ranges::find(commands, arguments.front()) != commands.end()) return;
  throw orif::tool::Error(Exit::Usage, "there is no command " + arguments.front() +
                                           "; nearest is " +
                                           orif::tool::Nearest(arguments.front(), commands) +
                                           " (orif --help lists them)");
}

int Run(int argc, char** argv) {
  CLI::App app("Reads, writes, watches and records the data of a robot controller.", "orif");
  app.set_version_flag("--version", "orif " ORIF_VERSION);
  app.allow_windows_style_options(false);  // a file's name may begin with a slash anywhere
  app.require_subcommand(1);
  app.footer(
      "Items:\n"
      "  R[1] R[1-10] R[1]:real      numeric registers     PR[1] PR[G2:1]    positions\n"
      "  SR[1]                       string registers      POS[0] POS[G2:0]  where the robot is\n"
      "  $NAME:int|real|string|pos   system variables      PRG[1] PRG[MV1]   tasks\n"
      "  DI DO RI RO UI UO SI SO GI GO [1] or [1-16]       ALM[1] ALM[E1]    alarms\n\n"
      "Exit codes: 0 done, 1 the controller said no, 2 wrong usage, 3 no connection.");
  for (const auto add :
       {orif::tool::AddReadCommand, orif::tool::AddWatchCommand, orif::tool::AddWriteCommand,
        orif::tool::AddRecordCommand, orif::tool::AddPlotCommand, orif::tool::AddAlarmsCommand,
        orif::tool::AddTasksCommand, orif::tool::AddSimulateCommand}) {
    add(app);
  }
  try {
    auto arguments = Arguments(argc, argv);
    CheckCommand(app, arguments);
    std::ranges::reverse(arguments);  // as the parser takes them
    app.parse(arguments);
  } catch (const CLI::Success& request) {
    app.exit(request);
  } catch (const CLI::ParseError& error) {
    return Fail(Exit::Usage, std::string(error.what()) + " (orif --help tells more)");
  } catch (const orif::tool::Error& error) {
    return Fail(error.code, error.what());
  }
  if (!std::cout.flush()) return Fail(Exit::Usage, "the output cannot be written");
  return static_cast<int>(Exit::Done);
}

}  // namespace

int main(int argc, char** argv) {
  orif::tool::platform::PrepareStreams();
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    return Fail(Exit::Usage, error.what());
  }
}

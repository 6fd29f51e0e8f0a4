#include "tools/orif/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "live/Name.h"
#include "orif/version.h"
#include "simulator/served/Address.h"
#include "tools/orif/Encoding.h"
#include "tools/orif/Page.h"
#include "tools/orif/SimulatedCell.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/help/Help.h"
#include "tools/orif/help/Options.h"
#include "tools/orif/help/Template.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;
using Milliseconds = Pace::Milliseconds;

struct TimeUnit {
  std::string_view name;
  Milliseconds length;
};
constexpr std::array TimeUnits{TimeUnit{"ms", 1ms}, TimeUnit{"s", 1s}, TimeUnit{"m", 1min},
                               TimeUnit{"min", 1min}, TimeUnit{"h", 1h}};

Milliseconds ParseDuration(const std::string& option, const std::string& text) {
  constexpr std::int32_t Most = 100'000;  // of any unit
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  const std::string_view name(behind, static_cast<std::size_t>(end - behind));
  const auto unit = std::find_if(TimeUnits.begin(), TimeUnits.end(),
                                 [&](const TimeUnit& each) { return each.name == name; });
  if (error != std::errc() || number < 1 || number > Most || unit == TimeUnits.end())
    throw CLI::ValidationError(option, "'" + text +
                                           "' is no duration; write 250ms, 2s, 10m or 1h, with " +
                                           "a whole number up to " + std::to_string(Most));
  return number * unit->length;
}

struct SizeUnit {
  std::string_view name;
  std::uint64_t bytes;
};
constexpr std::array SizeUnits{SizeUnit{"kB", 1'000}, SizeUnit{"MB", 1'000'000},
                               SizeUnit{"GB", 1'000'000'000}};

void ParseRotation(const std::string& text, RecordingTarget& target) {
  for (const SizeUnit& unit : SizeUnits) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || number < 1 || std::string_view(behind, end) != unit.name) continue;
    target.rotateAt = number * unit.bytes;
    return;
  }
  try {
    target.rotateAfter = ParseDuration("--rotate", text);
  } catch (const CLI::ValidationError&) {
    throw CLI::ValidationError("--rotate", "'" + text +
                                               "' is neither a duration nor a size; write 10m, "
                                               "1h, 500kB, 100MB or 1GB");
  }
}

void AddPaceOptions(CLI::App& command, Pace& pace) {
  command.add_flag("--wait", pace.wait, "Wait for a controller that is off");
  command
      .add_option_function<std::string>(
          "--every",
          [&pace](const std::string& text) { pace.every = ParseDuration("--every", text); },
          "Time between two refreshes: 250ms, 2s, 10m")
      ->option_text("TIME")
      ->default_str(std::to_string(pace.every.count()) + " ms");
  command
      .add_option_function<std::string>(
          "--for", [&pace](const std::string& text) { pace.length = ParseDuration("--for", text); },
          "How long: 30s, 10m, 8h (until Ctrl-C)")
      ->option_text("TIME");
  command.add_option("--count", pace.count, "How many refreshes (until Ctrl-C)")
      ->option_text("NUMBER")
      ->check(CLI::PositiveNumber.description(""));
}

/// A moment in a recording: a number with a unit, or of seconds.
double ParseSeconds(const std::string& option, const std::string& text) {
  constexpr double Most = 1e10;
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  const std::string_view name(behind, static_cast<std::size_t>(end - behind));
  const auto* unit = std::ranges::find(TimeUnits, name.empty() ? "s" : name, &TimeUnit::name);
  if (error != std::errc() || !(number >= 0 && number <= Most) || unit == TimeUnits.end())
    throw CLI::ValidationError(option, "'" + text + "' is no time; write 90s, 1.5h or 12.25");
  return number * std::chrono::duration<double>(unit->length).count();
}

PictureSize ParseSize(const std::string& option, const std::string& text) {
  PictureSize size;
  const char* end = text.data() + text.size();
  const auto width = std::from_chars(text.data(), end, size.width);
  const bool divided = width.ptr != end && *width.ptr == 'x';
  const auto height = std::from_chars(divided ? width.ptr + 1 : end, end, size.height);
  const auto fits = [](int pixels) { return pixels >= LeastPixels && pixels <= MostPixels; };
  if (height.ec != std::errc() || height.ptr != end || !fits(size.width) || !fits(size.height))
    throw CLI::ValidationError(option, "'" + text + "' is no size; write 1200x800, with " +
                                           std::to_string(LeastPixels) + " to " +
                                           std::to_string(MostPixels) + " pixels");
  return size;
}

void AddFormatOption(CLI::App& command, std::string& format) {
  format = "table";
  command.add_option("--format", format, "table, csv or json")
      ->option_text("FORMAT")
      ->default_str(format)
      ->check(CLI::IsMember({"table", "csv", "json"}));
}

// An unquoted $NAME:int is empty to most shells, which leave the rest of the argument, or nothing.
std::string EatenByShell(const std::string& argument) {
  if (!argument.empty() && argument.front() != ':' && argument.front() != '=') return {};
  return "'" + argument + "' has no name: the shell takes an unquoted $NAME away; write '$NAME" +
         (argument.empty() ? ":int" : argument) + "', in single quotes";
}

// The items of a command, or its assignments.
CLI::Option* AddItems(CLI::App& command, std::vector<std::string>& items, const std::string& text,
                      const std::string& about) {
  return command.add_option(text, items, about)
      ->option_text(text)
      ->check(CLI::Validator(EatenByShell, ""));
}

// How to reach a controller through the component. Answers the option that names the component.
CLI::Option* AddControllerOptions(CLI::App& command, Connection& connection) {
  const auto add = [&](CLI::Option* option) { return option->group(ConnectionOptions); };
  add(command.add_option("--host", connection.host, "Name or address of the controller"))
      ->option_text("NAME");
  add(command.add_option("--port", connection.port, "TCP port of the controller"))
      ->option_text("NUMBER")
      ->check(CLI::Range(1, 65535));
  add(command.add_option("--time-out", connection.timeOut,
                         "How long to wait for an answer, 100 or more"))
      ->option_text("MS")
      ->check(CLI::Range(100, 3600000));
  CLI::Option* component = add(command.add_option(
      "--component", connection.component, "The communication component, if it is not installed"));
  component->option_text("PATH");
  return component;
}

void AddConnectionOptions(CLI::App& command, Connection& connection) {
  const auto add = [&](CLI::Option* option) { return option->group(ConnectionOptions); };
  CLI::Option* component = AddControllerOptions(command, connection);
  CLI::Option* simulate = add(command.add_option(
      "--simulate", connection.simulate,
      "A simulated cell instead: a scenario (.json), a recording (.csv, .db), or none for the "
      "demonstration cell"));
  simulate->option_text("[FILE]")->excludes(component);
  add(command.add_option("--encoding", connection.encoding,
                         "Encoding of the controller's texts: utf-8, latin-1, windows-1252, "
                         "shift-jis, ..."))
      ->option_text("NAME")
      ->transform(CLI::IsMember(EncodingNames(), CLI::ignore_case));
  add(command.add_flag("--fast", connection.fast,
                       "With --simulate: simulated time passes without waiting"))
      ->needs(simulate);
  add(command.add_flag("--trail", connection.trail,
                       "Print the debug trail to standard error at the end"));
}

void AddReadCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("read", "Show registers, positions, variables, signals and lists");
  const auto options = std::make_shared<ReadOptions>();
  AddItems(*command, options->items, "ITEM", "What to show, for example R[1-10] or DI[1-16]")
      ->required();
  command->add_flag("--comments", options->comments, "Show the comments of registers and signals");
  AddFormatOption(*command, options->format);
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "CSV is a line of names and a line of values. JSON has numbers as numbers, and null for what "
      "is not valid.\n\n"
      "Example:\n  orif read 'R[1-10]' 'PR[1]' 'DI[1-16]' --host cell1");
  command->callback([options] { Read(*options); });
}

std::string UsualPage() { return ToText(sim::Address{.port = Page::UsualPort}); }

void AddWatchCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("watch", "Show items again and again, as they change");
  const auto options = std::make_shared<WatchOptions>();
  AddItems(*command, options->items, "ITEM", "What to show, for example R[1-10] or DI[1-16]")
      ->required();
  AddPaceOptions(*command, options->pace);
  AddFormatOption(*command, options->format);
  CLI::Option* page = command->add_option("--page", options->page, "Show them in browsers, too")
                          ->option_text("[ADDRESS:PORT]");
  command
      ->add_option("--token-file", options->tokenFile,
                   "The page is for those who know the token in it")
      ->option_text("FILE")
      ->needs(page);
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "On a terminal the items stay in place and what changes is marked. Elsewhere each refresh is "
      "a line with what has changed. The page is at http://" +
      UsualPage() +
      " unless another address is given; one that other computers reach needs a token.\n\n"
      "Example:\n  orif watch 'R[1-10]' 'POS[0]' --every 250ms --host cell1");
  command->callback([options] { Watch(*options); });
}

void AddWriteCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("write", "Write registers, positions, variables, signals");
  const auto options = std::make_shared<WriteOptions>();
  AddItems(*command, options->requests, "ITEM=VALUE", "What to write, for example R[3]=5")
      ->required();
  command->add_flag("--yes", options->yes, "Write without a question");
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "Checks all values, shows the old and the new ones, asks, writes one after the other, and "
      "shows what the controller has then. Stops at the first one that the controller refuses, and "
      "says which were written.\n\n"
      "R[3]=5 writes an integer, R[3]=5.0 a real, R[1-3]=0 three registers. Bits: DO[4]=on, "
      "DO[1-4]=1010. Texts: SR[1]=text. Positions: PR[2]=x:400,y:0 or PR[2]=j1:10,j2:20, where "
      "parts that are not named keep their values.\n\n"
      "Example:\n  orif write 'R[3]=5' 'DO[4]=on' --host cell1");
  command->callback([options] { Write(*options); });
}

void AddSaveCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("save", "Save registers, texts, comments and positions");
  const auto options = std::make_shared<SaveOptions>();
  command->add_option("FILE", options->file, "The file to write, JSON")
      ->required()
      ->option_text("FILE");
  AddItems(*command, options->items, "ITEM", "What to save, for example R[1-10]")->required();
  command->add_flag("--comments", options->comments, "Save the comments too");
  command->add_flag("--force", options->force, "Replace a file that exists");
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "Saves everything that can be read and written, signals and variables included, or nothing "
      "if "
      "the controller refuses an item. A position is saved in the form that is valid.\n\n"
      "Example:\n  orif save cell1.json 'R[1-100]' 'PR[1-20]' --comments --host cell1");
  command->callback([options] { Save(*options); });
}

void AddRestoreCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("restore", "Write what was saved");
  const auto options = std::make_shared<RestoreOptions>();
  command->add_option("FILE", options->file, "A file that save wrote")
      ->required()
      ->option_text("FILE");
  AddItems(*command, options->items, "ITEM", "A part of the file; all of it without");
  command->add_flag("--yes", options->yes, "Write without a question");
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "Checks the whole file, shows what differs from the controller, asks, and writes that. Stops "
      "at the first value that the controller refuses, and says which were written.\n\n"
      "Example:\n  orif restore cell1.json 'R[1-10]' --host cell1");
  command->callback([options] { Restore(*options); });
}

void AddRecordCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("record", "Record items to a CSV file or a database");
  const auto options = std::make_shared<RecordOptions>();
  AddItems(*command, options->items, "ITEM", "What to record, for example R[1-10] or DI[1-16]")
      ->required();
  AddPaceOptions(*command, options->pace);
  RecordingTarget& target = options->target;
  command
      ->add_option("--out", target.out,
                   "The file: .csv, .db for an SQLite database, - for CSV to standard output")
      ->required()
      ->option_text("FILE");
  CLI::Option* force = command->add_flag("--force", target.replace, "Replace a file that exists");
  command->add_flag("--append", target.append, "Go on with a file that exists")->excludes(force);
  command
      ->add_option_function<std::string>(
          "--rotate", [&target](const std::string& text) { ParseRotation(text, target); },
          "Begin a new file after a time (1h) or at a size (100MB), with the time in its name")
      ->option_text("TIME|SIZE");
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "Writes a row at every refresh. A lost link leaves a marked gap, and recording goes on when "
      "it "
      "is back. --append cuts off a line that a killed recorder left incomplete.\n\n"
      "Example:\n  orif record 'R[1-3]' 'POS[0]' --every 100ms --for 10m --out run.csv --host "
      "cell1");
  command->callback([options] { Record(*options); });
}

void AddPlotCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("plot", "Draw a picture of what was recorded");
  const auto options = std::make_shared<PlotOptions>();
  command->add_option("FILE", options->recording, "A file that record wrote")
      ->option_text("FILE")
      ->required();
  command->add_option("COLUMN", options->names, "Columns, or items for all of their columns")
      ->option_text("COLUMN");
  command->add_option("--out", options->picture, "The picture, .svg or .png")->option_text("FILE");
  command->add_flag("--force", options->force, "Replace a file that exists");
  const auto addTime = [&](const std::string& name, double& time, const std::string& help) {
    command
        ->add_option_function<std::string>(
            name, [name, &time](const std::string& text) { time = ParseSeconds(name, text); }, help)
        ->option_text("TIME");
  };
  PictureWishes& wishes = options->wishes;
  addTime("--from", wishes.from, "Begin so long after the first row: 90s, 1.5h");
  addTime("--to", wishes.to, "End so long after the first row");
  command
      ->add_option_function<std::string>(
          "--size", [&wishes](const std::string& text) { wishes.size = ParseSize("--size", text); },
          "Width and height in pixels: 1200x800")
      ->option_text("WIDTHxHEIGHT");
  command->add_option("--title", wishes.title, "A line above the picture")->option_text("TEXT");
  command->add_flag("--columns", options->columns, "List what was recorded, and draw nothing");
  command->footer(
      "The picture has a pane for each unit and a lane for each signal.\n\n"
      "Example:\n  orif plot run.csv 'R[1]' 'POS[0].X' --out run.svg");
  command->callback([options] { Plot(*options); });
}

void AddAlarmsCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("alarms", "List alarms");
  const auto options = std::make_shared<AlarmOptions>();
  command->add_option("--list", options->list, "active, history or password")
      ->option_text("LIST")
      ->default_str(options->list)
      ->check(CLI::IsMember({"active", "history", "password"}));
  command->add_option("--count", options->count, "How many at most, 1 to 163")
      ->option_text("N")
      ->default_str(std::to_string(options->count))
      ->check(CLI::Range(1, 163));
  AddFormatOption(*command, options->format);
  AddConnectionOptions(*command, options->connection);
  command->footer("Example:\n  orif alarms --list history --host cell1");
  command->callback([options] { ShowAlarms(*options); });
}

void AddClearAlarmsCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("clear-alarms", "Reset the alarms");
  const auto options = std::make_shared<ClearAlarmsOptions>();
  command->add_option("--kind", options->kind, "Only alarms of that kind, 1 or more")
      ->option_text("N")
      ->check(CLI::Range(1, std::numeric_limits<std::int32_t>::max()));
  command->add_flag("--yes", options->yes, "Reset without a question");
  AddConnectionOptions(*command, options->connection);
  command->footer(
      "Shows the active alarms, asks, resets them, and shows what remains. After a reset the robot "
      "can go on.\n\n"
      "Example:\n  orif clear-alarms --host cell1");
  command->callback([options] { ClearAlarms(*options); });
}

void AddTasksCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("tasks", "List the programs that run");
  const auto options = std::make_shared<TaskOptions>();
  command->add_option("--count", options->count, "How many at most, 1 to 64")
      ->option_text("N")
      ->default_str(std::to_string(options->count))
      ->check(CLI::Range(1, 64));
  command->add_flag("--no-macros", options->noMacros, "Leave out macro programs");
  command->add_flag("--no-velto", options->noVelto, "Leave out VELTO programs");
  AddFormatOption(*command, options->format);
  AddConnectionOptions(*command, options->connection);
  command->footer("Example:\n  orif tasks --no-macros --host cell1");
  command->callback([options] { ShowTasks(*options); });
}

void AddInfoCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("info", "Show the component, the connection and how fast a refresh is");
  const auto options = std::make_shared<InfoOptions>();
  AddConnectionOptions(*command, options->connection);
  command->footer("Example:\n  orif info --host cell1");
  command->callback([options] { ShowInfo(*options); });
}

void AddCheckCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "check", "Check what describes a simulated cell, or a communication component");
  const auto options = std::make_shared<CheckOptions>();
  CLI::Option* file =
      command->add_option("FILE", options->file, "A scenario (.json) or a recording (.csv, .db)");
  file->option_text("[FILE]");
  AddControllerOptions(*command, options->connection);
  for (CLI::Option* option : command->get_options()) {
    if (option->get_group() == ConnectionOptions) option->excludes(file);
  }
  command->footer(
      "Without a file, checks the component: calls every operation that only reads as the library "
      "would, and tells what each answered, what is missing, what is outside the contract, and "
      "which "
      "commands suffer. Writes nothing to the controller.\n\n"
      "Examples:\n  orif check cell.json\n"
      "  orif check --component ./libMyCommLib.so --host cell1");
  command->callback([options] { Check(*options); });
}

void AddSimulateCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("simulate", "Serve a simulated cell to other programs, with --serve");
  const auto options = std::make_shared<SimulateOptions>();
  command
      ->add_option("FILE", options->file,
                   "A scenario (.json) or a recording (.csv, .db); none for the demonstration cell")
      ->option_text("[FILE]");
  command->add_option("--serve", options->serve, "Serve the cell until Ctrl-C; its time passes")
      ->option_text("[ADDRESS:PORT]");
  command->footer(
      "A served cell has the host names sim://ADDRESS:PORT, by itself sim://" +
      ToText(sim::Address()) +
      ", and sim://ADDRESS:PORT/NAME for each controller. Port 0 is any free one. There "
      "is no authentication.\n\n"
      "Example:\n  orif simulate cell.json --serve\n  orif watch 'R[1]' --host sim://" +
      ToText(sim::Address()));
  command->callback([options] { Simulate(*options); });
}

// No item begins like that.
bool IsAddress(std::string_view text) {
  constexpr std::string_view First = "0123456789:[";
  return text.starts_with("localhost") || First.find(text.substr(0, 1)) != First.npos;
}

// Some options take the next argument only if it is one of theirs: "--simulate" a file, because an
// item may follow, and "--serve" an address, because a file may follow.
std::vector<std::string> Arguments(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string next = i + 1 < arguments.size() ? arguments[i + 1] : "-";
    if (arguments[i] == "--simulate" && !IsCellFile(next)) {
      arguments[i] += std::string("=") + DemoCell;
    } else if (arguments[i] == "--serve" && (next.starts_with('-') || IsCellFile(next))) {
      arguments[i] += '=' + ToText(sim::Address());
    } else if (arguments[i] == "--page" && !IsAddress(next)) {
      arguments[i] += '=' + UsualPage();
    }
  }
  return arguments;
}

// The parser would only say that a command is missing.
const CLI::App* FindCommand(const CLI::App& app, const std::string& name) {
  const auto commands = app.get_subcommands({});
  const auto found = std::ranges::find(commands, name, &CLI::App::get_name);
  if (found != commands.end()) return *found;
  std::vector<std::string> names;
  std::ranges::transform(commands, std::back_inserter(names), &CLI::App::get_name);
  const auto near = live::Nearest(name, names);
  throw Error(Exit::Usage, "there is no command " + name + (near ? "; nearest is " + *near : "") +
                               " (orif help lists them)");
}

void AddHelpCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("help", "Explain a command, or list all");
  const auto about = std::make_shared<std::string>();
  command->add_option("COMMAND", *about, "The one to explain")->option_text("COMMAND");
  command->footer("Example:\n  orif help write");
  command->callback([&app, about] {
    const CLI::App* explained = about->empty() ? &app : FindCommand(app, *about);
    const std::string name = about->empty() ? "orif" : "orif " + *about;
    std::cout << app.get_formatter()->make_help(explained, name, CLI::AppFormatMode::Normal);
  });
}

// What the build makes the manual and the completions with.
void AddTemplateOption(CLI::App& app) {
  app.add_option_function<std::string>("--fill-template",
                                       [&app](const std::string& file) {
                                         std::ifstream in(file);
                                         if (!in)
                                           throw Error(Exit::Usage, file + " cannot be read");
                                         FillTemplate(app, in, std::cout);
                                         throw CLI::Success();
                                       })
      ->trigger_on_parse()
      ->group("");  // hidden
}

}  // namespace

void RunCommandLine(int argc, char** argv) {
  CLI::App app("Reads, writes, watches and records the data of a robot controller", "orif");
  app.formatter(std::make_shared<HelpFormatter>());
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("OPTIONS", "OPTION...");
  app.get_formatter()->label("Positionals", "Arguments");
  app.set_help_flag("-h,--help", "Explain it");
  app.set_version_flag("--version", std::string("orif ") + Version(), "Print the version");
  app.allow_windows_style_options(false);  // a file's name may begin with a slash anywhere
  app.require_subcommand(1);
  app.footer(
      "Items:\n"
      "  R[1] R[1-10] R[1]:real      numeric registers     PR[1] PR[G2:1]    positions\n"
      "  SR[1]                       string registers      POS[0] POS[G2:0]  where the robot is\n"
      "  $NAME:int|real|string|pos   system variables      PRG[1] PRG[MV1]   tasks\n"
      "  DI DO RI RO UI UO SI SO GI GO [1] or [1-16]       ALM[1] ALM[E1]    alarms\n"
      "Quote them, since brackets and $ are special to the shell.\n\n"
      "Exit codes: 0 done, 1 the controller or you said no, 2 wrong usage, 3 no connection.");
  for (const auto add :
       {AddReadCommand, AddWatchCommand, AddWriteCommand, AddSaveCommand, AddRestoreCommand,
        AddRecordCommand, AddPlotCommand, AddAlarmsCommand, AddClearAlarmsCommand, AddTasksCommand,
        AddInfoCommand, AddCheckCommand, AddSimulateCommand, AddHelpCommand}) {
    add(app);
  }
  for (CLI::App* command : app.get_subcommands({})) command->group("Commands");
  AddTemplateOption(app);
  auto arguments = Arguments(argc, argv);
  if (arguments.empty()) arguments = {"help"};
  if (!arguments.front().starts_with('-')) FindCommand(app, arguments.front());
  std::ranges::reverse(arguments);  // as the parser takes them
  try {
    app.parse(arguments);
  } catch (const CLI::Success& request) {
    app.exit(request);
  } catch (const CLI::ParseError& error) {
    throw Error(Exit::Usage, std::string(error.what()) + " (orif help tells more)");
  }
}

}  // namespace orif::tool

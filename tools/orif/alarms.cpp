// "orif alarms": the alarms of one of the controller's lists, newest first as the controller has
// them.
#include <CLI/CLI.hpp>

#include "tools/orif/Commands.h"
#include "tools/orif/Format.h"
#include "tools/orif/List.h"
#include "tools/orif/Readout.h"

namespace orif::tool {
namespace {

struct AlarmOptions {
  std::shared_ptr<Connection> connection;
  std::string list = "active";
  std::int32_t count = 20;
  std::string format;
};

constexpr auto AlarmColumns = std::to_array<ListColumn>({{"TIME", "time"},
                                                         {"ID", "id"},
                                                         {"NUMBER", "number"},
                                                         {"SEVERITY", "severity_text"},
                                                         {"MESSAGE", "message"},
                                                         {"CAUSE", "cause"}});

void ShowAlarms(const AlarmOptions& options) {
  static const std::map<std::string, std::string> letters{
      {"active", ""}, {"history", "E"}, {"password", "P"}};
  const auto alarms = ParseDesignation("ALM[" + letters.at(options.list) + "1-" +
                                       std::to_string(options.count) + "]");
  Cell cell(*options.connection);
  Session session(cell);
  Readout readout(session, {alarms});
  if (!readout.Read()) throw session.Refusal("the alarms could not be read");
  PrintList(readout, options.format, AlarmColumns, "no alarms");
}

}  // namespace

void AddAlarmsCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("alarms", "List alarms");
  const auto options = std::make_shared<AlarmOptions>();
  command->add_option("--list", options->list, "active, history or password; active by itself")
      ->option_text("LIST")
      ->check(CLI::IsMember({"active", "history", "password"}));
  command->add_option("--count", options->count, "How many at most, 1 to 163; 20 by itself")
      ->option_text("N")
      ->check(CLI::Range(1, 163));
  AddFormatOption(*command, options->format);
  options->connection = AddConnectionOptions(*command);
  command->footer("Example:\n  orif alarms --list history --host cell1");
  command->callback([options] { ShowAlarms(*options); });
}

}  // namespace orif::tool

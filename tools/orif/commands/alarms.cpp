// "orif alarms": lists the alarms of one of the controller's lists, newest first.
// "orif clear-alarms": resets them.
#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <string>

#include "tools/orif/Cell.h"
#include "tools/orif/List.h"
#include "tools/orif/Question.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {
namespace {

constexpr auto AlarmColumns = std::to_array<ListColumn>({{"TIME", "time"},
                                                         {"ID", "id"},
                                                         {"NUMBER", "number"},
                                                         {"SEVERITY", "severity_text"},
                                                         {"MESSAGE", "message"},
                                                         {"CAUSE", "cause"}});

std::string AlarmItems(const std::string& letter, std::int32_t count) {
  return "ALM[" + letter + "1-" + std::to_string(count) + "]";
}

void PrintAlarms(const live::Controller& controller, const std::string& format) {
  PrintList(controller, format, AlarmColumns, "no alarms");
}

}  // namespace

void ShowAlarms(const AlarmOptions& options) {
  static const std::map<std::string, std::string> letters{
      {"active", ""}, {"history", "E"}, {"password", "P"}};
  Cell cell(options.connection);
  Controller controller(cell.Settings({AlarmItems(letters.at(options.list), options.count)}));
  ReadOnce(controller);
  PrintAlarms(controller, options.format);
}

void ClearAlarms(const ClearAlarmsOptions& options) {
  if (!options.yes) CheckSomebodyAnswers("reset alarms");
  Cell cell(options.connection);
  Controller controller(cell.Settings({AlarmItems("", AlarmOptions().count)}));
  ReadOnce(controller);
  PrintAlarms(controller, "table");
  if (std::ranges::all_of(controller.Tags(),
                          [](const live::Tag& tag) { return tag.value.IsEmpty(); })) {
    return;
  }
  const std::string which = options.kind == 0 ? "" : " of kind " + std::to_string(options.kind);
  if (!options.yes && !Confirmed("After a reset the robot can go on. Reset the alarms" + which +
                                 " of " + cell.Host() + "?")) {
    throw Error(Exit::Refused, "nothing was reset");
  }
  if (const live::Answer answer = controller.ClearAlarms(options.kind); !answer) {
    throw Refusal("the alarms were not reset", answer.reason);
  }
  if (!controller.Refresh()) {
    throw Refusal("the alarms were reset, but could not be read again", controller.LastReason());
  }
  std::cout << "Reset. The controller has now:\n";
  PrintAlarms(controller, "table");
}

}  // namespace orif::tool

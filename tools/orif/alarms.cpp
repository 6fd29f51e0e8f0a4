// "orif alarms": lists the alarms of one of the controller's lists, newest first.
#include <array>
#include <map>
#include <string>

#include "tools/orif/Cell.h"
#include "tools/orif/Commands.h"
#include "tools/orif/List.h"

namespace orif::tool {
namespace {

constexpr auto AlarmColumns = std::to_array<ListColumn>({{"TIME", "time"},
                                                         {"ID", "id"},
                                                         {"NUMBER", "number"},
                                                         {"SEVERITY", "severity_text"},
                                                         {"MESSAGE", "message"},
                                                         {"CAUSE", "cause"}});

}  // namespace

void ShowAlarms(const AlarmOptions& options) {
  static const std::map<std::string, std::string> letters{
      {"active", ""}, {"history", "E"}, {"password", "P"}};
  const auto alarms =
      ("ALM[" + letters.at(options.list) + "1-" + std::to_string(options.count) + "]");
  Cell cell(options.connection);
  Controller controller(cell.Settings({alarms}));
  ReadOnce(controller);
  PrintList(controller, options.format, AlarmColumns, "no alarms");
}

}  // namespace orif::tool

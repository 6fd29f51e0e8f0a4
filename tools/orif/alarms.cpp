// "orif alarms": lists the alarms of one of the controller's lists, newest first.
#include <array>
#include <map>
#include <string>

#include "tools/orif/Commands.h"
#include "tools/orif/List.h"
#include "tools/orif/Readout.h"

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
  const auto alarms = ParseDesignation("ALM[" + letters.at(options.list) + "1-" +
                                       std::to_string(options.count) + "]");
  Cell cell(options.connection);
  Session session(cell);
  Readout readout(session, {alarms});
  if (!readout.Read()) throw session.Refusal("the alarms could not be read");
  PrintList(readout, options.format, AlarmColumns, "no alarms");
}

}  // namespace orif::tool

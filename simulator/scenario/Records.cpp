#include "simulator/scenario/Records.h"

#include <chrono>
#include <regex>

namespace orif::sim {

void ReadDate(Alarm& alarm, const Node& node) {
  static const std::regex shape(R"((\d{4})-(\d\d)-(\d\d) ([01]\d|2[0-3]):([0-5]\d):([0-5]\d))");
  std::smatch match;
  if (!std::regex_match(node.Text(), match, shape)) {
    node.Fail("must be a date like \"2026-01-05 06:30:00\"");
  }
  const std::array fields{&alarm.year, &alarm.month,  &alarm.day,
                          &alarm.hour, &alarm.minute, &alarm.second};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    *fields[i] = static_cast<std::int16_t>(std::stoi(match.str(i + 1)));
  }
  using namespace std::chrono;
  const year_month_day date(year(alarm.year), month(static_cast<unsigned>(alarm.month)),
                            day(static_cast<unsigned>(alarm.day)));
  if (!date.ok()) node.Fail("must be a day that there is");
}

}  // namespace orif::sim

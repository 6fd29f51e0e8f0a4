// "orif record": writes the values of items to a file, a row for each refresh.
#include <array>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/orif/Poll.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/recording/Recorder.h"
#include "tools/orif/terminal/Progress.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

std::optional<double> Fraction(const Pace& pace, Pace::Milliseconds time, std::int64_t rows) {
  if (pace.count) return static_cast<double>(rows) / static_cast<double>(*pace.count);
  if (pace.length)
    return static_cast<double>(time.count()) / static_cast<double>(pace.length->count());
  return {};
}

std::string RowsAndRate(std::int64_t rows, Pace::Milliseconds time) {
  const double seconds = static_cast<double>(time.count()) / 1000;
  std::array<char, 32> rate{};
  if (seconds > 0)
    std::snprintf(rate.data(), rate.size(), "  %.1f/s", static_cast<double>(rows - 1) / seconds);
  return Counted(rows, "row") + rate.data();
}

// What happens to the link, as it happens: a line, or nothing.
std::string Event(const Poll& poll, Link link, bool first) {
  const std::string at = Iso8601(poll.Wall()) + " ";
  const std::string reason = poll.Values().LastReason().ToText();
  if (link == Link::Lost) return at + "link lost: " + reason;
  if (link == Link::Back) return at + "link back";
  if (link == Link::StillLost && first) return at + "waiting: " + reason;
  return {};
}

std::string Summary(const RecordOptions& options, const Poll& poll, const Recorder& recorder) {
  std::string text = recorder.Summary();
  if (poll.Gaps() > 0) text += "; link lost " + Counted(poll.Gaps(), "time");
  if (poll.Skipped() > 0)
    text += "; " + Counted(poll.Skipped(), "turn") +
            " left out, since refreshes took longer than " +
            std::to_string(options.pace.every.count()) + " ms";
  return text;
}

}  // namespace

void Record(const RecordOptions& options) {
  CheckRecordingTarget(options.target);
  Cell cell(options.connection);
  Poll poll(cell, options.items, options.pace);
  Recorder recorder(options.target, ColumnsOf(poll.Values()),
                    {cell.Host(), Joined(options.items, " "), options.pace.every},
                    [](const std::string& line) { Tell("orif: " + line); });
  std::vector<Value> values;
  {
    Progress progress;
    bool first = true;
    while (const std::optional<Link> link = poll.Next()) {
      RecordedRow row{poll.Wall(), poll.SinceStart(), *link, {}};
      const bool lost = IsLost(*link);
      const std::string event = Event(poll, *link, std::exchange(first, false));
      if (!event.empty()) progress.Tell(event);
      if (!lost) {
        values = ValuesOf(poll.Values());
        row.values = values;
      }
      if (*link != Link::StillLost) recorder.Add(row);
      progress.Show(Fraction(options.pace, poll.SinceStart(), recorder.Rows()), poll.SinceStart(),
                    RowsAndRate(recorder.Rows(), poll.SinceStart()) +
                        (lost ? "  link lost, trying again" : ""));
    }
  }
  Tell(Summary(options, poll, recorder));
}

}  // namespace orif::tool

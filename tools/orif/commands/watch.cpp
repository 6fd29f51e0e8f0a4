// "orif watch": keeps showing items, in place on a terminal, elsewhere or in another format as a
// line for each refresh.
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "tools/orif/Json.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Poll.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/terminal/Screen.h"

namespace orif::tool {
namespace {

// Which values have changed. On a terminal those of the first refresh have not.
std::vector<bool> ChangedIn(const live::Controller& controller, bool none) {
  std::vector<bool> changed(controller.Tags().size());
  if (none) return changed;
  for (const std::size_t index : controller.Changed()) changed[index] = true;
  return changed;
}

std::string Status(const Cell& cell, const Poll& poll, Link link) {
  std::string text = cell.Host() + "  " + Iso8601(poll.Wall()) + "  ";
  text += IsLost(link) ? "link lost, trying again"
                       : "link up  refreshed in " + std::to_string(poll.Took().count()) + " ms";
  if (poll.Skipped() > 0) text += "  " + std::to_string(poll.Skipped()) + " skipped";
  return text + "  (Ctrl-C ends)";
}

// A text is quoted as in JSON, so that a line can be taken apart whatever is in it.
std::string LineText(const Value& value) {
  return std::holds_alternative<std::string>(value) ? JsonLine(ToJson(value)) : TableText(value);
}

void PrintLine(const Poll& poll, Link link, const std::vector<bool>& changed) {
  std::cout << Iso8601(poll.Wall());
  if (link == Link::Lost) {
    std::cout << " link=lost reason=" << LineText(poll.Values().LastReason().ToText());
  }
  if (link == Link::Back) std::cout << " link=back";
  for (std::size_t i = 0; i < changed.size(); ++i) {
    if (!changed[i]) continue;
    const live::Tag& tag = poll.Values().Tags()[i];
    std::cout << ' ' << tag.name << '=' << LineText(tag.value);
  }
  std::cout << std::endl;
}

// The reason tells why values are missing: all of them, or those that the controller refuses.
void PrintJson(const Poll& poll, Link link) {
  Json json;
  json["time"] = Iso8601(poll.Wall());
  json["link"] = ToText(link);
  const auto reason =
      IsLost(link) ? poll.Values().LastReason().ToText() : Joined(Unread(poll.Values()));
  json["reason"] = reason.empty() ? Json() : ToJson(Value(reason));
  json["values"] = IsLost(link) ? Json() : ToJson(poll.Values());
  std::cout << JsonLine(json) << std::endl;
}

// For another program: a line when the link is lost, and one for each refresh that succeeds.
void PrintLines(const WatchOptions& options, Poll& poll) try {
  std::unique_ptr<RecordingFile> csv;
  if (options.format == "csv") csv = CsvToOutput(ColumnsOf(poll.Values()));
  while (const std::optional<Link> link = poll.Next()) {
    if (*link == Link::StillLost) continue;
    if (csv) {
      csv->Write({poll.Wall(), poll.SinceStart(), *link,
                  IsLost(*link) ? std::vector<Value>() : ValuesOf(poll.Values())});
    } else if (options.format == "json") {
      PrintJson(poll, *link);
    } else {
      PrintLine(poll, *link, ChangedIn(poll.Values(), IsLost(*link)));
    }
    if (!std::cout) throw Error(Exit::Usage, "the output cannot be written");
  }
} catch (const std::system_error& error) {
  throw Error(Exit::Usage, "the output cannot be written: " + error.code().message());
}

}  // namespace

void Watch(const WatchOptions& options) {
  Cell cell(options.connection);
  Poll poll(cell, options.items, options.pace);
  if (options.format != "table" || !platform::IsTerminal(platform::Stream::Output)) {
    return PrintLines(options, poll);
  }
  std::optional<Screen> screen;
  while (const std::optional<Link> link = poll.Next()) {
    const bool first = !screen;
    if (first) screen.emplace();
    const std::vector<bool> changed = ChangedIn(poll.Values(), IsLost(*link) || first);
    screen->Paint(Layout(poll.Values()), changed, Status(cell, poll, *link));
    if (!std::cout) throw Error(Exit::Usage, "the output cannot be written");
  }
  if (!screen) return;
  // Leave the last values on the terminal.
  screen.reset();
  for (const Line& line : Layout(poll.Values())) std::cout << PlainText(line) << '\n';
}

}  // namespace orif::tool

// "orif watch": keeps showing items, in place on a terminal, elsewhere as a line for each refresh.
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/orif/Layout.h"
#include "tools/orif/Poll.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/platform/platform.h"
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

void PrintLine(const Poll& poll, Link link, const std::vector<bool>& changed) {
  if (link == Link::StillLost) return;
  std::cout << Iso8601(poll.Wall());
  if (link == Link::Lost) std::cout << " link lost, trying again";
  if (link == Link::Back) std::cout << " link back";
  for (std::size_t i = 0; i < changed.size(); ++i)
    if (changed[i])
      std::cout << ' ' << poll.Values().Tags()[i].name << '='
                << TableText(poll.Values().Tags()[i].value);
  std::cout << std::endl;
}

}  // namespace

void Watch(const WatchOptions& options) {
  Cell cell(options.connection);
  Poll poll(cell, options.items, options.pace);
  std::optional<Screen> screen;
  while (const std::optional<Link> link = poll.Next()) {
    const bool first = !screen && platform::IsTerminal(platform::Stream::Output);
    if (first) screen.emplace();
    const bool none = IsLost(*link) || first;
    const std::vector<bool> changed = ChangedIn(poll.Values(), none);
    if (screen)
      screen->Paint(Layout(poll.Values()), changed, Status(cell, poll, *link));
    else
      PrintLine(poll, *link, changed);
    if (!std::cout) throw Error(Exit::Usage, "the output cannot be written");
  }
  if (!screen) return;
  // Leave the last values on the terminal.
  screen.reset();
  for (const Line& line : Layout(poll.Values())) std::cout << PlainText(line) << '\n';
}

}  // namespace orif::tool

// "orif watch": keeps showing items, in place on a terminal, elsewhere as a line for each refresh.
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/orif/Commands.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Poll.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/terminal/Screen.h"

namespace orif::tool {
namespace {

/// Which values have changed since the last refresh.
class Changes {
 public:
  /// `atFirst`: whether all values of the first refresh count as changed.
  explicit Changes(bool atFirst) : atFirst_(atFirst) {}

  std::vector<bool> Note(const std::vector<Value>& values) {
    std::vector<bool> changed(values.size(), atFirst_);
    for (std::size_t i = 0; i < before_.size(); ++i) changed[i] = values[i] != before_[i];
    before_ = values;
    return changed;
  }

 private:
  bool atFirst_;
  std::vector<Value> before_;
};

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
      std::cout << ' ' << poll.Values().Columns()[i].name << '='
                << TableText(poll.Values().Values()[i]);
  std::cout << std::endl;
}

}  // namespace

void Watch(const WatchOptions& options) {
  const std::vector<Designation> items = ParseDesignations(options.items);
  Cell cell(options.connection);
  Poll poll(cell, items, options.pace);
  std::optional<Screen> screen;
  if (platform::IsTerminal(platform::Stream::Output)) screen.emplace();
  Changes changes(!screen);
  while (const std::optional<Link> link = poll.Next()) {
    std::vector<bool> changed(poll.Values().Columns().size());
    if (!IsLost(*link)) changed = changes.Note(poll.Values().Values());
    if (screen)
      screen->Paint(Layout(poll.Values()), changed, Status(cell, poll, *link));
    else
      PrintLine(poll, *link, changed);
  }
  if (!screen) return;
  // Leave the last values on the terminal.
  screen.reset();
  for (const Line& line : Layout(poll.Values())) std::cout << PlainText(line) << '\n';
}

}  // namespace orif::tool

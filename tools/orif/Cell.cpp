#include "tools/orif/Cell.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <utility>

#include "simulator/served/Address.h"
#include "simulator/served/RemoteCore.h"
#include "spelling/UpperCase.h"
#include "tools/orif/Encoding.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

// The trail's text has no line end after its first line: the second line begins where the next time
// and thread are found.
void PrintTrail(const std::string& messages) {
  std::string trail = std::regex_replace(messages, std::regex("\r\n"), "\n");
  if (trail.empty()) return;
  const std::regex lineStart(R"([0-9]{1,2}[^0-9][0-9]{2}[^0-9][0-9]{2}( [^ ]+)? [0-9]+ \[)");
  std::match_results<std::string::const_iterator> second;
  const std::size_t first = trail.find('[') + 1;
  if (std::regex_search(trail.cbegin() + static_cast<std::ptrdiff_t>(first), trail.cend(), second,
                        lineStart)) {
    const auto length = first + static_cast<std::size_t>(second.position());
    Tell(trail.substr(0, length));
    trail.erase(0, length);
  }
  for (std::istringstream lines(trail); std::getline(lines, trail);) Tell(trail);
}

}  // namespace

Cell::Cell(Connection connection) : connection_(std::move(connection)) {
  if (connection_.simulate) {
    const SimulatedCell cell = LoadSimulatedCell(*connection_.simulate);
    network_ = cell.network;
    if (connection_.host.empty()) connection_.host = cell.hosts.front();
  }
  if (connection_.host.empty()) {
    throw Error(Exit::Usage,
                "no controller named; say --host NAME, or --simulate for a simulated one");
  }
}

live::Settings Cell::Settings(std::vector<std::string> tags) const {
  live::Settings settings{.host = connection_.host,
                          .port = connection_.port,
                          .tags = std::move(tags),
                          .retry = {.most = std::chrono::seconds(5)},
                          .debugLog = connection_.trail};
  if (connection_.timeOut) settings.timeOut = live::Milliseconds(*connection_.timeOut);
  if (connection_.encoding) ConvertTexts(settings, *connection_.encoding);
  if (connection_.fast) settings.retry.shortened = 0;  // two runs are alike
  if (network_) {
    settings.factory = network_->Factory();
  } else if (!connection_.component.empty()) {
    settings.component = platform::ComponentName(connection_.component);
  } else if (sim::ParseServedHost(connection_.host)) {
    // Such a name is a simulated cell, whoever connects to it.
    settings.factory = sim::RemoteFactory();
  }
  return settings;
}

Controller::Controller(live::Settings settings) : live::Controller(std::move(settings)) {}

Controller::~Controller() { PrintTrail(DebugMessages()); }

Error NoConnection(const live::Controller& controller) {
  live::Reason reason = controller.LastReason();
  reason.item.clear();
  const bool withoutComponent = reason.text.starts_with("no communication component");
  return {Exit::NoConnection,
          withoutComponent
              ? reason.ToText() + "; name it with --component PATH, or try --simulate"
              : "no connection to " + controller.Settings().host + ": " + reason.ToText() +
                    "; check --host and --port, and that the controller is on"};
}

Error Refusal(const std::string& what, const live::Reason& reason) {
  return {Exit::Refused, what + ": " + reason.ToText()};
}

std::vector<std::string> Unread(const live::Controller& controller) {
  std::vector<std::string> texts;
  for (const live::Tag& tag : controller.Tags()) {
    if (tag.quality == live::Quality::Good) continue;
    std::string text = tag.reason->ToText();
    // Controllers refuse a variable of another type in words of their own, if in any.
    const bool unknown = spelling::UpperCase(text).find("UNKNOWN") != std::string::npos;
    if (tag.item.starts_with('$') && tag.quality == live::Quality::Refused && !unknown) {
      text += ", which may be since the variable is of another type";
    }
    if (std::ranges::find(texts, text) == texts.end()) texts.push_back(text);
  }
  return texts;
}

void CheckFirstRefresh(const live::Controller& controller, bool good) {
  const auto has = [&](live::Quality quality) {
    return std::ranges::find(controller.Tags(), quality, &live::Tag::quality) !=
           controller.Tags().end();
  };
  if (!good && !has(live::Quality::Refused)) {
    throw Refusal("the values cannot be read", controller.LastReason());
  }
  if (!has(live::Quality::Good)) {
    throw Error(Exit::Refused, "cannot read " + Joined(Unread(controller)));
  }
}

void ReadOnce(live::Controller& controller) {
  if (!controller.Connect()) throw NoConnection(controller);
  CheckFirstRefresh(controller, controller.Refresh());
}

}  // namespace orif::tool

#include "tools/orif/Session.h"

#include <iostream>
#include <regex>
#include <utility>

#include "orif/lowerlayer/Component.h"
#include "orif/lowerlayer/DispId.h"
#include "simulator/served/Address.h"
#include "simulator/served/RemoteCore.h"
#include "tools/orif/Error.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

// The trail's text has no line end after its first line: the second line begins where the next time
// and thread are found.
void PrintTrail(std::ostream& out, const std::string& messages) {
  const std::string trail = std::regex_replace(messages, std::regex("\r\n"), "\n");
  if (trail.empty()) return;
  const std::regex lineStart(R"([0-9]{1,2}[^0-9][0-9]{2}[^0-9][0-9]{2}( [^ ]+)? [0-9]+ \[)");
  std::smatch second;
  const std::size_t first = trail.find('[') + 1;
  if (std::regex_search(trail.begin() + static_cast<std::ptrdiff_t>(first), trail.end(), second,
                        lineStart)) {
    const auto length = first + static_cast<std::size_t>(second.position());
    out << trail.substr(0, length) << '\n' << trail.substr(length);
  } else {
    out << trail << '\n';
  }
}

// The reason in a trail line, after tag and id.
std::string ReasonOf(const std::string& line) {
  constexpr std::string_view Mark = ", Err ";
  const auto mark = line.find(Mark);
  return mark == std::string::npos ? line : line.substr(mark + Mark.size());
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
  if (!connection_.component.empty()) {
    platform::SetEnvironment(ComponentVariable, platform::ComponentName(connection_.component));
  }
}

Cell::~Cell() {
  if (connection_.trail) PrintTrail(std::cerr, trail_);
}

std::unique_ptr<orif::Core> Cell::MakeCore() const {
  if (network_) return std::make_unique<orif::Core>(network_->Factory());
  // Such a name is a simulated cell, whoever connects to it.
  if (connection_.component.empty() && sim::ParseServedHost(connection_.host)) {
    return std::make_unique<orif::Core>(sim::RemoteFactory());
  }
  return std::make_unique<orif::Core>();
}

Session::Session(Cell& cell) : cell_(cell), core_(cell.MakeCore()) {
  if (core_->GetLib() == nullptr) {
    throw tool::Error(Exit::NoConnection,
                      "no communication component: " + ReasonOf(core_->DebugMessage()) +
                          "; name it with --component PATH, or try --simulate");
  }
  const Connection& options = cell.Options();
  if (options.trail) core_->DebugLog(true);
  if (options.port) core_->PortNumber(*options.port);
  if (options.timeOut) core_->TimeOutValue(*options.timeOut);
  if (core_->Connect(cell.Host())) table_ = core_->DataTable();
  if (table_ == nullptr) {
    throw tool::Error(Exit::NoConnection,
                      "no connection to " + cell.Host() + ": " + LastError() +
                          "; check --host and --port, and that the controller is on");
  }
}

Session::~Session() { cell_.KeepTrail(core_->GetDebugMessages()); }

std::string Session::LastError() {
  constexpr auto Operation = static_cast<std::int32_t>(DispId::LastErrorText);
  try {
    const OrvexValue text = core_->GetLib()->Invoke(Operation, ORVEX_GET, {});
    if (text.kind == ORVEX_TEXT && text.count > 0) {
      return {text.as.text, static_cast<std::size_t>(text.count)};
    }
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): then there is none
  }
  return "no reason given";
}

tool::Error Session::Refusal(const std::string& what) {
  return {Exit::Refused, what + ": " + LastError()};
}

}  // namespace orif::tool

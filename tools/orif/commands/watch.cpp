// "orif watch": keeps showing items, in place on a terminal, elsewhere or in another format as a
// line for each refresh.
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tools/orif/Json.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Page.h"
#include "tools/orif/Poll.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/terminal/Screen.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

// Which values have changed. On a terminal those of the first refresh have not.
std::vector<bool> ChangedIn(const live::Controller& controller, bool none) {
  std::vector<bool> changed(controller.Tags().size());
  if (none) return changed;
  for (const std::size_t index : controller.Changed()) changed[index] = true;
  return changed;
}

std::string Status(const Cell& cell, const Poll& poll, Link link, const Page* page) {
  std::string text = IsLost(link) ? "link lost, trying again" : "link up";
  text += "  " + cell.Host() + "  " + Iso8601(poll.Wall());
  if (!IsLost(link)) text += "  refreshed in " + std::to_string(poll.Took().count()) + " ms";
  if (poll.Skipped() > 0) text += "  " + std::to_string(poll.Skipped()) + " skipped";
  if (page != nullptr) text += "  " + page->Address();
  return text + "  (q ends)";
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
    std::cout << ' ' << tag.name << '=' << LineText(GoodValue(tag));
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

/// Tells, each second from the first on, that a refresh is still waiting for its answer.
class Patience {
 public:
  explicit Patience(std::function<void(std::chrono::seconds)> tell)
      : tell_(std::move(tell)), thread_([this](const std::stop_token& stop) { Run(stop); }) {}

  /// A refresh begins, or has ended; nothing is told any more when this returns.
  void Wait(bool begins) {
    const std::lock_guard lock(mutex_);
    begun_ = begins ? std::optional(std::chrono::steady_clock::now()) : std::nullopt;
    changed_.notify_all();
  }

 private:
  void Run(const std::stop_token& stop) {
    platform::LeaveSignalsToOthers();
    std::unique_lock lock(mutex_);
    while (changed_.wait(lock, stop, [this] { return begun_.has_value(); })) {
      const auto begun = *begun_;
      const auto ended = [&] { return begun_ != begun; };
      for (std::chrono::seconds waited(1); !stop.stop_requested(); ++waited) {
        if (changed_.wait_until(lock, stop, begun + waited, ended)) break;
        if (!stop.stop_requested()) tell_(waited);
      }
    }
  }

  std::function<void(std::chrono::seconds)> tell_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::optional<std::chrono::steady_clock::time_point> begun_;
  std::jthread thread_;
};

// With --fast a terminal shows no more pages than an eye can follow.
constexpr std::chrono::milliseconds FastFrame(50);

}  // namespace

void Watch(const WatchOptions& options) {
  Cell cell(options.connection);
  std::optional<Page> page;
  if (options.page) {
    page.emplace(*options.page, options.tokenFile, cell.Host());
    Tell("orif: the page is at " + page->Address());
  }
  Poll poll(cell, options.items, options.pace);
  const auto show = [&](bool begins) {
    if (page && !begins) page->Show(poll.Values());
  };
  poll.OnRefresh(show);
  if (options.format != "table" || !platform::IsTerminal(platform::Stream::Output)) {
    return PrintLines(options, poll);
  }
  std::optional<Screen> screen;
  std::vector<Line> lines;
  std::vector<bool> changed;
  std::string status;
  const auto paint = [&] { screen->Paint(lines, changed, status); };
  const auto keys = [&] {
    while (const auto key = platform::ReadKey()) {
      if (*key == platform::Key::Quit) return false;
      screen->Scroll(*key);
      paint();
    }
    return true;
  };
  // The values are those of the last refresh; the main thread is in the component.
  Patience patience([&](std::chrono::seconds waited) {
    screen->Paint(lines, changed,
                  "no answer for " + std::to_string(waited.count()) + " s, still waiting  " +
                      cell.Host() + "  (Ctrl-C twice ends)");
  });
  poll.OnRefresh([&](bool begins) {
    if (screen) patience.Wait(begins);
    show(begins);
  });
  poll.Meanwhile([&] { return !screen || keys(); });
  while (const std::optional<Link> link = poll.Next()) {
    const bool first = !screen;
    if (first) screen.emplace();
    lines = Layout(poll.Values());
    changed = ChangedIn(poll.Values(), IsLost(*link) || first);
    status = Status(cell, poll, *link, page ? &*page : nullptr);
    paint();
    if (!std::cout) throw Error(Exit::Usage, "the output cannot be written");
    if (options.connection.fast) platform::Sleep(FastFrame);
  }
  if (!screen) return;
  // Leave the last values on the terminal.
  screen.reset();
  for (const Line& line : Layout(poll.Values())) std::cout << PlainText(line) << '\n';
}

}  // namespace orif::tool

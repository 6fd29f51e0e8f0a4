#include "tools/orif/Poll.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>

#include "tools/orif/Error.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;
using Milliseconds = Pace::Milliseconds;

/// A lost link is tried again so often.
constexpr Milliseconds RetryAfter = 1s;

struct TimeUnit {
  std::string_view name;
  Milliseconds length;
};
constexpr std::array TimeUnits{TimeUnit{"ms", 1ms}, TimeUnit{"s", 1s}, TimeUnit{"m", 1min},
                               TimeUnit{"min", 1min}, TimeUnit{"h", 1h}};

Milliseconds ParseDuration(const std::string& option, const std::string& text) {
  constexpr std::int32_t Most = 100'000;  // of any unit
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  const std::string_view name(behind, static_cast<std::size_t>(end - behind));
  const auto unit = std::find_if(TimeUnits.begin(), TimeUnits.end(),
                                 [&](const TimeUnit& each) { return each.name == name; });
  if (error != std::errc() || number < 1 || number > Most || unit == TimeUnits.end())
    throw CLI::ValidationError(option, "'" + text +
                                           "' is no duration; write 250ms, 2s, 10m or 1h, with " +
                                           "a whole number up to " + std::to_string(Most));
  return number * unit->length;
}

}  // namespace

void AddPaceOptions(CLI::App& command, Pace& pace) {
  command
      .add_option_function<std::string>(
          "--every",
          [&pace](const std::string& text) { pace.every = ParseDuration("--every", text); },
          "Time between two refreshes: 250ms, 2s, 10m")
      ->type_name("TIME")
      ->default_str(std::to_string(pace.every.count()) + "ms");
  command
      .add_option_function<std::string>(
          "--for", [&pace](const std::string& text) { pace.length = ParseDuration("--for", text); },
          "How long: 30s, 10m, 8h (until Ctrl-C)")
      ->type_name("TIME");
  command.add_option("--count", pace.count, "How many refreshes (until Ctrl-C)")
      ->type_name("NUMBER")
      ->check(CLI::PositiveNumber.description(""));
}

Poll::Poll(Cell& cell, std::vector<Designation> designations, const Pace& pace)
    : cell_(cell),
      clock_(cell),
      designations_(std::move(designations)),
      pace_(pace),
      live_(std::make_unique<Live>(cell_, designations_)) {
  platform::CatchInterrupt();
}

std::optional<Link> Poll::Next() {
  if (!WaitUntilDue()) return {};
  began_ = clock_.Now();
  wall_ = clock_.Wall();
  const Link link = lost_ ? ConnectAnew() : Refresh();
  took_ = clock_.Now() - began_;
  ++refreshes_;
  return link;
}

bool Poll::WaitUntilDue() {
  if (turn_ < 0) start_ = clock_.Now();
  const std::int64_t next = turn_ + 1;
  turn_ = std::max<std::int64_t>(next, (clock_.Now() - start_) / pace_.every);
  const Milliseconds due = turn_ * pace_.every;
  if ((pace_.length && due >= *pace_.length) || (pace_.count && refreshes_ >= *pace_.count))
    return false;
  if (!lost_) skipped_ += turn_ - next;
  clock_.SleepUntil(start_ + due);
  return !platform::Interrupted();
}

Link Poll::Refresh() {
  if (live_->readout.Read()) return Link::Up;
  if (refreshes_ == 0) throw live_->session.Refusal("the values cannot be read");
  // The controller may have room for one connection only: this one ends before the next begins.
  live_->session.Core().Disconnect();
  lost_ = true;
  retryAt_ = began_ + RetryAfter;
  ++gaps_;
  return Link::Lost;
}

Link Poll::ConnectAnew() {
  if (began_ < retryAt_) return Link::StillLost;
  try {
    auto live = std::make_unique<Live>(cell_, designations_);
    if (live->readout.Read()) {
      live_ = std::move(live);
      lost_ = false;
      return Link::Back;
    }
  } catch (const Error&) {
    // Not back yet. What the reason is, the user has seen at the start or sees in the trail.
  }
  retryAt_ = clock_.Now() + RetryAfter;
  return Link::StillLost;
}

}  // namespace orif::tool

// What the page knows of one cell. Its host, a gateway or the tool, tells it after each refresh;
// who shows it asks. So nobody who looks at the page ever waits for a controller, or keeps it
// waiting.
#pragma once

#include <atomic>
#include <bitset>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "live/Controller.h"
#include "tools/page/History.h"

namespace orif::page {

/// Any thread may call every member at any time.
class Cell {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  /// `host` is where the controller is, for people.
  Cell(std::string name, std::string host) : name_(std::move(name)), host_(std::move(host)) {}

  // The host.

  /// After each refresh and each attempt: the tags with those indices have changed.
  void Refreshed(const live::Controller& controller, std::span<const std::size_t> changed,
                 bool good, Instant now = std::chrono::steady_clock::now());
  /// "up", "lost", ... and why.
  void SetState(std::string_view state, std::string_view reason);

  // The page.

  const std::string& Name() const { return name_; }

  struct Summary {
    std::string host;
    std::string state;
    std::string reason;
    std::size_t tags = 0;
    std::size_t alarms = 0;  ///< how many of the tags' active alarms there are
    std::string alarm;       ///< the message of the first
  };
  Summary Summarize() const;
  /// Another one whenever the summary may be another.
  std::uint64_t SummaryVersion() const { return summaryVersion_; }

  /// How long ago the last good refresh was; none before the first.
  std::optional<std::chrono::milliseconds> Age(Instant now) const;

  /// Counts refreshes; 0 before the first, when nothing is known of the tags.
  std::uint64_t Version() const { return version_; }

  struct TagName {
    std::string name;
    std::string unit;
  };
  std::vector<TagName> Tags() const;

  /// A tag whose value or quality has changed, and when.
  struct Change {
    std::size_t tag;
    live::Reading reading;
  };
  /// What has changed since that version, which becomes the present one; everything since 0.
  std::vector<Change> ChangesSince(std::uint64_t& version) const;

  /// The last hour of a tag; none if there is no such tag.
  std::optional<std::array<History::Step, History::Steps>> HistoryOf(
      std::string_view tag, Instant now = std::chrono::steady_clock::now()) const;

 private:
  struct Tag {
    live::Reading reading;
    std::uint64_t version = 0;  // of the refresh in which it changed
    History history;
  };
  struct Alarm {
    std::size_t first;
    std::size_t count;
    std::size_t message;
  };

  void Begin(const live::Controller& controller);
  void Take(std::size_t index, const live::Tag& tag, live::Time now, std::int64_t step);
  void CountAlarms();
  void MarkRead(std::int64_t step);

  const std::string name_;
  const std::string host_;
  std::atomic<std::uint64_t> version_ = 0;
  std::atomic<std::uint64_t> summaryVersion_ = 0;

  mutable std::mutex mutex_;  // for what follows
  std::string state_ = "closed";
  std::string reason_;
  std::optional<Instant> lastGood_;
  std::vector<TagName> names_;
  std::vector<Tag> tags_;
  std::vector<Alarm> alarms_;
  std::size_t alarmCount_ = 0;
  std::string alarmText_;
  std::bitset<History::Steps> read_;  // the steps with a good refresh; the newest is the first
  std::int64_t lastStep_ = 0;         // the newest
};

}  // namespace orif::page

// Monitor, a thread that keeps the values of a controller fresh.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "live/Controller.h"
#include "live/live_export.h"

namespace orif::live {

/// What a Monitor tells of a refresh.
struct Refreshed {
  const Controller& controller;          ///< its tags have the values; for the call-back only
  std::span<const std::size_t> changed;  ///< indices of the tags that changed, ascending
  bool good;                             ///< whether the refresh succeeded
  Milliseconds took;                     ///< how long it took
  std::int64_t skipped;                  ///< turns left out so far, because refreshes took too long
};

/// What a Monitor calls, on its thread and one at a time. A call-back must not throw, and not wait
/// for the Monitor; Stop may be called from one. Either may be empty.
struct MonitorEvents {
  std::function<void(const Refreshed&)> onRefresh = {};  ///< after every refresh, and every attempt
  LinkEvent onLink = {};                                 ///< at every change of the link
};

/// A thread that refreshes a Controller at a steady pace. It connects, comes back after a lost
/// link, and calls back. Other threads may use every member at any time.
///
///     orif::live::Monitor monitor({.host = "cell1", .tags = {"R[1-10]"}}, 100ms,
///                                 {.onRefresh = [](const orif::live::Refreshed& now) {
///                                   for (const std::size_t i : now.changed)
///                                   Show(now.controller.Tags()[i]);
///                                 }});
///
/// The thread begins with the constructor and ends with Stop.
class ORIF_LIVE_EXPORT Monitor {
 public:
  /// Refreshes every `every` (1 ms or more) from now on. The first refresh connects. The settings'
  /// own onLink is called too, before that of `events`. Throws a UsageError as Controller does, and
  /// for a period of 0 or less; std::system_error if there can be no thread.
  Monitor(Settings settings, Milliseconds every, MonitorEvents events = {});
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  /// Stops, as Stop does. A call-back may destroy its Monitor: nobody is called after it.
  ~Monitor();

  /// Ends the thread and closes the link. If the component hangs, Stop waits for it at most as long
  /// as the time-out (the setting, else the component's own, else 5 s), and then abandons the
  /// thread: it owns all that it still touches, asks nothing more of the component but to close the
  /// connection, calls nobody back, and ends when the component returns. Stop waits for a call-back
  /// that runs. Returns whether the thread has ended. From a call-back it waits for nothing and
  /// answers true: the link is closed, and onLink told, after the call-back has returned.
  bool Stop();

  /// The state of the link.
  Link State() const;

  /// Why the last refresh or write failed; empty if none has.
  Reason LastReason() const;

  /// The names of all tags; their readings change on the Monitor's thread, so ask Read for those.
  std::span<const Tag> Tags() const;

  /// The reading of the tag `name` after the last refresh. Throws a UsageError if there is none of
  /// that name.
  Reading Read(std::string_view name) const;

  /// The readings of all tags after the same refresh, in the order of Tags.
  std::vector<Reading> ReadAll() const;

  /// Has the thread write, as Controller::Write does, as soon as it is free. Throws the same
  /// UsageError at once. After Stop, the answers say that the monitor has ended.
  std::future<std::vector<Answer>> Write(std::vector<Assignment> assignments);

  /// Has the thread reset alarms, as Controller::ClearAlarms does.
  std::future<Answer> ClearAlarms(std::int32_t type = 0);

 private:
  struct Self;
  std::shared_ptr<Self> self_;
};

}  // namespace orif::live

// Refreshes the named items at a steady pace. If the link to the controller is lost, it connects
// again and registers everything again until the values are back. Used by watch and record.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "tools/orif/Clock.h"
#include "tools/orif/Designation.h"
#include "tools/orif/Link.h"
#include "tools/orif/Readout.h"
#include "tools/orif/Session.h"

namespace orif::tool {

/// How often to refresh, and how long: for a time, a number of refreshes, or until Ctrl-C.
struct Pace {
  using Milliseconds = std::chrono::milliseconds;

  Milliseconds every{500};
  std::optional<Milliseconds> length;
  std::optional<std::int64_t> count;
};

class Poll {
 public:
  /// Connects and registers the items. Throws an Error as Session and Readout do.
  Poll(Cell& cell, std::vector<Designation> designations, const Pace& pace);

  /// Waits for the next refresh, which is due a whole number of periods after the first, and makes
  /// it. Refreshes that were missed because one came late are skipped. Empty at the end. Throws an
  /// Error if the very first refresh is refused; later that counts as a lost link.
  std::optional<Link> Next();

  /// The values of the last good refresh.
  const Readout& Values() const { return live_->readout; }

  /// When the last refresh began, since the first one.
  Pace::Milliseconds SinceStart() const { return began_ - start_; }
  /// The same as date and time.
  Clock::WallTime Wall() const { return wall_; }
  /// How long it took.
  Pace::Milliseconds Took() const { return took_; }

  /// How many refreshes were skipped.
  std::int64_t Skipped() const { return skipped_; }
  /// How often the link was lost.
  std::int64_t Gaps() const { return gaps_; }

 private:
  bool WaitUntilDue();
  Link Refresh();
  Link ConnectAnew();

  /// A connection with everything registered.
  struct Live {
    Live(Cell& cell, const std::vector<Designation>& designations)
        : session(cell), readout(session, designations) {}

    Session session;
    Readout readout;
  };

  Cell& cell_;
  Clock clock_;
  std::vector<Designation> designations_;
  Pace pace_;
  std::unique_ptr<Live> live_;
  bool lost_ = false;
  Pace::Milliseconds start_{};
  Pace::Milliseconds began_{};
  Pace::Milliseconds took_{};
  Pace::Milliseconds retryAt_{};
  Clock::WallTime wall_;
  std::int64_t turn_ = -1;  // which period the last refresh belongs to
  std::int64_t refreshes_ = 0;
  std::int64_t skipped_ = 0;
  std::int64_t gaps_ = 0;
};

}  // namespace orif::tool

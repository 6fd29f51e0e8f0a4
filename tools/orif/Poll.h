// Refreshes the named items at a steady pace, as orif::live has it. Used by watch and record.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/orif/Cell.h"
#include "tools/orif/Clock.h"
#include "tools/orif/Link.h"
#include "tools/orif/Pacer.h"

namespace orif::tool {

/// How often to refresh, and how long: for a time, a number of refreshes, or until Ctrl-C.
struct Pace {
  using Milliseconds = std::chrono::milliseconds;

  Milliseconds every{500};
  std::optional<Milliseconds> length;
  std::optional<std::int64_t> count;
  bool wait = false;  ///< for a controller that is off at first
};

class Poll {
 public:
  /// Connects and refreshes. Throws an Error if there is no connection, unless the user wants to
  /// wait for one, and as ReadOnce.
  Poll(Cell& cell, const std::vector<std::string>& items, const Pace& pace);

  /// Has `call` called again and again while Next waits for a refresh to be due; Next is empty if
  /// it answers false.
  void Meanwhile(std::function<bool()> call) { meanwhile_ = std::move(call); }

  /// Has `call` called when a refresh begins, with true, and when it has ended.
  void OnRefresh(std::function<void(bool begins)> call) { onRefresh_ = std::move(call); }

  /// Waits for the next refresh, which is due a whole number of periods after the first, and makes
  /// it. Refreshes that were missed because one came late are skipped. Empty at the end.
  std::optional<Link> Next();

  const live::Controller& Values() const { return controller_; }

  /// When the last refresh began, since the first one.
  Pace::Milliseconds SinceStart() const { return began_; }
  /// The same as date and time.
  Clock::WallTime Wall() const { return wall_; }
  /// How long it took.
  Pace::Milliseconds Took() const { return took_; }

  /// How many refreshes were skipped.
  std::int64_t Skipped() const { return pacer_.Skipped(); }
  /// How often the link was lost.
  std::int64_t Gaps() const { return pacer_.link.Gaps(); }

 private:
  std::shared_ptr<Clock> clock_;
  Controller controller_;
  Pace pace_;
  Pacer pacer_;
  Pace::Milliseconds began_{};
  Pace::Milliseconds took_{};
  Clock::WallTime wall_;
  std::int64_t refreshes_ = 0;
  std::function<bool()> meanwhile_;
  std::function<void(bool)> onRefresh_;
};

}  // namespace orif::tool

// Chooses what of a refresh is told: what changed, within dead bands and at the pace of its group,
// and everything every so often.
#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "live/Controller.h"
#include "tools/gateway/Configuration.h"

namespace orif::gateway {

class Sampler {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  explicit Sampler(const CellSettings& cell) : groups_(cell.tags), full_(cell.full) {}

  /// The lines of a row (Row::values) for a refresh at `now`, in words `time`; empty if there is
  /// nothing to tell. `all` asks for all tags; afterwards it says whether all are there.
  std::string Take(const live::Controller& controller, std::span<const std::size_t> changed,
                   Instant now, std::string_view time, bool& all);

 private:
  // A tag of a group with a dead band or a pace of its own.
  struct Held {
    std::size_t tag;
    std::size_t group;
    live::Value told;
    live::Quality quality;
    bool changed;
  };

  void Begin(const live::Controller& controller);
  bool IsToTell(const Held& held, const live::Tag& tag, bool due) const;

  std::vector<TagGroup> groups_;
  Milliseconds full_;
  bool begun_ = false;
  Instant fullAt_;
  std::vector<Instant> dueAt_;  // of each group
  std::vector<Held> held_;
  std::vector<std::size_t> heldOfTag_;  // index in held_, or None
};

}  // namespace orif::gateway

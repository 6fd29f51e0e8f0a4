// Signals, read one call for each kind and run of consecutive numbers. Internal.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "live/Clock.h"
#include "live/Name.h"
#include "live/Reason.h"
#include "live/Sink.h"

namespace orif::live {

/// The last signal; they are addressed with 16 bits.
constexpr std::int32_t LastSignal = 32767;

class SignalRuns {
 public:
  /// Adds a signal of `name`, which must stay where it is, and its tag. Before Prepare.
  void Add(const Name& name, std::int32_t number, Tag& tag);

  /// Forms the runs anew, as for a new connection.
  void Prepare();

  /// Whether any run has been read on this connection.
  bool AnyRead() const { return std::ranges::any_of(runs_, &Run::wasRead); }

  /// The last refusal of a run on this connection.
  const std::optional<Reason>& LastRefusal() const { return lastRefusal_; }

  /// Reads all runs. A run that the controller refuses from the start is its own affair: it is read
  /// name by name then, and the tags of a name that is still refused are refused. If one that was
  /// read before fails, or if the reason tells that the link is lost, all further ones are left
  /// alone and their tags stale, and the reason is the answer.
  std::optional<Reason> Read(Core& core, ReasonKeeper& reasons, const Clock& clock,
                             const std::function<bool(const Reason&)>& tellsLostLink, Sink& sink);

 private:
  struct Signal {
    const Name* name;
    std::int32_t number;
    Tag* tag;
  };

  /// Consecutive signals of one kind: `count` of them from signals_[begin] on.
  struct Run {
    std::size_t begin = 0;
    std::size_t count = 0;
    bool wasRead = false;  // on this connection
  };

  std::span<const Signal> Of(const Run& run) const {
    return std::span(signals_).subspan(run.begin, run.count);
  }
  bool Call(Core& core, const Run& run);
  void Put(const Run& run, Sink& sink) const;
  std::string Shown(const Run& run) const;
  bool HasSeveralNames(const Run& run) const;
  std::vector<Run> ByName(const Run& run) const;

  std::vector<Signal> signals_;
  std::vector<Run> runs_;
  std::optional<Reason> lastRefusal_;
  std::vector<std::int16_t> bits_;
  std::vector<std::int32_t> groups_;
};

/// Writes one signal; a bit is 0 or 1. False if the controller refuses.
bool WriteSignal(Core& core, const Symbol& symbol, std::int32_t number, std::int32_t value);

}  // namespace orif::live

// What a Controller hides: its tags, which never change, and the connection. ControllerTags.cpp
// makes the tags, ControllerWrite.cpp writes, Controller.cpp does the rest. Internal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "live/Backoff.h"
#include "live/Controller.h"
#include "live/SignalRuns.h"
#include "live/Sink.h"
#include "live/Source.h"
#include "orif/core/Core.h"

namespace orif::live {

inline std::shared_ptr<const Reason> Shared(Reason reason) {
  return std::make_shared<const Reason>(std::move(reason));
}

/// The lower core object that the settings `factory` and `component` mean. Throws what keeps it
/// from being made.
std::shared_ptr<Dispatch> MakeLowerCore(const DispatchFactory& factory,
                                        const std::string& component);

/// Throws a UsageError unless the value can be written to the tag, a field of what `name` names.
void CheckValue(const Tag& tag, const Name& name, std::size_t field, const Value& value);

struct Controller::Self {
  explicit Self(live::Settings given);

  // What never changes once the controller is made.

  void CheckSettings() const;
  void MakeTags();
  void MakeItems(std::size_t named);
  Source& SourceOf(const Name& name, std::int32_t index);
  std::size_t IndexOf(std::string_view name) const;

  /// Where a tag's value is: in field `field` of item `index`. Signals have no source.
  struct Place {
    const Name* name = nullptr;
    Source* source = nullptr;
    std::int32_t index = 0;
    std::size_t field = 0;
  };
  struct TextHash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  bool IsPositionPart(std::size_t tag) const {
    return places[tag].name->IsPosition() && tags[tag].field != CommentField;
  }

  live::Settings settings;
  std::vector<Name> names;
  std::vector<Tag> tags;
  std::vector<Place> places;  // of the tags
  std::vector<Item> items;
  std::vector<std::unique_ptr<Source>> sources;
  std::map<std::string, Source*> sourcesByName;
  std::unordered_map<std::string, std::size_t, TextHash, std::equal_to<>> indices;
  std::optional<Sink> sink;

  // The connection.

  std::optional<Reason> Open();
  bool Connect();
  std::optional<Reason> RegisterAll();
  std::optional<Reason> ReadAll();
  Reason LastOf(std::string item) const;
  void Drop();
  void Lose(const Reason& reason);
  void SetLink(Link to, const Reason& reason);

  Link link = Link::Closed;
  std::shared_ptr<ReasonKeeper> reasons;
  std::unique_ptr<Core> core;
  std::shared_ptr<DataTable> table;
  std::vector<Source*> registered;
  SignalRuns signals;
  Reason lastRefusal;  // of a registration
  int failures = 0;
  Backoff backoff;
  std::chrono::steady_clock::time_point retryAt;
  Reason lastReason;
  std::string debugMessages;  // of the connections that have ended

  // Writing.

  /// What is written in one call: a value, or the fields of a position.
  struct Sending {
    std::size_t tag;                   // of the first field
    std::vector<std::size_t> members;  // indices of the assignments
    std::vector<FieldValue> values;
  };

  std::vector<Assignment> InBytes(std::span<const Assignment> assignments) const;
  void Check(std::span<const Assignment> assignments) const;
  std::vector<Sending> Group(std::span<const Assignment> assignments) const;
  std::optional<Reason> WhyNotUp(const std::string& item) const;
  std::optional<Reason> Rehearse(const Sending& sending);
  std::optional<Reason> Send(const Sending& sending);
  std::vector<Answer> Write(std::span<const Assignment> assignments, bool really);
  std::vector<Answer> Stop(std::vector<Answer> answers, std::span<const Sending> left,
                           const Sending& failed, const Reason& reason);
};

}  // namespace orif::live

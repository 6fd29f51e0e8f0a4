#include "live/Controller.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_map>
#include <utility>

#include "live/Backoff.h"
#include "live/PositionWrite.h"
#include "live/SignalRuns.h"
#include "live/Source.h"
#include "live/UsageError.h"
#include "orif/items/DataArea.h"
#include "orif/lowerlayer/Component.h"
#include "orif/orif.h"
#include "spelling/UpperCase.h"

namespace orif::live {
namespace {

/// Failed refreshes in a row that make the link lost.
constexpr int FailuresOfALostLink = 2;

std::shared_ptr<const Reason> Shared(Reason reason) {
  return std::make_shared<const Reason>(std::move(reason));
}

std::string FieldTag(const std::string& item, std::string_view field) {
  return field.empty() ? item : item + "." + std::string(field);
}

[[noreturn]] void Refuse(const Tag& tag, const std::string& why) {
  throw UsageError(tag.name + ": " + why);
}

void CheckInteger(const Tag& tag, const Value& value, std::int64_t least, std::int64_t most,
                  const std::string& wanted) {
  const auto* number = std::get_if<std::int64_t>(&value);
  if (number == nullptr || *number < least || *number > most) {
    Refuse(tag, "'" + value.Text() + "' is not " + wanted);
  }
}

void CheckNumber(const Tag& tag, const Value& value) {
  const auto number = value.Number();
  if (!number || std::holds_alternative<bool>(value) || !std::isfinite(*number)) {
    Refuse(tag, "'" + value.Text() + "' is not a number");
  }
}

void CheckText(const Tag& tag, const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) Refuse(tag, "'" + value.Text() + "' is not a text");
  if (text->size() > DataArea::TextBytes) {
    Refuse(tag, "the text has " + std::to_string(text->size()) + " bytes; " +
                    std::to_string(DataArea::TextBytes) + " is the most");
  }
}

template <class T>
void CheckWhole(const Tag& tag, const Value& value, const std::string& wanted, T least = 0) {
  CheckInteger(tag, value, least, std::numeric_limits<T>::max(), wanted);
}

void CheckInt32(const Tag& tag, const Value& value) {
  CheckWhole(tag, value, "a whole number of 32 bits", std::numeric_limits<std::int32_t>::min());
}

void CheckPositionField(const Tag& tag, std::size_t field, const Value& value) {
  if (field == PositionField::Config) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr || ConfigNumbers(*text).empty()) {
      Refuse(tag, "a configuration has seven numbers: 1 0 1 0 0 0 0");
    }
  } else if (field >= PositionField::UF) {
    CheckWhole(tag, value, "the number of a frame", std::numeric_limits<std::int16_t>::min());
  } else {
    CheckNumber(tag, value);
  }
}

// Throws a UsageError unless the value can be written to the tag, a field of what `name` names.
void CheckValue(const Tag& tag, const Name& name, std::size_t field, const Value& value) {
  if (tag.field == CommentField) return CheckText(tag, value);
  switch (name.Is()) {
    case Kind::NumReg:
      if (name.type == NUMREG_INT || std::holds_alternative<std::int64_t>(value)) {
        return CheckInt32(tag, value);
      }
      return CheckNumber(tag, value);
    case Kind::StringReg:
      return CheckText(tag, value);
    case Kind::PosReg:
      return CheckPositionField(tag, field, value);
    case Kind::SysVar:
      if (name.type == SYSVAR_POS) return CheckPositionField(tag, field, value);
      if (name.type == SYSVAR_STRING) return CheckText(tag, value);
      if (name.type == SYSVAR_INT) return CheckInt32(tag, value);
      return CheckNumber(tag, value);
    case Kind::Bit:
      if (std::holds_alternative<bool>(value)) return;
      return CheckInteger(tag, value, 0, 1, "on, off, 1 or 0");
    case Kind::Group:
      return CheckWhole<std::int32_t>(tag, value, "a whole number from 0 on");
    default:
      Refuse(tag, std::string(name.symbol->name) + " is read only");
  }
}

void CheckWords(std::int64_t words) {
  if (words <= DataArea::LastWord) return;
  throw UsageError("these items take " + std::to_string(words) +
                   " words of the controller's data area, which has " +
                   std::to_string(DataArea::LastWord) + "; name fewer at a time");
}

}  // namespace

std::string_view ToText(Link link) {
  switch (link) {
    case Link::Closed:
      return "closed";
    case Link::Connecting:
      return "connecting";
    case Link::Up:
      return "up";
    default:
      return "lost";
  }
}

bool TellsLostLink(const Reason& reason) {
  const std::string text = spelling::UpperCase(reason.text);
  const auto says = [&](std::string_view words) { return text.find(words) != std::string::npos; };
  if (says("NOT CONNECTED") || says("NO CONNECTION") || says("DISCONNECTED")) return true;
  if (!says("CONNECTION") && !says("LINK")) return false;
  constexpr auto Ends = std::to_array<std::string_view>(
      {"LOST", "CLOSED", "RESET", "ABORTED", "BROKEN", "TERMINATED", "DOWN", "FAILED"});
  return std::ranges::any_of(Ends, says);
}

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
  std::shared_ptr<Clock> clock;
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
  bool everRegistered = false;
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

Controller::Self::Self(live::Settings given)
    : settings(std::move(given)),
      clock(settings.clock ? settings.clock : std::make_shared<Clock>()),
      backoff(settings.retry) {
  CheckSettings();
  if (!settings.tellsLostLink) settings.tellsLostLink = TellsLostLink;
  for (const std::string& text : settings.tags) names.push_back(ParseName(text));
  MakeTags();
}

void Controller::Self::CheckSettings() const {
  if (settings.host.empty()) throw UsageError("no controller is named; say its host");
  if (settings.timeOut && (settings.timeOut->count() < 100 ||
                           settings.timeOut->count() > std::numeric_limits<std::int32_t>::max())) {
    throw UsageError("a time-out is 100 ms or more");
  }
  if (settings.retry.first.count() <= 0 || settings.retry.most < settings.retry.first) {
    throw UsageError(
        "the first wait before a lost link is tried again is more than 0 ms, and the "
        "longest no shorter");
  }
  if (!settings.component.empty() && settings.factory) {
    throw UsageError("a component and a factory exclude each other");
  }
}

void Controller::Self::MakeTags() {
  for (std::size_t i = 0; i < names.size(); ++i) MakeItems(i);
  std::int64_t words = 0;
  for (const auto& source : sources) words += WordsOf(source->name);
  CheckWords(words);
  // Tags have their places now; sources and signals may point at them.
  for (std::size_t i = 0; i < tags.size(); ++i) {
    Tag& tag = tags[i];
    if (!indices.emplace(tag.name, i).second) {
      throw UsageError(tag.name + " is named more than once");
    }
    Place& place = places[i];
    if (place.name->IsSignal() && tag.field != CommentField) {
      signals.Add(*place.name, place.index, tag);
      continue;
    }
    place.source->slots.push_back({place.index, place.field, &tag});
  }
  for (const auto& source : sources) {
    std::ranges::sort(source->slots, {},
                      [](const Slot& slot) { return std::make_pair(slot.index, slot.field); });
  }
  sink.emplace(tags, settings.fromController);
}

void Controller::Self::MakeItems(std::size_t named) {
  const Name& name = names[named];
  if (name.IsSignal() && name.last > LastSignal) {
    throw UsageError("'" + name.text + "': signals end at " + std::to_string(LastSignal));
  }
  CheckWords(WordsOf(name));  // before there is a tag for each
  const auto add = [&](const Place& place, std::string_view field, std::string_view unit) {
    const std::string item = name.Item(place.index);
    tags.push_back({{}, FieldTag(item, field), item, std::string(field), std::string(unit)});
    places.push_back(place);
  };
  Name comments = name;
  comments.field = CommentField;
  for (std::int64_t number = name.first; number <= name.last; ++number) {
    const auto index = static_cast<std::int32_t>(number);
    const std::size_t first = tags.size();
    if (!name.IsComment()) {
      Source* source = name.IsSignal() ? nullptr : &SourceOf(name, index);
      const auto fields = name.Fields();
      for (std::size_t field = 0; field < fields.size(); ++field) {
        if (!name.field.empty() && name.field != fields[field].name) continue;
        add({&name, source, index, field}, fields[field].name, fields[field].unit);
      }
    }
    if (name.IsComment() || (settings.comments && name.field.empty() && name.symbol->comment)) {
      add({&name, &SourceOf(comments, index), index, 0}, CommentField, "");
    }
    items.push_back({name.Item(index), named, first, tags.size() - first});
  }
}

// The source that a name's item is registered with: one for each name, and one for each item where
// the controller is asked for each. Fields of the same items share theirs.
Source& Controller::Self::SourceOf(const Name& name, std::int32_t index) {
  Name served = name;
  if (!name.IsComment()) served.field.clear();
  if (StandsAlone(name)) served.first = served.last = index;
  Source*& source = sourcesByName[served.Canonical()];
  if (source == nullptr) {
    sources.push_back(MakeSource(served));
    source = sources.back().get();
  }
  return *source;
}

std::size_t Controller::Self::IndexOf(std::string_view name) const {
  if (const auto found = indices.find(name); found != indices.end()) return found->second;
  const Name parsed = ParseName(name);
  if (parsed.first == parsed.last) {
    const std::string item = parsed.Item(parsed.first);
    if (const auto found = indices.find(FieldTag(item, parsed.field)); found != indices.end()) {
      return found->second;
    }
    const auto same = std::ranges::find(items, item, &Item::name);
    if (same != items.end() && parsed.field.empty()) {
      throw UsageError("'" + std::string(name) +
                       "' has fields; name one of them: " + tags[same->first].name);
    }
  }
  throw UsageError("'" + std::string(name) + "' is none of the tags of " + settings.host);
}

void Controller::Self::SetLink(Link to, const Reason& reason) {
  if (link == to) return;
  link = to;
  if (settings.onLink) settings.onLink(to, reason);
}

Reason Controller::Self::LastOf(std::string item) const {
  Reason reason = reasons->Last().value_or(Reason{});
  reason.item = std::move(item);
  return reason;
}

bool Controller::Self::Connect() {
  SetLink(Link::Connecting, {});
  if (const auto reason = Open()) {
    Lose(*reason);
    return false;
  }
  failures = 0;
  SetLink(Link::Up, {});
  return true;
}

// Why there is no connection, if there is none.
std::optional<Reason> Controller::Self::Open() {
  try {
    auto lower = settings.factory             ? settings.factory()
                 : settings.component.empty() ? CreateComponentCore()
                                              : CreateComponentCore(settings.component);
    if (lower == nullptr) throw Fault(Fault::ObjectNotSet);
    reasons = std::make_shared<ReasonKeeper>(std::move(lower), settings.fromController);
  } catch (const std::exception& fault) {
    return Reason{
        settings.host, {}, {}, std::string("no communication component: ") + fault.what()};
  }
  core = std::make_unique<Core>([this] { return reasons; });
  if (settings.debugLog) core->DebugLog(true);
  if (settings.port) core->PortNumber(*settings.port);
  if (settings.timeOut) core->TimeOutValue(static_cast<std::int32_t>(settings.timeOut->count()));
  reasons->Forget();
  if (!core->Connect(settings.host)) return LastOf(settings.host);
  table = core->DataTable();
  if (table == nullptr) return LastOf(settings.host);
  return RegisterAll();
}

std::optional<Reason> Controller::Self::RegisterAll() {
  registered.clear();
  std::vector<std::pair<const Source*, Reason>> refused;
  for (const auto& source : sources) {
    reasons->Forget();
    source->accepted = source->Register(*table);
    if (source->accepted) {
      registered.push_back(source.get());
      continue;
    }
    source->Drop();
    refused.emplace_back(source.get(), LastOf(source->name.Canonical()));
    if (settings.tellsLostLink(refused.back().second)) return refused.back().second;
  }
  // Where items were accepted before, it is not the items that are refused.
  if (registered.empty() && everRegistered && !refused.empty()) return refused.back().second;
  if (!registered.empty()) everRegistered = true;
  for (const auto& [source, reason] : refused) {
    const auto shared = Shared(reason);
    for (const Slot& slot : source->slots) sink->Refused(*slot.tag, shared);
  }
  const auto notYet = Shared({{}, {}, {}, "not read yet"});
  for (const Source* source : registered) {
    for (const Slot& slot : source->slots) {
      if (slot.tag->quality == Quality::Refused) sink->Stale(*slot.tag, notYet);
    }
  }
  signals.Prepare();
  return {};
}

// Why not all values are what the controller has now.
std::optional<Reason> Controller::Self::ReadAll() {
  if (!registered.empty()) {
    reasons->Forget();
    if (!table->Refresh()) {
      const Reason reason = LastOf(settings.host);
      sink->AllStale(Shared(reason));
      return reason;
    }
    sink->At(clock->Wall());
    const auto unread = [&](std::span<const Slot> slots) {
      const auto reason = Shared(LastOf(slots.front().tag->item));
      for (const Slot& slot : slots) sink->Stale(*slot.tag, reason);
    };
    for (Source* source : registered) source->Decode(*sink, unread);
  }
  return signals.Read(*core, *reasons, *clock, settings.tellsLostLink, *sink);
}

void Controller::Self::Drop() {
  for (const auto& source : sources) source->Drop();
  registered.clear();
  table = nullptr;
  if (core != nullptr) core->Disconnect();
  if (core != nullptr && settings.debugLog) debugMessages = core->GetDebugMessages();
  core = nullptr;
  reasons = nullptr;
}

void Controller::Self::Lose(const Reason& reason) {
  // The controller may allow one connection only: this one ends before the next begins.
  Drop();
  lastReason = reason;
  sink->AllStale(Shared(reason));
  retryAt = clock->Now() + backoff.Next();
  SetLink(Link::Lost, lastReason);
}

// With the texts as the controller takes them.
std::vector<Assignment> Controller::Self::InBytes(std::span<const Assignment> assignments) const {
  std::vector<Assignment> converted(assignments.begin(), assignments.end());
  if (!settings.toController) return converted;
  for (Assignment& each : converted) {
    auto* text = std::get_if<std::string>(&each.value);
    if (text == nullptr) continue;
    try {
      *text = settings.toController(*text);
    } catch (const UsageError& error) {
      throw UsageError(each.name + ": " + error.what());
    }
  }
  return converted;
}

void Controller::Self::Check(std::span<const Assignment> assignments) const {
  std::map<std::string, bool> joints;  // positions, and whether their joints are named
  for (const Assignment& each : assignments) {
    const std::size_t index = IndexOf(each.name);
    CheckValue(tags[index], *places[index].name, places[index].field, each.value);
    if (!IsPositionPart(index) || places[index].field >= PositionField::UF) {
      continue;
    }
    const bool joint = places[index].field >= PositionField::Joint;
    if (joints.emplace(tags[index].item, joint).first->second != joint) {
      throw UsageError(tags[index].item +
                       ": a position is written in cartesian or in joint form, not in both");
    }
  }
}

std::optional<Reason> Controller::Self::WhyNotUp(const std::string& item) const {
  if (link == Link::Up) return {};
  return Reason{item, {}, {}, "the link to " + settings.host + " is " + std::string(ToText(link))};
}

std::vector<Controller::Self::Sending> Controller::Self::Group(
    std::span<const Assignment> assignments) const {
  std::vector<Sending> sendings;
  for (std::size_t i = 0; i < assignments.size(); ++i) {
    const std::size_t tag = IndexOf(assignments[i].name);
    const bool position = IsPositionPart(tag);
    const auto same = std::ranges::find_if(sendings, [&](const Sending& each) {
      return position && tags[each.tag].item == tags[tag].item && IsPositionPart(each.tag);
    });
    const bool further = same != sendings.end();
    Sending& sending = further ? *same : sendings.emplace_back(Sending{tag, {}, {}});
    sending.members.push_back(i);
    sending.values.push_back({places[tag].field, &assignments[i].value});
  }
  return sendings;
}

// What keeps the values from being sent, if anything does. Positions need a fresh refresh.
std::optional<Reason> Controller::Self::Rehearse(const Sending& sending) {
  const Tag& tag = tags[sending.tag];
  if (auto reason = WhyNotUp(tag.name)) return reason;
  const Place& place = places[sending.tag];
  if (place.source == nullptr) return {};
  if (!place.source->accepted) return *tag.reason;
  std::string complaint;
  reasons->Forget();
  if (place.source->CanWrite(place.index, sending.values, complaint)) return {};
  if (!complaint.empty()) return Reason{tag.item, {}, {}, complaint};
  return LastOf(tag.item);
}

// Why the controller does not take the values, if it does not.
std::optional<Reason> Controller::Self::Send(const Sending& sending) {
  const Tag& tag = tags[sending.tag];
  const Place& place = places[sending.tag];
  reasons->Forget();
  const bool written =
      place.source != nullptr
          ? place.source->Write(place.index, sending.values)
          : WriteSignal(*core, *place.name->symbol, place.index,
                        static_cast<std::int32_t>(*sending.values.front().value->Number()));
  if (written) return {};
  return LastOf(IsPositionPart(sending.tag) ? tag.item : tag.name);
}

// The answers when one sending has failed, and none of `left` is sent any more.
std::vector<Answer> Controller::Self::Stop(std::vector<Answer> answers,
                                           std::span<const Sending> left, const Sending& failed,
                                           const Reason& reason) {
  for (const Sending& sending : left) {
    const Reason because{
        tags[sending.tag].name, {}, {}, "not written, since " + reason.item + " was not"};
    for (const std::size_t member : sending.members) {
      answers[member].reason = &sending == &failed ? reason : because;
    }
  }
  lastReason = reason;
  if (link == Link::Up && settings.tellsLostLink(reason)) {
    sink->Begin();
    Lose(reason);
  }
  return answers;
}

std::vector<Answer> Controller::Self::Write(std::span<const Assignment> given, bool really) {
  const std::vector<Assignment> assignments = InBytes(given);
  Check(assignments);
  std::vector<Answer> answers(assignments.size());
  const std::vector<Sending> sendings = Group(assignments);
  const std::span all(sendings);
  const auto position =
      std::ranges::find_if(sendings, [&](const Sending& each) { return IsPositionPart(each.tag); });
  if (link == Link::Up && position != sendings.end()) {
    reasons->Forget();
    if (!table->Refresh()) {
      return Stop(answers, all, *position, LastOf(tags[position->tag].item));
    }
  }
  for (const Sending& sending : sendings) {
    if (const auto reason = Rehearse(sending)) return Stop(answers, all, sending, *reason);
  }
  for (std::size_t i = 0; i < sendings.size(); ++i) {
    if (really) {
      if (const auto reason = Send(sendings[i])) {
        return Stop(answers, all.subspan(i), sendings[i], *reason);
      }
    }
    for (const std::size_t member : sendings[i].members) answers[member].done = true;
  }
  return answers;
}

Controller::Controller(live::Settings settings)
    : self_(std::make_unique<Self>(std::move(settings))) {}

Controller::~Controller() { self_->Drop(); }

bool Controller::Connect() {
  self_->sink->Begin();
  return self_->link == Link::Up || self_->Connect();
}

bool Controller::Refresh() {
  Self& self = *self_;
  self.sink->Begin();
  if (self.link != Link::Up) {
    if (self.link == Link::Lost && self.clock->Now() < self.retryAt) return false;
    if (!self.Connect()) return false;
  }
  const auto reason = self.ReadAll();
  if (!reason) {
    self.failures = 0;
    self.backoff.Reset();
    return true;
  }
  self.lastReason = *reason;
  ++self.failures;
  if (self.failures >= FailuresOfALostLink || self.settings.tellsLostLink(*reason)) {
    self.Lose(*reason);
  }
  return false;
}

void Controller::Close() {
  Self& self = *self_;
  self.sink->Begin();
  if (self.link == Link::Closed) return;
  self.Drop();
  const Reason reason{self.settings.host, {}, {}, "the link was closed"};
  self.sink->AllStale(Shared(reason));
  self.backoff.Reset();
  self.SetLink(Link::Closed, reason);
}

Link Controller::State() const { return self_->link; }

std::chrono::steady_clock::time_point Controller::RetryAt() const { return self_->retryAt; }

const Reason& Controller::LastReason() const { return self_->lastReason; }

const live::Settings& Controller::Settings() const { return self_->settings; }

std::span<const Name> Controller::Names() const { return self_->names; }

std::span<const Tag> Controller::Tags() const { return self_->tags; }

std::span<const Item> Controller::Items() const { return self_->items; }

std::span<const std::size_t> Controller::Changed() const { return self_->sink->Changed(); }

const Tag& Controller::operator[](std::string_view name) const {
  return self_->tags[self_->IndexOf(name)];
}

std::size_t Controller::IndexOf(std::string_view name) const { return self_->IndexOf(name); }

Answer Controller::Write(std::string_view name, const Value& value) {
  const Assignment assignment{std::string(name), value};
  return Write(std::span(&assignment, 1)).front();
}

std::vector<Answer> Controller::Write(std::span<const Assignment> assignments) {
  return self_->Write(assignments, true);
}

std::vector<Answer> Controller::Rehearse(std::span<const Assignment> assignments) {
  return self_->Write(assignments, false);
}

void Controller::Check(std::span<const Assignment> assignments) const {
  self_->Check(self_->InBytes(assignments));
}

Answer Controller::ClearAlarms(std::int32_t type) {
  Self& self = *self_;
  std::optional<Reason> reason = self.WhyNotUp(self.settings.host);
  if (!reason) {
    self.reasons->Forget();
    if (self.core->ClearAlarm(type)) return {true, {}};
    reason = self.LastOf(self.settings.host);
    if (self.settings.tellsLostLink(*reason)) {
      self.sink->Begin();
      self.Lose(*reason);
    }
  }
  self.lastReason = *reason;
  return {false, *reason};
}

std::string Controller::DebugMessages() const {
  if (!self_->settings.debugLog) return {};
  std::string messages =
      self_->core != nullptr ? self_->core->GetDebugMessages() : self_->debugMessages;
  const TextConversion& convert = self_->settings.fromController;
  return convert ? convert(messages) : messages;
}

std::optional<Milliseconds> Controller::TimeOut() const {
  if (self_->settings.timeOut) return self_->settings.timeOut;
  if (self_->core == nullptr) return {};
  return Milliseconds(self_->core->TimeOutValue());
}

std::optional<std::int32_t> Controller::Port() const {
  if (self_->settings.port) return self_->settings.port;
  if (self_->core == nullptr) return {};
  return self_->core->PortNumber();
}

}  // namespace orif::live

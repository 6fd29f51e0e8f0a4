#include "live/Controller.h"

#include <algorithm>
#include <array>
#include <utility>

#include "live/ControllerSelf.h"
#include "orif/lowerlayer/Component.h"
#include "orif/orif.h"
#include "spelling/UpperCase.h"

namespace orif::live {
namespace {

/// Failed refreshes in a row that make the link lost.
constexpr int FailuresOfALostLink = 2;

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
  // Whole words: a variable may be named $LINK_DOWN.
  std::string text = " ";
  for (const char c : spelling::UpperCase(reason.text)) {
    const bool isPart = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
    if (isPart || text.back() != ' ') text += isPart ? c : ' ';
  }
  text += ' ';
  const auto says = [&](std::string_view words) {
    return text.find(" " + std::string(words) + " ") != std::string::npos;
  };
  if (says("NOT CONNECTED") || says("NO CONNECTION") || says("DISCONNECTED")) return true;
  if (!says("CONNECTION") && !says("LINK")) return false;
  constexpr auto Ends = std::to_array<std::string_view>(
      {"LOST", "CLOSED", "RESET", "ABORTED", "BROKEN", "TERMINATED", "DOWN", "FAILED"});
  return std::ranges::any_of(Ends, says);
}

std::shared_ptr<Dispatch> MakeLowerCore(const DispatchFactory& factory,
                                        const std::string& component) {
  if (factory) return factory();
  return component.empty() ? CreateComponentCore() : CreateComponentCore(component);
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
    auto lower = MakeLowerCore(settings.factory, settings.component);
    if (lower == nullptr) throw Fault(Fault::ObjectNotSet);
    reasons = std::make_shared<ReasonKeeper>(std::move(lower), settings.fromController);
  } catch (const std::exception& fault) {
    return Reason{
        settings.host, {}, {}, std::string("no communication component: ") + fault.what()};
  } catch (...) {
    return Reason{settings.host, {}, {}, "no communication component"};
  }
  core = std::make_unique<Core>([this] { return reasons; });
  if (settings.debugLog) core->DebugLog(true);
  if (settings.port) core->PortNumber(*settings.port);
  if (settings.timeOut) core->TimeOutValue(static_cast<std::int32_t>(settings.timeOut->count()));
  // With another port it may be another controller.
  for (const DispId setting : {DispId::PortNumber, DispId::TimeOutValue}) {
    if (const auto fault = reasons->Last(setting)) return LastOf(settings.host);
  }
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
  if (!refused.empty()) lastRefusal = refused.back().second;
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
    sink->At(settings.clock->Wall());
    const auto unread = [&](std::span<const Slot> slots) {
      const auto reason = Shared(LastOf(slots.front().tag->item));
      for (const Slot& slot : slots) sink->Stale(*slot.tag, reason);
      reasons->Forget();  // the next item has its own
    };
    for (Source* source : registered) source->Decode(*sink, unread);
  }
  auto reason = signals.Read(*core, *reasons, *settings.clock, settings.tellsLostLink, *sink);
  if (reason || !registered.empty() || signals.AnyRead() || tags.empty()) return reason;
  // Nothing shows that there is anybody.
  return signals.LastRefusal() ? signals.LastRefusal() : lastRefusal;
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
  retryAt = settings.clock->Now() + backoff.Next();
  SetLink(Link::Lost, lastReason);
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
    if (self.link == Link::Lost && self.settings.clock->Now() < self.retryAt) return false;
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

#include "tools/gateway/Cell.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "orif/orif.h"
#include "simulator/RealTime.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

/// How long a component may take that has no time-out of its own here.
constexpr Milliseconds UsualTimeOut{5000};

/// The time of a simulated network, which passes as that of the computer does.
class SimulatedTime final : public live::Clock {
 public:
  explicit SimulatedTime(sim::Network network) : time_(std::move(network)) {}

  std::chrono::steady_clock::time_point Now() const override {
    time_.Follow();
    return Clock::Now();
  }

 private:
  mutable sim::RealTime time_;
};

}  // namespace

Cell::Cell(CellSettings settings, std::shared_ptr<std::atomic<std::int64_t>> numbers,
           std::shared_ptr<CellMetrics> metrics, Log& log, Hooks hooks)
    : settings_(std::move(settings)),
      numbers_(std::move(numbers)),
      metrics_(std::move(metrics)),
      log_(log),
      hooks_(std::move(hooks)),
      sampler_(settings_) {
  const auto timeOut = settings_.connection.timeOut;
  silentAfter_ = 3 * std::max(settings_.period, timeOut ? Milliseconds(*timeOut) : UsualTimeOut);
}

bool Cell::Start() {
  try {
    tags_ = TagNames(settings_).size();
    std::optional<sim::Network> simulated;
    live::Settings settings = SettingsOf(settings_, &simulated);
    if (simulated) settings.clock = std::make_shared<SimulatedTime>(*simulated);
    lastSign_ = std::chrono::steady_clock::now();
    monitor_.emplace(std::move(settings), settings_.period,
                     live::MonitorEvents{
                         .onRefresh = [this](const live::Refreshed& now) { OnRefresh(now); },
                         .onLink = [this](live::Link link,
                                          const live::Reason& reason) { OnLink(link, reason); }});
  } catch (const std::exception& error) {  // files that are gone, no more threads
    OnLink(live::Link::Lost, live::Reason{.text = error.what()});
    return false;
  }
  begun_ = true;
  return true;
}

void Cell::Stop() {
  // A component that hangs calls nobody back.
  if (monitor_ && !monitor_->Stop()) OnLink(live::Link::Closed, {});
}

void Cell::Mute() {
  const std::lock_guard lock(mutex_);
  if (std::exchange(muted_, true)) return;
  metrics_->Up(false);
  if (!state_.empty()) Tell(std::string(live::ToText(live::Link::Closed)), {});
  metrics_.reset();
  hooks_ = {};
}

CellPicture Cell::Picture() const {
  CellPicture picture{.number = *numbers_, .tags = {}};
  if (!begun_) return picture;
  std::vector<live::Reading> readings = monitor_->ReadAll();
  const auto tags = monitor_->Tags();  // whose readings change meanwhile
  picture.tags.resize(tags.size());
  for (std::size_t i = 0; i < tags.size(); ++i) {
    live::Tag& tag = picture.tags[i];
    static_cast<live::Reading&>(tag) = std::move(readings[i]);
    tag.name = tags[i].name;
    tag.field = tags[i].field;
    tag.unit = tags[i].unit;
  }
  return picture;
}

void Cell::OnRefresh(const live::Refreshed& refreshed) {
  const auto now = std::chrono::steady_clock::now();
  lastSign_ = now;
  const std::lock_guard lock(mutex_);
  if (muted_) return;
  const auto tags = refreshed.controller.Tags();
  const auto refused = std::ranges::count_if(
      refreshed.controller.Items(),
      [&](const live::Item& item) { return tags[item.first].quality == live::Quality::Refused; });
  metrics_->Refreshed(refreshed.good, refreshed.took, refreshed.skipped,
                      static_cast<std::size_t>(refused));
  if (hooks_.page) hooks_.page->Refreshed(refreshed.controller, refreshed.changed, refreshed.good);
  Row row{.cell = settings_.name,
          .time = TimeText(refreshed.controller.Settings().clock->Wall()),
          .full = tellAll_.exchange(false)};
  row.values = sampler_.Take(refreshed.controller, refreshed.changed, now, row.time, row.full);
  if (row.values.empty()) return;
  row.number = ++*numbers_;
  metrics_->Row();
  hooks_.row(std::move(row));
}

void Cell::OnLink(live::Link link, const live::Reason& reason) {
  lastSign_ = std::chrono::steady_clock::now();
  const std::lock_guard lock(mutex_);
  if (muted_) return;
  metrics_->Up(link == live::Link::Up);
  const bool wasLost = link_ == live::Link::Lost && state_ == "lost";
  link_ = link;
  // A cell that is tried again stays lost until it is there.
  if (link == live::Link::Connecting && wasLost) {
    link_ = live::Link::Lost;
    return;
  }
  linkReason_ = link == live::Link::Lost ? reason.ToText() : "";
  Tell(std::string(live::ToText(link)), linkReason_);
}

void Cell::Watch(Instant now) {
  const std::lock_guard lock(mutex_);
  if (muted_) return;
  const bool waits = link_ == live::Link::Lost || link_ == live::Link::Closed;
  if (!waits && now - lastSign_.load() > silentAfter_) {
    metrics_->Up(false);
    Tell("silent", "the component has not answered in time");
  } else if (state_ == "silent") {
    metrics_->Up(link_ == live::Link::Up);
    Tell(std::string(live::ToText(link_)), linkReason_);
  }
}

void Cell::Tell(const std::string& state, const std::string& reason) {
  if (state == state_ && reason == reason_) return;
  state_ = state;
  reason_ = reason;
  if (hooks_.page) hooks_.page->SetState(state, reason);
  const bool good = state != "lost" && state != "silent";
  log_.Write(good ? Level::Info : Level::Warning, "cell", settings_.name,
             {{"state", state}, {"reason", reason}});
  hooks_.state({.cell = settings_.name,
                .state = state,
                .reason = reason,
                .time = TimeText(std::chrono::system_clock::now()),
                .host = settings_.HostText(),
                .tags = tags_});
}

}  // namespace orif::gateway

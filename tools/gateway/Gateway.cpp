#include "tools/gateway/Gateway.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "orif/version.h"
#include "tools/gateway/JsonForm.h"
#include "tools/gateway/sparkplug/SparkplugForm.h"
#include "tools/orif/Secret.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

/// The cells of a plant start within this time.
constexpr std::chrono::nanoseconds StartWithin = 10s;
constexpr auto LookAfter = 1s;
/// When a cell that could not start is started again.
constexpr auto StartAgain = 10s;
/// How long the end waits for components that hang. It has to leave time for the publisher and the
/// storage before systemd loses patience.
constexpr auto StopWithin = 10s;

Buffer OpenBuffer(const BufferSettings& settings) {
  try {
    return {settings.file, settings.limit};
  } catch (const tool::DatabaseBusy&) {
    throw std::runtime_error("the buffer " + settings.file + " belongs to another gateway");
  } catch (const std::runtime_error& error) {
    throw std::runtime_error("the buffer " + settings.file + " cannot be used: " + error.what());
  }
}

std::unique_ptr<Form> MakeForm(const Configuration& configuration, Plant plant) {
  if (configuration.topics.form == TopicSettings::Form::Sparkplug) {
    return std::make_unique<SparkplugForm>(configuration.topics, configuration.gateway,
                                           configuration.buffer.file + ".bdseq", std::move(plant));
  }
  return std::make_unique<JsonForm>(configuration.topics, configuration.gateway, std::move(plant));
}

}  // namespace

Gateway::Gateway(const Configuration& configuration, Log& log, Health& health)
    : log_(log),
      configuration_(configuration),
      buffer_(OpenBuffer(configuration.buffer)),
      metrics_(configuration.gateway),
      outbox_(buffer_.LastId() + 1, configuration.buffer.memoryLimit),
      storage_(buffer_, outbox_, metrics_, log, health.Watch("storage")) {
  if (buffer_.MovedAside()) {
    log_.Write(Level::Error, "buffer", "",
               {{"state", "broken"}, {"moved_to", buffer_.MovedAside()->string()}});
  }
  log_.Write(Level::Info, "start", "",
             {{"gateway", configuration.gateway},
              {"version", VersionText},
              {"session", std::to_string(buffer_.Session())},
              {"cells", std::to_string(configuration.cells.size())},
              {"buffered", std::to_string(buffer_.Rows())}});
  if (configuration.metrics) {
    const MetricsSettings& metrics = *configuration.metrics;
    server_.emplace(metrics.address, metrics.port, metrics_, health);
  }
  if (configuration.page) {
    const PageSettings& page = *configuration.page;
    shown_.emplace(configuration.gateway);
    page_.emplace(
        page::Settings{.address = page.address,
                       .port = page.port,
                       .token = page.tokenFile.empty() ? "" : tool::Secret(page.tokenFile)},
        *shown_);
  }
  form_ = MakeForm(configuration, AsPlant());
  Add(configuration.cells);  // before the publisher asks what there is
  publisher_.emplace(configuration.broker, *form_, outbox_, metrics_, log,
                     health.Watch("publisher"));
}

Gateway::~Gateway() {
  if (publisher_) End();
}

bool Gateway::End() {
  for (const auto& [name, cell] : cells_) stopper_.Stop(cell);
  const bool all = stopper_.Wait(StopWithin);
  for (const auto& [name, cell] : cells_) cell->Mute();
  const bool alone = publisher_->End();
  publisher_.reset();
  log_.Write(Level::Info, "end", "", {{"gateway", configuration_.gateway}});
  return all && alone;
}

void Gateway::Add(const std::vector<CellSettings>& cells) {
  auto at = std::chrono::steady_clock::now();
  for (const CellSettings& settings : cells) {
    auto& numbers = numbers_[settings.name];
    if (numbers == nullptr) {
      numbers = std::make_shared<std::atomic<std::int64_t>>(buffer_.Session() * SessionStep);
    }
    auto cell = std::make_shared<Cell>(
        settings, numbers, metrics_.Cell(settings.name), log_,
        Cell::Hooks{
            .row =
                [this](Row row) { outbox_.Add(std::move(row), std::chrono::steady_clock::now()); },
            .state =
                [this](const CellState& state) {
                  form_->Tell(state);
                  publisher_->Wake();
                },
            .page = shown_ ? shown_->Add(settings.name, settings.HostText()) : nullptr});
    starting_.emplace(at, cell);
    at += std::min<std::chrono::nanoseconds>(settings.period, StartWithin) /
          static_cast<std::int64_t>(cells.size());
    const std::lock_guard lock(mutex_);
    cells_[settings.name] = std::move(cell);
  }
}

Gateway::Instant Gateway::Turn(Instant now) {
  while (!starting_.empty() && starting_.begin()->first <= now) {
    const auto cell = starting_.extract(starting_.begin()).mapped();
    if (!cell->Start()) starting_.emplace(now + StartAgain, cell);
  }
  for (const auto& [name, cell] : cells_) cell->Watch(now);
  return starting_.empty() ? now + LookAfter : std::min(starting_.begin()->first, now + LookAfter);
}

void Gateway::Remove(const std::shared_ptr<Cell>& cell, const CellSettings* next) {
  const std::string& name = cell->Settings().name;
  std::erase_if(starting_, [&](const auto& starting) { return starting.second == cell; });
  cell->Mute();
  stopper_.Stop(cell);
  std::vector<std::string> gone = TagNames(cell->Settings());
  if (next != nullptr) {
    const std::vector<std::string> names = TagNames(*next);
    const std::set<std::string_view> stay(names.begin(), names.end());
    std::erase_if(gone, [&](const std::string& tag) { return stay.contains(tag); });
  }
  form_->Forget(name, gone, next == nullptr);
  const std::lock_guard lock(mutex_);
  cells_.erase(name);
}

void Gateway::Change(const Configuration& configuration) {
  std::map<std::string_view, const CellSettings*> wanted;
  for (const CellSettings& cell : configuration.cells) wanted[cell.name] = &cell;
  std::vector<std::shared_ptr<Cell>> removed;
  std::vector<std::shared_ptr<CellMetrics>> counts;  // which go on in a cell that is only changed
  for (const auto& [name, cell] : cells_) {
    const auto found = wanted.find(name);
    if (found != wanted.end() && *found->second == cell->Settings()) {
      wanted.erase(found);
    } else {
      removed.push_back(cell);
      counts.push_back(metrics_.Cell(name));
    }
  }
  for (const auto& cell : removed) {
    const auto next = wanted.find(cell->Settings().name);
    Remove(cell, next == wanted.end() ? nullptr : next->second);
  }
  publisher_->Wake();
  std::vector<CellSettings> added;
  for (const CellSettings& cell : configuration.cells) {
    if (wanted.contains(cell.name)) added.push_back(cell);
  }
  Add(added);
  if (configuration.broker != configuration_.broker) publisher_->Change(configuration.broker);
  const bool fixed = configuration.gateway == configuration_.gateway &&
                     configuration.topics == configuration_.topics &&
                     configuration.buffer == configuration_.buffer &&
                     configuration.metrics == configuration_.metrics &&
                     configuration.page == configuration_.page;
  configuration_.broker = configuration.broker;
  configuration_.cells = configuration.cells;
  log_.Write(fixed ? Level::Info : Level::Warning, "reload", "",
             {{"added", std::to_string(added.size())},
              {"removed", std::to_string(removed.size())},
              {"cells", std::to_string(configuration.cells.size())},
              {"at_next_start", fixed ? "nothing" : "gateway, topics, buffer, metrics or page"}});
}

void Gateway::TellAll(const std::string& name) {
  const std::lock_guard lock(mutex_);
  if (name.empty()) {
    for (const auto& [each, cell] : cells_) cell->TellAll();
  } else if (const auto found = cells_.find(name); found != cells_.end()) {
    found->second->TellAll();
  }
}

Plant Gateway::AsPlant() {
  return {.session = buffer_.Session(),
          .version = VersionText,
          .cells =
              [this] {
                const std::lock_guard lock(mutex_);
                return cells_.size();
              },
          .rowsWaiting = [this] { return storage_.Rows(); },
          .rowsDropped = [this] { return storage_.Dropped(); },
          .has =
              [this](const std::string& name) {
                const std::lock_guard lock(mutex_);
                return cells_.contains(name);
              },
          .picture = [this](const std::string& name) -> std::optional<CellPicture> {
            std::shared_ptr<Cell> cell;
            {
              const std::lock_guard lock(mutex_);
              const auto found = cells_.find(name);
              if (found != cells_.end()) cell = found->second;
            }
            if (cell == nullptr) return {};
            return cell->Picture();
          },
          .tellAll = [this](const std::string& name) { TellAll(name); }};
}

std::string Gateway::Status() const {
  const auto counts = metrics_.Count();
  return std::to_string(counts.cells) + " cells, " + std::to_string(counts.cellsUp) +
         " up, broker " + (counts.broker ? "up" : "away") + ", " + std::to_string(storage_.Rows()) +
         " rows in the buffer";
}

}  // namespace orif::gateway

#include "tools/gateway/Gateway.h"

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "orif/version.h"
#include "tools/gateway/JsonForm.h"
#include "tools/gateway/sparkplug/SparkplugForm.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

/// The cells of a plant start within this time.
constexpr std::chrono::nanoseconds StartWithin = 10s;
constexpr auto LookAfter = 1s;

Buffer OpenBuffer(const BufferSettings& settings) {
  try {
    return {settings.file, settings.limit};
  } catch (const tool::DatabaseBusy&) {
    throw std::runtime_error("the buffer " + settings.file + " belongs to another gateway");
  } catch (const std::runtime_error& error) {
    throw std::runtime_error("the buffer " + settings.file + " cannot be used: " + error.what());
  }
}

// A component that hangs is waited for; all together.
void StopAll(std::vector<std::shared_ptr<Cell>> cells) {
  std::vector<std::jthread> threads;
  threads.reserve(cells.size());
  for (auto& cell : cells) threads.emplace_back([&cell] { cell->Stop(); });
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
    page_.emplace(page::Settings{.address = page.address,
                                 .port = page.port,
                                 .token = page.tokenFile.empty() ? "" : Secret(page.tokenFile)},
                  *shown_);
  }
  form_ = MakeForm(configuration, AsPlant());
  Add(configuration.cells);  // before the publisher asks what there is
  publisher_.emplace(configuration.broker, *form_, outbox_, metrics_, log,
                     health.Watch("publisher"));
}

Gateway::~Gateway() {
  std::vector<std::shared_ptr<Cell>> cells;
  for (const auto& [name, cell] : cells_) cells.push_back(cell);
  StopAll(std::move(cells));
  publisher_.reset();
  log_.Write(Level::Info, "end", "", {{"gateway", configuration_.gateway}});
}

void Gateway::Add(const std::vector<CellSettings>& cells) {
  auto at = std::chrono::steady_clock::now();
  for (const CellSettings& settings : cells) {
    auto& numbers = numbers_[settings.name];
    if (numbers == nullptr) {
      numbers = std::make_shared<std::atomic<std::int64_t>>(buffer_.Session() * SessionStep);
    }
    const auto& way = settings.connection;
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
            .page = shown_ ? shown_->Add(settings.name, way.simulate ? "simulated" : way.host)
                           : nullptr});
    starting_.push_back({cell, at});
    at += std::min<std::chrono::nanoseconds>(settings.period, StartWithin) /
          static_cast<std::int64_t>(cells.size());
    const std::lock_guard lock(mutex_);
    cells_[settings.name] = std::move(cell);
  }
}

Gateway::Instant Gateway::Turn(Instant now) {
  while (!starting_.empty() && starting_.front().at <= now) {
    starting_.front().cell->Start();
    starting_.pop_front();
  }
  for (const auto& [name, cell] : cells_) cell->Watch(now);
  return starting_.empty() ? now + LookAfter : std::min(starting_.front().at, now + LookAfter);
}

void Gateway::Change(const Configuration& configuration) {
  std::vector<CellSettings> added;
  std::vector<std::shared_ptr<Cell>> removed;
  const auto inNew = [&](const CellSettings& old) {
    return std::ranges::find(configuration.cells, old) != configuration.cells.end();
  };
  for (const auto& [name, cell] : cells_) {
    if (!inNew(cell->Settings())) removed.push_back(cell);
  }
  for (const CellSettings& cell : configuration.cells) {
    const auto old = cells_.find(cell.name);
    if (old == cells_.end() || old->second->Settings() != cell) added.push_back(cell);
  }
  StopAll(removed);
  for (const auto& cell : removed) {
    const std::string& name = cell->Settings().name;
    std::erase_if(starting_, [&](const Starting& starting) { return starting.cell == cell; });
    form_->Forget(name, cell->TagNames(), true);
    const std::lock_guard lock(mutex_);
    cells_.erase(name);
  }
  publisher_->Wake();
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

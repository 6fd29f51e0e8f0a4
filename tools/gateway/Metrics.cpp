#include "tools/gateway/Metrics.h"

#include <functional>
#include <sstream>
#include <utility>

#include <prometheus/metric_family.h>
#include <prometheus/text_serializer.h>

#include "orif/version.h"

namespace orif::gateway {
namespace {

using prometheus::ClientMetric;
using prometheus::MetricFamily;
using prometheus::MetricType;
using Label = ClientMetric::Label;

std::chrono::nanoseconds SinceBeginning() {
  return std::chrono::steady_clock::now().time_since_epoch();
}

double Seconds(std::chrono::nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

// The families of a page, in the order in which they are added.
class Page {
 public:
  /// Begins a family.
  void Add(const char* name, MetricType type, const char* help) {
    families_.push_back({.name = name, .help = help, .type = type, .metric = {}});
  }

  /// Adds one value to the family begun last.
  void Value(ClientMetric value, std::vector<Label> labels) {
    value.label = std::move(labels);
    families_.back().metric.push_back(std::move(value));
  }

  std::string Text() const {
    std::ostringstream text;
    prometheus::TextSerializer().Serialize(text, families_);
    return text.str();
  }

 private:
  std::vector<MetricFamily> families_;
};

ClientMetric GaugeOf(double value) {
  ClientMetric metric;
  metric.gauge.value = value;
  return metric;
}

}  // namespace

CellMetrics::CellMetrics()
    : refreshes_({0.001, 0.0025, 0.005, 0.01, 0.025, 0.05, 0.1, 0.25, 0.5, 1, 2.5, 5}) {}

void CellMetrics::Refreshed(bool good, std::chrono::nanoseconds took, std::int64_t skipped,
                            std::size_t refused) {
  if (good) lastGood_ = SinceBeginning();
  refreshes_.Observe(Seconds(took));
  refused_.Set(static_cast<double>(refused));
  // After a reload, another monitor counts from 0 again.
  const std::int64_t before = skippedSoFar_.exchange(skipped);
  skipped_.Increment(static_cast<double>(skipped < before ? skipped : skipped - before));
}

void CellMetrics::Up(bool up) {
  const bool wentUp = !isUp_.exchange(up) && up;
  if (wentUp && wasUp_.exchange(true)) reconnects_.Increment();
}

void CellMetrics::Row() { rows_.Increment(); }

Metrics::Metrics(std::string gateway) : gateway_(std::move(gateway)) {
  for (const char* reason : {"limit", "memory", "refused"}) dropped_[reason];
}

std::shared_ptr<CellMetrics> Metrics::Cell(const std::string& name) {
  const std::lock_guard lock(mutex_);
  std::weak_ptr<CellMetrics>& cell = cells_[name];
  auto held = cell.lock();
  if (!held) cell = held = std::make_shared<CellMetrics>();
  return held;
}

void Metrics::BrokerUp(bool up) {
  const bool wentUp = !brokerUp_.exchange(up) && up;
  if (wentUp) brokerConnects_.Increment();
}

void Metrics::Buffer(std::int64_t rows, std::int64_t bytes, std::int64_t limit, bool writable) {
  bufferRows_.Set(static_cast<double>(rows));
  bufferBytes_.Set(static_cast<double>(bytes));
  bufferLimit_.Set(static_cast<double>(limit));
  bufferWritable_.Set(writable ? 1 : 0);
}

void Metrics::Published(bool late, std::int64_t messages) {
  (late ? publishedLate_ : publishedLive_).Increment();
  messages_.Increment(static_cast<double>(messages));
}

void Metrics::Dropped(std::string_view reason, std::int64_t rows) {
  dropped_.find(reason)->second.Increment(static_cast<double>(rows));
}

std::vector<std::pair<std::string, std::shared_ptr<const CellMetrics>>> Metrics::Cells() const {
  std::vector<std::pair<std::string, std::shared_ptr<const CellMetrics>>> held;
  const std::lock_guard lock(mutex_);
  held.reserve(cells_.size());
  for (auto entry = cells_.begin(); entry != cells_.end();) {
    if (auto cell = entry->second.lock()) {
      held.emplace_back(entry->first, std::move(cell));
      ++entry;
    } else {
      entry = cells_.erase(entry);
    }
  }
  return held;
}

Metrics::Counts Metrics::Count() const {
  Counts counts{.broker = brokerUp_};
  for (const auto& [name, cell] : Cells()) {
    ++counts.cells;
    if (cell->isUp_) ++counts.cellsUp;
  }
  return counts;
}

std::string Metrics::Text() const {
  const auto cells = Cells();
  Page page;
  page.Add("orif_gateway_info", MetricType::Gauge, "Name and version of the gateway");
  page.Value(GaugeOf(1), {{"gateway", gateway_}, {"version", orif::Version()}});

  page.Add("orif_cell_up", MetricType::Gauge, "Whether the link to the cell is up");
  for (const auto& [name, cell] : cells) page.Value(GaugeOf(cell->isUp_ ? 1 : 0), {{"cell", name}});
  const auto ofCells = [&](const char* name, MetricType type, const char* help, auto member) {
    page.Add(name, type, help);
    for (const auto& [cellName, cell] : cells) {
      page.Value(((*cell).*member).Collect(), {{"cell", cellName}});
    }
  };
  ofCells("orif_cell_refresh_seconds", MetricType::Histogram, "How long the refreshes took",
          &CellMetrics::refreshes_);
  page.Add("orif_cell_last_good_refresh_age_seconds", MetricType::Gauge,
           "Time since the last refresh that succeeded");
  for (const auto& [name, cell] : cells) {
    const std::chrono::nanoseconds last = cell->lastGood_;
    if (last != CellMetrics::Never) {
      page.Value(GaugeOf(Seconds(SinceBeginning() - last)), {{"cell", name}});
    }
  }
  ofCells("orif_cell_reconnects_total", MetricType::Counter, "How often the link came back",
          &CellMetrics::reconnects_);
  ofCells("orif_cell_refused_items", MetricType::Gauge, "Items that the controller refuses",
          &CellMetrics::refused_);
  ofCells("orif_cell_rows_total", MetricType::Counter, "Rows made", &CellMetrics::rows_);
  ofCells("orif_cell_skipped_turns_total", MetricType::Counter,
          "Turns left out because a refresh took too long", &CellMetrics::skipped_);

  const auto one = [&](const char* name, MetricType type, const char* help, ClientMetric value) {
    page.Add(name, type, help);
    page.Value(std::move(value), {});
  };
  one("orif_broker_up", MetricType::Gauge, "Whether the broker is connected",
      GaugeOf(brokerUp_ ? 1 : 0));
  one("orif_broker_connects_total", MetricType::Counter, "How often the broker was connected",
      brokerConnects_.Collect());
  one("orif_buffer_rows", MetricType::Gauge, "Rows that wait for the broker",
      bufferRows_.Collect());
  one("orif_buffer_bytes", MetricType::Gauge, "Size of the buffer", bufferBytes_.Collect());
  one("orif_buffer_limit_bytes", MetricType::Gauge, "Largest size of the buffer",
      bufferLimit_.Collect());
  one("orif_buffer_writable", MetricType::Gauge, "Whether the buffer takes rows",
      bufferWritable_.Collect());

  page.Add("orif_published_rows_total", MetricType::Counter, "Rows the broker acknowledged");
  page.Value(publishedLive_.Collect(), {{"late", "false"}});
  page.Value(publishedLate_.Collect(), {{"late", "true"}});
  one("orif_published_messages_total", MetricType::Counter, "Messages the broker acknowledged",
      messages_.Collect());
  page.Add("orif_dropped_rows_total", MetricType::Counter, "Rows lost");
  for (const auto& [reason, rows] : dropped_) page.Value(rows.Collect(), {{"reason", reason}});
  return page.Text();
}

}  // namespace orif::gateway

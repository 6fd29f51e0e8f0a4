// What the gateway counts and measures, and the page of it for Prometheus. Every member may be
// called by any thread at any time, and none waits for a page that is being made: a page takes
// each value by itself.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <prometheus/counter.h>
#include <prometheus/gauge.h>
#include <prometheus/histogram.h>

namespace orif::gateway {

/// What is measured of one cell.
class CellMetrics {
 public:
  CellMetrics();

  /// After each refresh: `skipped` turns were left out so far, `refused` items are refused now.
  void Refreshed(bool good, std::chrono::nanoseconds took, std::int64_t skipped,
                 std::size_t refused);

  /// Whether the link is up. Every change to up but the first is a reconnect.
  void Up(bool up);

  /// A row was made.
  void Row();

 private:
  friend class Metrics;

  // Of the steady clock, since its beginning.
  static constexpr std::chrono::nanoseconds Never{-1};
  std::atomic<std::chrono::nanoseconds> lastGood_ = Never;
  std::atomic<std::int64_t> skippedSoFar_ = 0;
  std::atomic<bool> isUp_ = false;
  std::atomic<bool> wasUp_ = false;  // at any time
  prometheus::Histogram refreshes_;
  prometheus::Counter reconnects_;
  prometheus::Gauge refused_;
  prometheus::Counter rows_;
  prometheus::Counter skipped_;
};

/// What is measured of the whole gateway.
class Metrics {
 public:
  /// All names are UTF-8.
  explicit Metrics(std::string gateway);

  /// The metrics of a cell, which are on the page as long as somebody holds them. The name of a
  /// cell that is held gives the same again, so that the counts go on after a reload.
  std::shared_ptr<CellMetrics> Cell(const std::string& name);

  /// Whether the broker is connected. Every change to up is a connect.
  void BrokerUp(bool up);

  /// How full the buffer is, and whether it can be written.
  void Buffer(std::int64_t rows, std::int64_t bytes, std::int64_t limit, bool writable);

  /// The broker has acknowledged a row of so many messages.
  void Published(bool late, std::int64_t messages);

  /// Rows were lost, for one of the reasons "limit" (of the buffer), "memory" (its limit) and
  /// "refused" (by the broker).
  void Dropped(std::string_view reason, std::int64_t rows);

  /// What /healthz tells.
  struct Counts {
    bool broker = false;
    std::size_t cells = 0;
    std::size_t cellsUp = 0;
  };
  Counts Count() const;

  /// The page, in the text format of Prometheus.
  std::string Text() const;

 private:
  std::vector<std::pair<std::string, std::shared_ptr<const CellMetrics>>> Cells() const;

  const std::string gateway_;
  mutable std::mutex mutex_;  // guards cells_, and only while it is looked through
  mutable std::map<std::string, std::weak_ptr<CellMetrics>> cells_;

  std::atomic<bool> brokerUp_ = false;
  prometheus::Counter brokerConnects_;
  prometheus::Gauge bufferRows_;
  prometheus::Gauge bufferBytes_;
  prometheus::Gauge bufferLimit_;
  prometheus::Gauge bufferWritable_;
  prometheus::Counter publishedLive_;
  prometheus::Counter publishedLate_;
  prometheus::Counter messages_;
  // All reasons stand on the page from the beginning: Prometheus sees no rise in a counter that
  // begins at 1.
  std::map<std::string, prometheus::Counter, std::less<>> dropped_;
};

}  // namespace orif::gateway

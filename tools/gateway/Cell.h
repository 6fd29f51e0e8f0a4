// One cell of the plant: its monitor, and what becomes of each refresh.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "live/Monitor.h"
#include "tools/gateway/Configuration.h"
#include "tools/gateway/Form.h"
#include "tools/gateway/Log.h"
#include "tools/gateway/Metrics.h"
#include "tools/gateway/Row.h"
#include "tools/gateway/Sampler.h"
#include "tools/page/Cell.h"

namespace orif::gateway {

class Cell {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  /// Where what a cell has to tell goes. Called on the cell's thread, and by Watch.
  struct Hooks {
    std::function<void(Row row)> row;
    std::function<void(const CellState& state)> state;
    /// What the page knows of it; null without a page.
    std::shared_ptr<page::Cell> page = {};
  };

  /// `numbers` has the number of the cell's last row, and `metrics` what is measured of it.
  Cell(CellSettings settings, std::shared_ptr<std::atomic<std::int64_t>> numbers,
       std::shared_ptr<CellMetrics> metrics, Log& log, Hooks hooks);
  Cell(const Cell&) = delete;
  Cell& operator=(const Cell&) = delete;
  ~Cell() = default;

  const CellSettings& Settings() const { return settings_; }

  /// Begins to refresh.
  void Start();
  /// Ends, within the time-out.
  void Stop();

  // Any thread.

  /// The next refresh tells all values.
  void TellAll() { tellAll_ = true; }
  /// Finds out whether the cell has fallen silent, and says so. Call it every second or so.
  void Watch(Instant now);
  /// The names of all tags; empty before the start.
  std::vector<std::string> TagNames() const;
  /// All values; none before the start.
  CellPicture Picture() const;

 private:
  void OnRefresh(const live::Refreshed& refreshed);
  void OnLink(live::Link link, const live::Reason& reason);
  void Tell(const std::string& state, const std::string& reason);

  CellSettings settings_;
  std::shared_ptr<std::atomic<std::int64_t>> numbers_;
  std::shared_ptr<CellMetrics> metrics_;
  Log& log_;
  Hooks hooks_;
  Sampler sampler_;
  std::chrono::nanoseconds silentAfter_;
  std::size_t tags_ = 0;
  std::atomic<bool> tellAll_ = false;
  std::atomic<Instant> lastSign_;

  std::mutex mutex_;  // for what follows
  live::Link link_ = live::Link::Closed;
  std::string state_;
  std::string reason_;
  std::string linkReason_;

  std::atomic<bool> begun_ = false;
  std::optional<live::Monitor> monitor_;  // ends first
};

}  // namespace orif::gateway

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

  /// Begins to refresh. A cell that cannot is told as lost, with the reason, and may be started
  /// again.
  bool Start();
  /// Ends, within the time-out.
  void Stop();
  /// Tells that the cell is closed, as the last that is heard of it: afterwards neither a hook nor
  /// the log is called, whatever its component still does, and both may be gone.
  void Mute();

  // Any thread.

  /// The next refresh tells all values.
  void TellAll() { tellAll_ = true; }
  /// Finds out whether the cell has fallen silent, and says so. Call it every second or so.
  void Watch(Instant now);
  /// All values; none before the start.
  CellPicture Picture() const;

 private:
  void OnRefresh(const live::Refreshed& refreshed);
  void OnLink(live::Link link, const live::Reason& reason);
  void Tell(const std::string& state, const std::string& reason);

  CellSettings settings_;
  std::shared_ptr<std::atomic<std::int64_t>> numbers_;
  std::chrono::nanoseconds silentAfter_;
  std::size_t tags_ = 0;
  std::atomic<bool> tellAll_ = false;
  std::atomic<Instant> lastSign_;

  std::mutex mutex_;  // for what follows, also while it is called
  bool muted_ = false;
  std::shared_ptr<CellMetrics> metrics_;
  Log& log_;
  Hooks hooks_;
  Sampler sampler_;
  live::Link link_ = live::Link::Closed;
  std::string state_;
  std::string reason_;
  std::string linkReason_;

  std::atomic<bool> begun_ = false;
  std::optional<live::Monitor> monitor_;  // ends first
};

}  // namespace orif::gateway

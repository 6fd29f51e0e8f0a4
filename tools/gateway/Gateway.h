// The gateway: its cells, what carries their rows to the broker, and what tells how they are.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "tools/gateway/Buffer.h"
#include "tools/gateway/Cell.h"
#include "tools/gateway/Configuration.h"
#include "tools/gateway/Form.h"
#include "tools/gateway/Health.h"
#include "tools/gateway/Log.h"
#include "tools/gateway/Metrics.h"
#include "tools/gateway/MetricsServer.h"
#include "tools/gateway/Outbox.h"
#include "tools/gateway/Publisher.h"
#include "tools/gateway/Stopper.h"
#include "tools/gateway/Storage.h"
#include "tools/page/Server.h"

namespace orif::gateway {

/// Used by one thread, which calls Turn every second or sooner.
class Gateway {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  /// Opens the buffer and the servers of metrics and of the page, and begins to publish. Throws a
  /// std::runtime_error with a text that is fit to show. Both references outlive it.
  Gateway(const Configuration& configuration, Log& log, Health& health);
  Gateway(const Gateway&) = delete;
  Gateway& operator=(const Gateway&) = delete;

  /// As End, if that has not been called.
  ~Gateway();

  /// Ends all cells, and publishes what is left, for some seconds at most; the destructor stores
  /// the rest. Answers whether all cells have ended. Else their components still hang, on threads
  /// that use nothing of the gateway's any more; then end the process at once when all is done.
  bool End();

  /// Starts the cells whose turn it is, one after the other, so that a plant does not refresh at
  /// the same moment, and looks after the others. Answers when to call again at the latest.
  Instant Turn(Instant now);

  /// Takes over another configuration: cells that are the same keep their connection. What cannot
  /// be changed while it runs is logged.
  void Change(const Configuration& configuration);

  /// "20 cells, 19 up, broker up, 0 rows in the buffer"
  std::string Status() const;

 private:
  void Remove(const std::shared_ptr<Cell>& cell, const CellSettings* next);
  void Add(const std::vector<CellSettings>& cells);
  void TellAll(const std::string& name);
  Plant AsPlant();

  Log& log_;
  Configuration configuration_;
  Buffer buffer_;
  Metrics metrics_;
  Outbox outbox_;
  Storage storage_;
  std::optional<page::Plant> shown_;
  mutable std::mutex mutex_;  // for cells_, which the publisher looks through
  std::map<std::string, std::shared_ptr<Cell>> cells_;
  std::map<std::string, std::shared_ptr<std::atomic<std::int64_t>>> numbers_;  // of last rows
  std::multimap<Instant, std::shared_ptr<Cell>> starting_;
  Stopper stopper_;
  std::unique_ptr<Form> form_;
  std::optional<Publisher> publisher_;
  std::optional<MetricsServer> server_;
  std::optional<page::Server> page_;
};

}  // namespace orif::gateway

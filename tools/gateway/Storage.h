// The thread that carries rows to the buffer and back. A disk that is slow, full or gone holds up
// nothing but the buffer.
#pragma once

#include <atomic>
#include <cstdint>
#include <thread>

#include "tools/gateway/Buffer.h"
#include "tools/gateway/Health.h"
#include "tools/gateway/Log.h"
#include "tools/gateway/Metrics.h"
#include "tools/gateway/Outbox.h"

namespace orif::gateway {

class Storage {
 public:
  /// All live as long as the Storage.
  Storage(Buffer& buffer, Outbox& outbox, Metrics& metrics, Log& log, Heartbeat& heart);
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;

  /// Stores what nobody has acknowledged, within a few seconds, and ends.
  ~Storage();

  std::int64_t Rows() const { return rows_; }
  /// How many rows were given up since the session began.
  std::int64_t Dropped() const { return dropped_; }

 private:
  void Run();
  void CarryOut(const Outbox::Work& work);
  void Show(bool writable);

  Buffer& buffer_;
  Outbox& outbox_;
  Metrics& metrics_;
  Log& log_;
  Heartbeat& heart_;
  bool writable_ = true;
  std::int64_t droppedInMemory_ = 0;
  std::atomic<std::int64_t> rows_;
  std::atomic<std::int64_t> dropped_ = 0;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

}  // namespace orif::gateway

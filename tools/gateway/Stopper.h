// Stops cells. One whose component hangs takes as long as its time-out, which may be an hour, and
// nobody has to wait for it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

#include "tools/gateway/Cell.h"

namespace orif::gateway {

/// Cells that have not stopped at its end go on without it.
class Stopper {
 public:
  /// Stops the cell on a thread of its own, which holds it meanwhile; here and now if there can be
  /// no thread.
  void Stop(std::shared_ptr<Cell> cell);

  /// Waits until all have stopped, `longest` at most; answers whether they have.
  bool Wait(std::chrono::nanoseconds longest);

 private:
  struct Open {
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t cells = 0;
  };
  std::shared_ptr<Open> open_ = std::make_shared<Open>();
};

}  // namespace orif::gateway

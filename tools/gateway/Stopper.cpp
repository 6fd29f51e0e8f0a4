#include "tools/gateway/Stopper.h"

#include <system_error>
#include <thread>
#include <utility>

namespace orif::gateway {

void Stopper::Stop(std::shared_ptr<Cell> cell) {
  {
    const std::lock_guard lock(open_->mutex);
    ++open_->cells;
  }
  auto stop = [open = open_, cell = std::move(cell)]() mutable {
    cell->Stop();
    cell.reset();  // before anybody goes on
    const std::lock_guard lock(open->mutex);
    --open->cells;
    open->changed.notify_all();
  };
  try {
    std::thread(stop).detach();
  } catch (const std::system_error&) {
    stop();
  }
}

bool Stopper::Wait(std::chrono::nanoseconds longest) {
  std::unique_lock lock(open_->mutex);
  return open_->changed.wait_for(lock, longest, [this] { return open_->cells == 0; });
}

}  // namespace orif::gateway

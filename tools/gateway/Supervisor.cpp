#include "tools/gateway/Supervisor.h"

#include <systemd/sd-daemon.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "tools/gateway/Health.h"

namespace orif::gateway {
namespace {

void Tell(const std::string& state) { sd_notify(0, state.c_str()); }

}  // namespace

Supervisor::Supervisor(const Health& health) {
  std::uint64_t limit = 0;
  if (sd_watchdog_enabled(0, &limit) <= 0) return;
  watchdog_ = std::jthread(
      [&health, pause = std::chrono::microseconds(limit / 2)](const std::stop_token& stop) {
        std::mutex mutex;
        std::condition_variable_any ended;
        std::unique_lock lock(mutex);
        while (!stop.stop_requested()) {
          if (health.Stuck().empty()) Tell("WATCHDOG=1");
          ended.wait_for(lock, stop, pause, [] { return false; });
        }
      });
}

void Supervisor::Ready() { Tell("READY=1"); }

void Supervisor::Status(std::string_view text) {
  // What is on further lines would be other notifications.
  Tell("STATUS=" + std::string(text.substr(0, text.find('\n'))));
}

void Supervisor::Reloading() {
  using std::chrono::microseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  Tell("RELOADING=1\nMONOTONIC_USEC=" +
       std::to_string(std::chrono::duration_cast<microseconds>(now).count()));
}

void Supervisor::Stopping() { Tell("STOPPING=1"); }

}  // namespace orif::gateway

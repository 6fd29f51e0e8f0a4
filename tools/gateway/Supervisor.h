// What the gateway tells systemd, which starts it again when it is gone or hangs. Without systemd
// nothing is told.
#pragma once

#include <string>
#include <string_view>
#include <thread>

namespace orif::gateway {

class Health;

/// One for the program, used by one thread. A thread of its own keeps the watchdog quiet as long
/// as all that `health` watches is well.
class Supervisor {
 public:
  /// `health` outlives it.
  explicit Supervisor(const Health& health);
  Supervisor(const Supervisor&) = delete;
  Supervisor& operator=(const Supervisor&) = delete;
  ~Supervisor() = default;

  /// The start, or a reload, is done.
  void Ready();

  /// The first line of `text` for `systemctl status`, in UTF-8.
  void Status(std::string_view text);

  /// A reload begins; Ready ends it.
  void Reloading();

  /// The end begins. The watchdog is kept quiet until the destructor.
  void Stopping();

 private:
  std::jthread watchdog_;
};

}  // namespace orif::gateway

// Simulated controllers by host name.
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "orif/lowerlayer/Dispatch.h"
#include "simulator/Controller.h"

namespace orif::sim {

/// Simulated controllers by host name: everything that the core objects of one factory can reach.
/// Copies of a Network, and the factories and core objects made from it, share its controllers and
/// keep them alive.
///
/// Several threads may use one network. Every member, and every call of a core object that reaches
/// a controller, holds the network's lock until it returns. Take the lock yourself to set up or
/// read a controller while other threads use the network:
///
///     const auto lock = network.Lock();
///     robot.NumericRegister(1) = 5;
class Network {
 public:
  /// The lock while it is held. Its holder may call anything, since it can be taken again.
  using Held = std::unique_lock<std::recursive_mutex>;

  /// A network without controllers.
  Network();

  /// Takes the lock until the result is destroyed, which has to be before the network is.
  [[nodiscard]] Held Lock() const;

  /// Adds a controller with the host name `host`, in upper or lower case. Throws
  /// std::invalid_argument if there is one of that name.
  Controller& AddController(std::string_view host, const Capacity& capacity = {});

  /// The controller of that name, or null if there is none.
  std::shared_ptr<Controller> Find(std::string_view host) const;

  /// Lets `by` pass for all controllers; nothing else does. Other threads see the data before or
  /// after it. Throws std::invalid_argument for a negative time.
  void Advance(std::chrono::milliseconds by);

  /// How much time has passed since the network was made.
  std::chrono::milliseconds Now() const;

  /// A factory of core objects that reach these controllers, for the constructor of orif::Core.
  DispatchFactory Factory() const;

 private:
  struct Hosts;
  std::shared_ptr<Hosts> hosts_;
};

}  // namespace orif::sim

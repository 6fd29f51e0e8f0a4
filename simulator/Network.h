// Simulated controllers by host name: everything that the core objects of one factory can reach.
// Made by a test, an example or the loadable component. Copies of a Network, and the factories and
// core objects made from it, share its controllers and keep them alive.
//
// Several threads may use one network. Every member here, and every call of a core object that
// reaches a controller, holds the network's lock until it returns; whoever sets up or looks at a
// controller while other threads use the network takes the lock himself:
//
//     const auto lock = network.Lock();
//     robot.NumericRegister(1) = 5;
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "orif/lowerlayer/Dispatch.h"
#include "simulator/Controller.h"

namespace orif::sim {

class Network {
 public:
  /// Whoever holds it may call everything, since it can be taken again; others wait.
  using Held = std::unique_lock<std::recursive_mutex>;

  Network();

  /// Takes the lock until what it answers ends, which the network has to outlive.
  [[nodiscard]] Held Lock() const;

  /// Adds a controller that answers as `host` (upper and lower case are the same). Throws
  /// std::invalid_argument when there is one of that name.
  Controller& AddController(std::string_view host, const Layout& layout = {});

  /// The controller of that name, empty when there is none.
  std::shared_ptr<Controller> Find(std::string_view host) const;

  /// Lets `by` pass for all controllers; nothing else does. Other threads see the data before or
  /// after it. Throws std::invalid_argument for a negative time.
  void Advance(std::chrono::milliseconds by);
  std::chrono::milliseconds Now() const;

  /// Makes core objects that reach these controllers.
  DispatchFactory Factory() const;

 private:
  struct Hosts;
  std::shared_ptr<Hosts> hosts_;
};

}  // namespace orif::sim

// Serves a simulated cell to other processes: their RemoteCores, or whoever speaks the protocol,
// reach its controllers over TCP. docs/simulator.md has the protocol and its limits.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "simulator/Network.h"
#include "simulator/served/Address.h"

namespace orif::sim {

/// A served cell. There is no authentication: whoever reaches the address can read and write.
///
///     orif::sim::Server server(network, "cell1");
///     server.Run([&] { return ended.load(); });
///
/// One thread runs it. Others may use the network meanwhile, under its lock.
class Server {
 public:
  /// How many clients can be connected at a time; one more is turned away with a reason.
  static constexpr std::size_t MostClients = 128;

  /// Listens at once. `first` is the host name of the controller that clients get who name none.
  /// Port 0 is any free port. Throws std::runtime_error with the address and the system's reason.
  Server(Network network, std::string first, const Address& at = {});
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// Where it listens, with the port that it has.
  const Address& Where() const;

  /// Who lets the network's time pass while it is served.
  enum class Clock {
    Server,  ///< the server, as fast as real time
    Owner    ///< whoever owns the network, with Network::Advance
  };

  /// Serves until `ended` says that it is enough. That is asked about every 10 ms.
  void Run(const std::function<bool()>& ended, Clock clock = Clock::Server);

 private:
  struct Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace orif::sim

// Serves the page of metrics and the state of health over HTTP.
#pragma once

#include <memory>
#include <string>

namespace orif::gateway {

class Health;
class Metrics;

/// Answers /metrics and /healthz on threads of its own, from begin to end of its life. An exchange
/// ends after some seconds at most, and sooner while others wait, so that silent and slow clients
/// keep nobody out.
class MetricsServer {
 public:
  /// Listens at an address of this computer; port 0 is any that is free. Both references outlive
  /// it. Throws std::runtime_error with a text that is fit to show if it cannot listen.
  MetricsServer(std::string address, int port, const Metrics& metrics, const Health& health);
  MetricsServer(const MetricsServer&) = delete;
  MetricsServer& operator=(const MetricsServer&) = delete;

  /// Cuts what is open, and waits for the threads.
  ~MetricsServer();

  /// The port at which it listens.
  int Port() const;

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

}  // namespace orif::gateway

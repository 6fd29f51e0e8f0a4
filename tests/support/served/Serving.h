// A cell that is served on a thread of its own as long as the object lives.
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <thread>

#include "simulator/served/Server.h"

namespace orif::test {

class Serving {
 public:
  explicit Serving(const sim::Network& network, std::uint16_t port = 0)
      : server_(network, "cell", {"127.0.0.1", port}) {}
  Serving(const Serving&) = delete;
  Serving& operator=(const Serving&) = delete;
  ~Serving() { ended_ = true; }

  const sim::Address& Where() const { return server_.Where(); }

  /// The host name of a controller, or without a name of the first one.
  std::string Host(std::string_view controller = {}) const {
    const std::string host = "sim://" + ToText(Where());
    return controller.empty() ? host : host + '/' + std::string(controller);
  }

 private:
  sim::Server server_;
  std::atomic<bool> ended_{false};
  std::jthread thread_{
      [this] { server_.Run([this] { return ended_.load(); }, sim::Server::Clock::Owner); }};
};

}  // namespace orif::test

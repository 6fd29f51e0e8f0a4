// Serves the page: its files, an event stream for each browser that looks at it, and the last hour
// of a value. It only tells; nothing that it is sent reaches a cell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "tools/page/Plant.h"

namespace orif::page {

struct Settings {
  std::string address = "127.0.0.1";
  std::int32_t port = 9411;  ///< 0 is any that is free
  std::string token;         ///< without one everybody who gets there sees the page
  std::size_t clients = 32;  ///< that look at the page at once
};

/// Works on threads of its own, from begin to end of its life.
class Server {
 public:
  /// `plant` outlives it. Throws std::runtime_error with a text that is fit to show if it cannot
  /// listen.
  Server(const Settings& settings, const Plant& plant);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// The port at which it listens.
  int Port() const;

 private:
  class Routes;
  std::unique_ptr<Routes> routes_;
};

}  // namespace orif::page

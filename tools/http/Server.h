// An HTTP server whose clients keep neither each other nor the program waiting: each request and
// each answer has a time in which it must be through, and the threads are the server's own.
#pragma once

#include <httplib.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace orif::http {

/// How much of everything a server has.
struct Limits {
  std::size_t workers = 32;              ///< threads that answer
  std::size_t connections = 128;         ///< at a time; the system holds the others back
  std::size_t longestRequest = 8 << 10;  ///< bytes, with headers and body
  std::size_t longestBody = 0;           ///< bytes
};

/// A derived class sets its routes, then calls Begin, and calls End in its destructor.
class Server : protected httplib::Server {
 public:
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() override;

  /// The port at which it listens.
  int Port() const { return port_; }

  /// What all connections look at.
  struct Load {
    std::atomic<std::size_t> accepted = 0;  ///< and not closed, those that wait for a worker too
    std::atomic<bool> ending = false;
    Limits limits;
  };

 protected:
  /// An address of this computer; port 0 is any that is free.
  Server(std::string address, int port, Limits limits = {});

  /// Listens, on a thread of its own. Throws std::runtime_error with a text that is fit to show.
  void Begin();
  /// Cuts what is open, and waits for the threads. Nothing if that was done.
  void End();

  /// For a handler: once the answer is written, `take` gets the connection's socket, which is then
  /// its own, and the worker is free. If the client is gone before, `take` is dropped uncalled.
  static void HandOver(std::function<void(int socket)> take);

 private:
  bool Bind();
  void Listen();
  bool process_and_close_socket(socket_t socket) override;

  const std::string address_;
  int port_;
  Load load_;
  std::mutex mutex_;  // between the end and listening anew
  std::thread thread_;
};

}  // namespace orif::http

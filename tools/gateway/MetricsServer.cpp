#include "tools/gateway/MetricsServer.h"

#include <httplib.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <nlohmann/json.hpp>

#include "tools/gateway/Health.h"
#include "tools/gateway/Metrics.h"

namespace orif::gateway {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using namespace std::chrono_literals;

constexpr std::size_t kWorkers = 32;
constexpr int kHeldBySystem = 128;                // connections that wait to be accepted
constexpr std::size_t kLongestRequest = 8 << 10;  // bytes, with its headers

// How long a client may take. It has less time while others wait for a worker.
struct Patience {
  milliseconds alone;
  milliseconds whileOthersWait;
};
constexpr Patience kForRequest{2000ms, 100ms};
constexpr Patience kForAnswer{5000ms, 1000ms};

// What all connections of a server look at.
struct Load {
  std::atomic<std::size_t> accepted = 0;  // and not closed, those that wait for a worker included
  std::atomic<bool> ending = false;
};

// A connection with a client. The whole request, and the whole answer, have a time in which they
// must be through, however busily the other side sends or takes its bytes one by one.
class HttpConnection : public httplib::Stream {
 public:
  HttpConnection(socket_t socket, Load& load) : socket_(socket), load_(load) {}
  HttpConnection(const HttpConnection&) = delete;
  HttpConnection& operator=(const HttpConnection&) = delete;
  ~HttpConnection() override {
    ::close(socket_);
    --load_.accepted;
  }

  /// The request is there.
  void BeginAnswer() {
    patience_ = kForAnswer;
    begin_ = Clock::now();
  }

  bool is_readable() const override { return Wait(POLLIN); }
  bool is_writable() const override { return Wait(POLLOUT); }

  ssize_t read(char* bytes, std::size_t size) override {
    if (taken_ == held_) {  // the library asks for single bytes, up to the end of a line
      if (left_ == 0 || !Wait(POLLIN)) return -1;
      const ssize_t got = ::recv(socket_, buffer_.data(), std::min(left_, buffer_.size()), 0);
      if (got <= 0) return got;
      taken_ = 0;
      held_ = static_cast<std::size_t>(got);
      left_ -= held_;
    }
    const std::size_t count = std::min(size, held_ - taken_);
    std::copy_n(buffer_.data() + taken_, count, bytes);
    taken_ += count;
    return static_cast<ssize_t>(count);
  }

  ssize_t write(const char* bytes, std::size_t size) override {
    if (!Wait(POLLOUT)) return -1;
    return ::send(socket_, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
  }

  void get_remote_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
  void get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
  socket_t socket() const override { return socket_; }

 private:
  // The library's own waits with select, in some of its builds, and that knows no descriptors
  // beyond 1023. With many cells, there are.
  bool Wait(short event) const {
    while (!load_.ending) {
      const bool othersWait = load_.accepted > kWorkers;
      const auto most = othersWait ? patience_.whileOthersWait : patience_.alone;
      if (Clock::now() - begin_ > most) return false;
      pollfd descriptor{.fd = socket_, .events = event, .revents = 0};
      constexpr int kLook = 20;  // ms, after which to look who waits
      if (::poll(&descriptor, 1, kLook) > 0) return true;
    }
    return false;
  }

  const socket_t socket_;
  Load& load_;
  Patience patience_ = kForRequest;
  Clock::time_point begin_ = Clock::now();
  std::size_t left_ = kLongestRequest;  // that may still be read
  std::array<char, 1024> buffer_{};
  std::size_t taken_ = 0;
  std::size_t held_ = 0;
};

// A fixed number of threads.
class HttpWorkers : public httplib::ThreadPool {
 public:
  explicit HttpWorkers(Load& load) : ThreadPool(kWorkers), load_(load) {}
  void enqueue(std::function<void()> work) override {
    ++load_.accepted;
    ThreadPool::enqueue(std::move(work));
  }

 private:
  Load& load_;
};

}  // namespace

class MetricsServer::Server : private httplib::Server {
 public:
  Server(std::string address, int port, const Metrics& metrics, const Health& health);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() override;

  int Port() const { return port_; }

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

MetricsServer::Server::Server(std::string address, int port, const Metrics& metrics,
                              const Health& health)
    : address_(std::move(address)), port_(port) {
  new_task_queue = [this] { return new HttpWorkers(load_); };  // the library deletes it
  // The library's own options would let a second program listen at the same port.
  set_socket_options([](socket_t socket) {
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  });
  set_payload_max_length(0);
  Get("/metrics", [&metrics](const httplib::Request&, httplib::Response& response) {
    response.set_content(metrics.Text(), "text/plain; version=0.0.4; charset=utf-8");
  });
  Get("/healthz", [&metrics, &health](const httplib::Request&, httplib::Response& response) {
    const auto stuck = health.Stuck();
    const Metrics::Counts counts = metrics.Count();
    nlohmann::ordered_json answer{{"status", stuck.empty() ? "ok" : "stuck"}};
    if (!stuck.empty()) answer["threads"] = stuck;
    answer["broker"] = counts.broker;
    answer["cells"] = counts.cells;
    answer["cells_up"] = counts.cellsUp;
    response.status = stuck.empty() ? 200 : 503;
    response.set_content(answer.dump() + "\n", "application/json");
  });
  set_error_handler([](const httplib::Request&, httplib::Response& response) {
    if (response.status == 404) {
      response.set_content("There are /metrics and /healthz.\n", "text/plain");
    }
  });

  errno = 0;
  if (!Bind()) {
    const int error = errno;
    throw std::runtime_error("cannot listen at " + address_ + ", port " + std::to_string(port_) +
                             (error != 0 ? ": " + std::generic_category().message(error) : ""));
  }
  // A signal would end the accepting of connections.
  sigset_t all{};
  sigset_t before{};
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  thread_ = std::thread([this] { Listen(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

MetricsServer::Server::~Server() {
  {
    const std::lock_guard lock(mutex_);
    load_.ending = true;
    ::shutdown(svr_sock_, SHUT_RDWR);  // the library's stop does nothing before its loop runs
  }
  thread_.join();
}

bool MetricsServer::Server::Bind() {
  if (port_ == 0) {
    const int port = bind_to_any_port(address_);
    if (port < 0) return false;
    port_ = port;
  } else if (!bind_to_port(address_, port_)) {
    return false;
  }
  return ::listen(svr_sock_, kHeldBySystem) == 0;
}

void MetricsServer::Server::Listen() {
  // The library gives up when a connection cannot be accepted, as when the system is out of memory.
  for (;;) {
    listen_after_bind();
    svr_sock_ = INVALID_SOCKET;
    std::this_thread::sleep_for(load_.ending ? 0ms : 500ms);
    const std::lock_guard lock(mutex_);
    if (load_.ending) return;
    Bind();
  }
}

bool MetricsServer::Server::process_and_close_socket(socket_t socket) {
  HttpConnection connection(socket, load_);
  bool closed = false;
  return process_request(connection, true, closed, [&connection](httplib::Request& request) {
    connection.BeginAnswer();
    request.ranges.clear();  // a request for many ranges would be answered with many pages
  });
}

MetricsServer::MetricsServer(std::string address, int port, const Metrics& metrics,
                             const Health& health)
    : server_(std::make_unique<Server>(std::move(address), port, metrics, health)) {}

MetricsServer::~MetricsServer() = default;

int MetricsServer::Port() const { return server_->Port(); }

}  // namespace orif::gateway

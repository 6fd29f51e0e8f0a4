#include "tools/http/Server.h"

#include <netdb.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace orif::http {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using namespace std::chrono_literals;

constexpr int HeldBySystem = 128;  // connections that wait to be accepted

// How long a client may take. It has less time while others wait for a worker.
struct Patience {
  milliseconds alone;
  milliseconds whileOthersWait;
};
constexpr Patience ForRequest{2000ms, 100ms};
constexpr Patience ForAnswer{5000ms, 1000ms};

// A connection with a client. The whole request, and the whole answer, have a time in which they
// must be through, however busily the other side sends or takes its bytes one by one.
class Connection : public httplib::Stream {
 public:
  Connection(socket_t socket, Server::Load& load)
      : socket_(socket), load_(load), left_(load.limits.longestRequest) {
    current = this;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() override {
    current = nullptr;
    --load_.accepted;
    if (take_ && wrote_ && !load_.ending) {
      take_(socket_);
    } else {
      ::close(socket_);
    }
  }

  /// The one that this thread answers.
  static thread_local Connection* current;

  /// The request is there.
  void BeginAnswer() {
    patience_ = ForAnswer;
    begin_ = Clock::now();
  }

  void HandOver(std::function<void(int)> take) { take_ = std::move(take); }

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
    wrote_ = Wait(POLLOUT);
    if (!wrote_) return -1;
    const ssize_t count = ::send(socket_, bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
    wrote_ = count >= 0;
    return count;
  }

  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    std::array<char, NI_MAXHOST> name{};
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::getpeername(socket_, generic, &size) != 0) return;
    if (::getnameinfo(generic, size, name.data(), name.size(), nullptr, 0, NI_NUMERICHOST) != 0) {
      return;
    }
    ip = name.data();
    port = 0;
  }
  void get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const override {}
  socket_t socket() const override { return socket_; }

 private:
  // The library's own waits with select, in some of its builds, and that knows no descriptors
  // beyond 1023. With many cells, there are.
  bool Wait(short event) const {
    while (!load_.ending) {
      const bool othersWait = load_.accepted > load_.limits.workers;
      const auto most = othersWait ? patience_.whileOthersWait : patience_.alone;
      if (Clock::now() - begin_ > most) return false;
      pollfd descriptor{.fd = socket_, .events = event, .revents = 0};
      constexpr int Look = 20;  // ms, after which to look who waits
      if (::poll(&descriptor, 1, Look) > 0) return true;
    }
    return false;
  }

  const socket_t socket_;
  Server::Load& load_;
  std::function<void(int)> take_;
  bool wrote_ = false;
  Patience patience_ = ForRequest;
  Clock::time_point begin_ = Clock::now();
  std::size_t left_;  // that may still be read
  std::array<char, 1024> buffer_{};
  std::size_t taken_ = 0;
  std::size_t held_ = 0;
};

thread_local Connection* Connection::current = nullptr;

// A fixed number of threads.
class Workers : public httplib::ThreadPool {
 public:
  explicit Workers(Server::Load& load) : ThreadPool(load.limits.workers), load_(load) {}
  void enqueue(std::function<void()> work) override {
    // Whoever accepts waits here, so that no client takes the descriptors of the program.
    while (load_.accepted >= load_.limits.connections && !load_.ending) {
      std::this_thread::sleep_for(2ms);
    }
    ++load_.accepted;
    ThreadPool::enqueue(std::move(work));
  }

 private:
  Server::Load& load_;
};

}  // namespace

Server::Server(std::string address, int port, Limits limits)
    : address_(std::move(address)), port_(port) {
  load_.limits = limits;
  new_task_queue = [this] { return new Workers(load_); };  // the library deletes it
  // The library's own options would let a second program listen at the same port.
  set_socket_options([](socket_t socket) {
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  });
  set_payload_max_length(limits.longestBody);
}

Server::~Server() { End(); }

void Server::Begin() {
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

void Server::End() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    load_.ending = true;
    ::shutdown(svr_sock_, SHUT_RDWR);  // the library's stop does nothing before its loop runs
  }
  thread_.join();
}

void Server::HandOver(std::function<void(int socket)> take) {
  Connection::current->HandOver(std::move(take));
}

bool Server::Bind() {
  if (port_ == 0) {
    const int port = bind_to_any_port(address_);
    if (port < 0) return false;
    port_ = port;
  } else if (!bind_to_port(address_, port_)) {
    return false;
  }
  return ::listen(svr_sock_, HeldBySystem) == 0;
}

void Server::Listen() {
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

bool Server::process_and_close_socket(socket_t socket) {
  Connection connection(socket, load_);
  bool closed = false;
  return process_request(connection, true, closed, [&connection](httplib::Request& request) {
    connection.BeginAnswer();
    request.ranges.clear();  // a request for many ranges would be answered with many pages
    // Compressing can take a second of a processor, for anybody who asks for it.
    request.headers.erase("Accept-Encoding");
  });
}

}  // namespace orif::http

#include "simulator/served/Server.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <utility>

#include "simulator/RealTime.h"
#include "simulator/served/Conversation.h"

namespace orif::sim {

// What a server's clients have in common.
namespace served {
struct Clients {
  std::size_t count = 0;
  std::chrono::steady_clock::time_point lastRequest;
};
}  // namespace served

namespace {

using asio::ip::tcp;
using namespace std::chrono_literals;

// How soon a client has to greet.
constexpr auto GreetWithin = 10s;

using SteadyClock = std::chrono::steady_clock;

// One connection. It is there as long as something is under way for it: the handler of that holds
// it.
class ServedClient : public std::enable_shared_from_this<ServedClient> {
 public:
  ServedClient(tcp::socket socket, const Network& network, const std::string& first,
               std::shared_ptr<served::Clients> clients)
      : socket_(std::move(socket)),
        timer_(socket_.get_executor()),
        conversation_(network, first),
        clients_(std::move(clients)) {
    ++clients_->count;
  }
  ServedClient(const ServedClient&) = delete;
  ServedClient& operator=(const ServedClient&) = delete;
  ~ServedClient() { --clients_->count; }

  void Greet() {
    asio::error_code ignored;
    socket_.set_option(tcp::no_delay(true), ignored);
    socket_.set_option(asio::socket_base::keep_alive(true), ignored);
    socket_.non_blocking(true, ignored);
    timer_.expires_after(GreetWithin);
    timer_.async_wait([weak = weak_from_this()](asio::error_code error) {
      const auto self = weak.lock();
      if (self && !error) self->socket_.close(error);
    });
    asio::async_read(socket_, asio::buffer(greeting_),
                     [self = shared_from_this()](asio::error_code error, std::size_t) {
                       self->timer_.cancel();
                       if (!error) self->GreetBack();
                     });
  }

 private:
  void GreetBack() {
    const auto& ours = served::Greeting;
    if (!std::equal(ours.begin(), ours.end() - 1, greeting_.begin())) return;
    const bool full = clients_->count > Server::MostClients;
    if (full) {
      const std::string reason = std::to_string(Server::MostClients) + " clients are connected";
      served::PackAnswer(answer_, served::Unasked, served::Outcome::Closing, 0, reason);
    }
    answer_.insert(answer_.begin(), ours.begin(), ours.end());
    const bool stays = greeting_ == ours && !full;
    asio::async_write(socket_, asio::buffer(answer_),
                      [self = shared_from_this(), stays](asio::error_code error, std::size_t) {
                        if (!error && stays) self->Work();
                      });
  }

  // Carries out the requests that are there, and waits for more.
  void Work() {
    try {
      for (;;) {
        const auto request = inbox_.Next();
        if (request.empty()) return Receive();
        conversation_.Answer(request, answer_);
        clients_->lastRequest = SteadyClock::now();
        if (conversation_.Lateness() > 0) return SendLate();
        if (!Send()) return;
      }
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the connection ends
      // These bytes are none of the protocol, or there is no memory.
    }
  }

  void Receive() {
    const auto room = inbox_.Room();
    socket_.async_read_some(asio::buffer(room.data(), room.size()),
                            [self = shared_from_this()](asio::error_code error, std::size_t count) {
                              if (error) return;
                              self->inbox_.Add(count);
                              self->Work();
                            });
  }

  void SendLate() {
    timer_.expires_after(std::chrono::milliseconds(conversation_.Lateness()));
    timer_.async_wait([self = shared_from_this()](asio::error_code error) {
      if (!error && self->Send()) self->Work();
    });
  }

  // Whether the whole answer is on its way; if not, the work goes on when it is.
  bool Send() {
    asio::error_code error;
    const std::size_t sent = socket_.write_some(asio::buffer(answer_), error);
    if (sent == answer_.size()) return true;
    if (error && error != asio::error::would_block) return false;
    asio::async_write(socket_, asio::buffer(answer_) + sent,
                      [self = shared_from_this()](asio::error_code failed, std::size_t) {
                        if (!failed) self->Work();
                      });
    return false;
  }

  tcp::socket socket_;
  asio::steady_timer timer_;
  served::Conversation conversation_;
  std::shared_ptr<served::Clients> clients_;
  std::array<std::uint8_t, served::Greeting.size()> greeting_{};
  served::Inbox inbox_;
  served::Bytes answer_;
};

}  // namespace

struct Server::Listener {
  Listener(Network served, std::string firstHost, const Address& at)
      : network(std::move(served)), first(std::move(firstHost)) {
    const tcp::endpoint endpoint(asio::ip::make_address(at.ip), at.port);
    acceptor.open(endpoint.protocol());
#if !defined(_WIN32)  // there it would let two servers share a port
    acceptor.set_option(tcp::acceptor::reuse_address(true));
#endif
    acceptor.bind(endpoint);
    acceptor.listen();
    where = {acceptor.local_endpoint().address().to_string(), acceptor.local_endpoint().port()};
    Accept();
  }

  void Accept() {
    acceptor.async_accept([this](asio::error_code error, tcp::socket socket) {
      if (error) return AcceptLater();
      Accept();
      try {
        std::make_shared<ServedClient>(std::move(socket), network, first, clients)->Greet();
      } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): this client only
      }
    });
  }

  // There are no more sockets to be had just now.
  void AcceptLater() {
    pause.expires_after(100ms);
    pause.async_wait([this](asio::error_code error) {
      if (!error) Accept();
    });
  }

  void Tick(const std::function<bool()>& ended) {
    if (realTime) realTime->Follow();
    if (ended()) return context.stop();
    tick.expires_after(10ms);
    tick.async_wait([this, &ended](asio::error_code error) {
      if (!error) Tick(ended);
    });
  }

  void Run(const std::function<bool()>& ended, Clock whose) {
    realTime.reset();
    if (whose == Clock::Server) realTime.emplace(network);
    context.restart();
    Tick(ended);
    // Like a client, it looks again and again for a moment before it sleeps.
    while (!context.stopped()) {
      if (context.poll() > 0) continue;
      if (SteadyClock::now() - clients->lastRequest > served::Eagerness) context.run_one();
    }
  }

  Network network;
  std::string first;
  Address where;
  std::shared_ptr<served::Clients> clients = std::make_shared<served::Clients>();
  asio::io_context context{1};
  tcp::acceptor acceptor{context};
  asio::steady_timer tick{context};
  asio::steady_timer pause{context};
  std::optional<RealTime> realTime;  // while the server lets it pass
};

Server::Server(Network network, std::string first, const Address& at) {
  try {
    listener_ = std::make_unique<Listener>(std::move(network), std::move(first), at);
  } catch (const std::system_error& error) {
    throw std::runtime_error("cannot serve at " + ToText(at) + ": " + error.code().message());
  }
}

Server::~Server() = default;

const Address& Server::Where() const { return listener_->where; }

void Server::Run(const std::function<bool()>& ended, Clock clock) { listener_->Run(ended, clock); }

}  // namespace orif::sim

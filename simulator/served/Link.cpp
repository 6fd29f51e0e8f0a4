#include "simulator/served/Link.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <optional>

namespace orif::sim::served {

using asio::ip::tcp;

// A socket whose operations end at a deadline. They throw asio's errors, or NoAnswer.
class Link::Socket {
 public:
  explicit Socket(const Address& to) : to_(to) {}

  void Connect(const Deadline& deadline) {
    const tcp::endpoint endpoint(asio::ip::make_address(to_.ip), to_.port);
    socket_.open(endpoint.protocol());
    socket_.set_option(tcp::no_delay(true));
    Wait(deadline, [&](auto handler) { socket_.async_connect(endpoint, handler); });
    socket_.non_blocking(true);
  }

  void Send(std::span<const std::uint8_t> bytes, const Deadline& deadline) {
    const auto all = asio::buffer(bytes.data(), bytes.size());
    asio::error_code error;
    std::size_t sent = socket_.write_some(all, error);
    if (error && error != asio::error::would_block) throw asio::system_error(error);
    while (sent < bytes.size()) {
      sent += Wait(deadline, [&](auto handler) { socket_.async_write_some(all + sent, handler); });
    }
  }

  // Answers come so soon that being put to sleep and woken takes longer than the rest of a call:
  // for a moment it looks again and again.
  std::size_t Receive(std::span<std::uint8_t> room, const Deadline& deadline) {
    const auto begin = std::chrono::steady_clock::now();
    if (begin >= deadline.time) FailTimedOut(deadline);  // also while bytes keep coming
    const auto end = std::min(begin + Eagerness, deadline.time);
    do {
      asio::error_code error;
      const std::size_t got = socket_.read_some(asio::buffer(room.data(), room.size()), error);
      if (!error) return got;
      if (error != asio::error::would_block) throw asio::system_error(error);
    } while (std::chrono::steady_clock::now() < end);
    return Wait(deadline, [&](auto handler) {
      socket_.async_read_some(asio::buffer(room.data(), room.size()), handler);
    });
  }

 private:
  [[noreturn]] void FailTimedOut(const Deadline& deadline) const {
    throw NoAnswer(Status::TimedOut, "no answer from " + ToText(to_) + " within " +
                                         std::to_string(deadline.milliseconds) + " ms");
  }

  // Waits for the operation that `start` starts with a handler. It has ended in any case.
  template <class Start>
  std::size_t Wait(const Deadline& deadline, const Start& start) {
    std::optional<asio::error_code> result;
    std::size_t bytes = 0;
    start([&](asio::error_code error, std::size_t count = 0) {
      result = error;
      bytes = count;
    });
    context_.restart();
    context_.run_until(deadline.time);
    if (!result) {
      socket_.cancel();
      context_.restart();
      context_.run();
    }
    if (result == asio::error::operation_aborted) FailTimedOut(deadline);
    if (*result) throw asio::system_error(*result);
    return bytes;
  }

  const Address& to_;
  asio::io_context context_{1};
  tcp::socket socket_{context_};
};

Link::Link(Address to) : to_(std::move(to)), socket_(std::make_unique<Socket>(to_)) {}
Link::~Link() = default;

void Link::Open(const Deadline& deadline) {
  try {
    socket_->Connect(deadline);
  } catch (const asio::system_error& error) {
    throw LinkLost(Status::LinkDown,
                   "no cell is served at " + ToText(to_) + ": " + error.code().message());
  }
  try {
    socket_->Send(Greeting, deadline);
    while (!inbox_.Holds(Greeting.size())) Receive(deadline);
  } catch (const asio::system_error&) {
    FailClosed();
  }
  const auto theirs = inbox_.Take(Greeting.size());
  if (!std::equal(Greeting.begin(), Greeting.end() - 1, theirs.begin())) FailMalformed();
  if (theirs.back() != Version) {
    throw LinkLost(Status::LinkDown, ToText(to_) + " speaks version " +
                                         std::to_string(theirs.back()) + " of the protocol, not " +
                                         std::to_string(Version));
  }
}

Packer Link::Begin(std::int32_t operation, const Deadline& deadline) {
  Packer request(request_);
  if (++number_ == Unasked) ++number_;
  request.Put(number_);
  request.Put(deadline.milliseconds);
  request.Put(operation);
  return request;
}

Unpacker Link::Exchange(const Deadline& deadline) {
  if (!Finish(request_)) throw NoAnswer(Status::WrongCount, "More than a request can carry");
  try {
    Send(deadline);
    for (;;) {
      Unpacker answer(NextFrame(deadline));
      const auto number = answer.Get<std::uint32_t>();
      if (number == number_) return answer;
      if (number != Unasked) continue;
      if (answer.Get<Outcome>() != Outcome::Closing) FailMalformed();
      answer.Get<std::int32_t>();
      FailClosed(answer.GetText());
    }
  } catch (const Malformed&) {
    FailMalformed();
  } catch (const asio::system_error&) {
    FailClosed();
  }
}

void Link::Send(const Deadline& deadline) {
  try {
    socket_->Send(request_, deadline);
  } catch (const NoAnswer& error) {
    throw LinkLost(error.status, error.what());  // part of the request may be under way
  }
}

void Link::Receive(const Deadline& deadline) {
  inbox_.Add(socket_->Receive(inbox_.Room(), deadline));
}

std::span<const std::uint8_t> Link::NextFrame(const Deadline& deadline) {
  for (;;) {
    const auto frame = inbox_.Next();
    if (!frame.empty()) return frame;
    Receive(deadline);
  }
}

void Link::FailClosed(std::string_view reason) const {
  std::string text = "the connection was closed by " + ToText(to_);
  if (!reason.empty()) text += ": " + std::string(reason);
  throw LinkLost(Status::ConnectionLost, text);
}

void Link::FailMalformed() const {
  throw LinkLost(Status::ConnectionLost, ToText(to_) + " is no simulated cell");
}

}  // namespace orif::sim::served

// The connection of a RemoteCore to the server: sends a request and waits for its answer, never
// longer than until a deadline. Starts no thread. One thread at a time.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

#include "simulator/Status.h"
#include "simulator/served/Address.h"
#include "simulator/served/Protocol.h"

namespace orif::sim::served {

/// Until when a call waits.
struct Deadline {
  explicit Deadline(std::int32_t timeOut)
      : milliseconds(timeOut),
        time(std::chrono::steady_clock::now() + std::chrono::milliseconds(timeOut)) {}

  std::int32_t milliseconds;
  std::chrono::steady_clock::time_point time;
};

/// Why there is no answer.
struct NoAnswer : std::runtime_error {
  NoAnswer(Status why, const std::string& text) : std::runtime_error(text), status(why) {}

  Status status;
};

/// The link is of no more use.
struct LinkLost : NoAnswer {
  using NoAnswer::NoAnswer;
};

class Link {
 public:
  explicit Link(Address to);
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;
  ~Link();

  /// Connects and greets. Throws NoAnswer.
  void Open(const Deadline& deadline);

  /// Begins a request; its arguments follow.
  Packer Begin(std::int32_t operation, const Deadline& deadline);

  /// Sends the request that was begun, and waits for its answer: what follows the number. Late
  /// answers of earlier requests are skipped. Throws NoAnswer.
  Unpacker Exchange(const Deadline& deadline);

  /// The server does not keep to the protocol.
  [[noreturn]] void FailMalformed() const;

 private:
  void Send(const Deadline& deadline);
  void Receive(const Deadline& deadline);
  std::span<const std::uint8_t> NextFrame(const Deadline& deadline);
  [[noreturn]] void FailClosed(std::string_view reason = {}) const;

  class Socket;  // the network is known behind it only
  Address to_;
  std::unique_ptr<Socket> socket_;
  Bytes request_;
  Inbox inbox_;
  std::uint32_t number_ = Unasked;
};

}  // namespace orif::sim::served

// One connection to an MQTT broker: made, used, and dropped with all that was under way on it. A
// lost connection is followed by a new object, so that nothing is ever sent again unasked.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "tools/gateway/Configuration.h"
#include "tools/gateway/Form.h"

struct mosquitto;

namespace orif::gateway {

class Broker {
 public:
  /// What happens to the connection; called by Turn.
  struct Events {
    std::function<void()> connected;
    std::function<void(int number)> answered;  ///< a Subscribe or Unsubscribe was accepted
    std::function<void(const Message&)> received;
    std::function<void(int message, int code)> acknowledged;  ///< code: as MQTT 5 has it
  };

  /// Reads the secrets that the settings name. Throws a std::runtime_error with the reason.
  Broker(BrokerSettings settings, const Message& lastWill, Events events);
  Broker(const Broker&) = delete;
  Broker& operator=(const Broker&) = delete;
  ~Broker();

  /// Makes the connection, which takes as long as the network and its names do; for a thread of its
  /// own, before any other member. Answers why not, empty if there is one.
  std::string Connect();

  /// Its socket for poll, and whether it wants to write; -1 without connection.
  int Socket() const;
  bool WantsToWrite() const;

  /// Reads and writes what there is, and calls back. Answers false once the connection is gone, for
  /// the reason Reason.
  bool Turn(bool readable, bool writable);
  const std::string& Reason() const { return reason_; }

  /// How many messages the broker takes before it has acknowledged the first.
  int Window() const { return window_; }

  /// Sends a message, and answers its number; 0 if the connection is gone. Throws a
  /// std::runtime_error if it can never be sent.
  int Publish(const Message& message);

  /// The number of the request, which the broker answers; 0 if the connection is gone.
  int Subscribe(const std::string& topic);
  int Unsubscribe(const std::string& topic);

  /// Holds small packets back, until it is called with false, and sends them together.
  void Gather(bool on);

  /// Whether a message with that code of acknowledgement was refused, and whether it will always
  /// be.
  static bool IsRefusal(int code) { return code >= 0x80; }
  static bool IsFinal(int code);
  static std::string CodeText(int code);

  /// Says good-bye, so that there is no last will, or, where the protocol can tell so, that there
  /// is to be one.
  void Disconnect(bool withWill);

 private:
  struct Callbacks;
  template <class Call>
  void Tell(const Call& call);
  void Fail(const std::string& reason);
  int Numbered(int result, int number);
  struct Free {
    void operator()(mosquitto* handle) const;
  };

  BrokerSettings settings_;
  Events events_;
  std::string keyPassword_;
  std::unique_ptr<mosquitto, Free> handle_;
  std::string reason_;
  int window_;
  bool failed_ = false;
};

}  // namespace orif::gateway

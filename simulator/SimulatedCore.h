// One lower core object of the simulation: connects to a controller of its Network and carries out
// the operations of the lower communication layer on that controller's data. It has its own host
// name, port, time-out, client key, connection, assignment and last error text. Made by
// Network::Factory. One client and one thread at a time; a call that reaches the controller holds
// the network's lock, so that clients of one controller may call at once.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orif/lowerlayer/Dispatch.h"
#include "simulator/AssignmentMap.h"
#include "simulator/Network.h"
#include "simulator/Operations.h"

namespace orif::sim {

class SimulatedCore final : public Dispatch {
 public:
  static constexpr std::int32_t DefaultPort = 60008;
  static constexpr std::int32_t DefaultTimeOut = 10000;  // ms

  explicit SimulatedCore(Network network) : network_(std::move(network)) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override;
  std::int32_t Lookup(std::string_view name) override;

  /// The key of the last SetClientID.
  std::int16_t ClientKey() const { return clientKey_; }

  const std::string& HostName() const { return hostName_; }
  std::int32_t TimeOut() const { return timeOut_; }
  const std::string& LastError() const { return lastError_; }

  /// How late, in ms, the controller's answer to the last call is.
  std::int32_t Lateness() const { return lateness_; }

  /// Ends connection and assignment.
  void DropConnection();

  /// Answers the failure's status; its text becomes the last error text.
  OrvexValue Answer(const Failure& failure);

 private:
  struct Operation;
  struct Handlers;
  struct Table;
  friend bool ReachesController(std::string_view operation);
  friend std::optional<CallForm> FindCallForm(std::int32_t id, OrvexCall call);

  static std::span<const Operation> Operations();
  static const Operation* Find(std::int32_t id, OrvexCall call);

  // The failure to answer instead of carrying out `operation` on `controller`, if there is one.
  std::optional<Failure> Obstacle(std::string_view operation, Controller& controller);
  // The same for an operation that needs the connection.
  std::optional<Failure> Reach(std::string_view operation);

  OrvexValue Answer(Status status);

  Network network_;
  std::string hostName_;
  std::int32_t port_ = DefaultPort;
  std::int32_t timeOut_ = DefaultTimeOut;
  std::int32_t lateness_ = 0;
  std::int16_t clientKey_ = 0;
  std::string lastError_;

  std::shared_ptr<Controller> controller_;  // empty while not connected
  std::int64_t losses_ = 0;                 // the controller's losses when the connection was made
  AssignmentMap map_;                       // refers to the controller's data
  std::vector<Word> scratch_;
};

}  // namespace orif::sim

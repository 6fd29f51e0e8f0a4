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

namespace orif::sim {

class SimulatedCore final : public Dispatch {
 public:
  static constexpr std::int32_t DefaultPort = 60008;
  static constexpr std::int32_t DefaultTimeOut = 10000;  // ms

  explicit SimulatedCore(Network network) : network_(std::move(network)) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override;
  std::int32_t Lookup(std::string_view name) override;

  /// What SetClientID was last given.
  std::int16_t ClientKey() const { return clientKey_; }

  /// Whether `operation` is answered by the controller, so that it can be made to fail there.
  static bool ReachesController(std::string_view operation);

 private:
  struct Operation;
  struct Handlers;
  struct Table;
  static std::span<const Operation> Operations();
  static const Operation* Find(std::int32_t id, OrvexCall call);

  // What the caller is told instead of carrying `operation` out on `controller`, if anything.
  std::optional<Failure> Obstacle(std::string_view operation, Controller& controller) const;
  // The same for an operation that needs the connection.
  std::optional<Failure> Reach(std::string_view operation) const;

  OrvexValue Answer(Status status);
  OrvexValue Answer(const Failure& failure);
  void DropConnection();

  Network network_;
  std::string hostName_;
  std::int32_t port_ = DefaultPort;
  std::int32_t timeOut_ = DefaultTimeOut;
  std::int16_t clientKey_ = 0;
  std::string lastError_;

  std::shared_ptr<Controller> controller_;  // empty while not connected
  std::int64_t losses_ = 0;  // the controller's number of losses when the connection was made
  AssignmentMap map_;        // refers to the controller's data
  std::vector<Word> scratch_;
};

}  // namespace orif::sim

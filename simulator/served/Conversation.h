// One client of a served cell: its requests, as they came over the network, carried out by a core
// object of its own. Knows nothing of the network. One thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "simulator/Network.h"
#include "simulator/SimulatedCore.h"
#include "simulator/served/Protocol.h"

namespace orif::sim::served {

class Conversation {
 public:
  /// `first` is the controller that clients get who name none.
  Conversation(const Network& network, std::string first)
      : core_(network), first_(std::move(first)) {}

  /// Carries out a request, a frame without its size, and makes `answer` the answer's frame. Throws
  /// Malformed, and then nothing was done.
  void Answer(std::span<const std::uint8_t> request, Bytes& answer);

  /// How late, in ms, the controller gave that answer.
  std::int32_t Lateness() const { return core_.Lateness(); }

 private:
  OrvexValue CarryOut(std::int32_t operation, Unpacker& request);
  OrvexValue Connect(std::string_view controller);
  OrvexValue Take(Unpacker& request, const Parameter& parameter, std::size_t index);

  SimulatedCore core_;
  std::string first_;
  CallForm form_;
  std::vector<OrvexValue> arguments_;
  // What references point to: the argument that a read fills, and the others.
  static constexpr std::size_t MostArguments = 7;
  std::vector<std::byte> filled_;
  std::array<std::vector<std::byte>, MostArguments> referred_;
};

}  // namespace orif::sim::served

// The simulated cell that the user names: a scenario file, a recording, or the demonstration cell.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "live/Name.h"
#include "simulator/Network.h"

namespace orif::tool {

/// What "--simulate" without a file stands for.
inline constexpr const char* DemoCell = "demo";

struct SimulatedCell {
  sim::Network network;
  std::vector<std::string> hosts;  ///< the controllers' host names; the first one is the usual one
  std::string description;         ///< in words
};

/// A signal as a simulated controller numbers it.
struct SimulatedSignal {
  sim::SignalKind kind;
  std::int32_t number;
};

/// The first of the signals that `name` stands for.
SimulatedSignal SignalOf(const live::Name& name);

/// Whether a file of that name is a cell: it ends in .json, .csv or .db.
bool IsCellFile(const std::string& name);

/// Throws an Error or a ScenarioError that says what is wrong in the file.
SimulatedCell LoadSimulatedCell(const std::string& file);

}  // namespace orif::tool

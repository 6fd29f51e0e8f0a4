// A scenario file describes a simulated cell in JSON: controllers, their data, and what they do as
// time passes. Tools and tests load one instead of setting up a cell in code. docs/simulator.md
// shows the format; with scenario.schema.json an editor completes and checks it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/Network.h"

namespace orif::sim {

/// What a scenario file makes.
struct Scenario {
  std::string name;                ///< the cell's name, for people
  std::string description;         ///< a sentence or two, or nothing
  Network network;                 ///< the controllers and their time
  std::vector<std::string> hosts;  ///< the controllers' host names, in file order
  std::string summary;             ///< what Describe says about the controllers
};

/// Says in which file, line and field the mistake is, and what would be right:
/// "cell.json:12: controllers[0].registers.R[3]: must be a number, not a text".
class ScenarioError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads and checks the whole file. Throws a ScenarioError for the first mistake.
Scenario LoadScenario(const std::filesystem::path& file);

/// The scenario in words: its name and description, then its controllers with their sizes, data and
/// behaviours, a line each.
std::string Describe(const Scenario& scenario);

}  // namespace orif::sim

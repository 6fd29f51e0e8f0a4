// A scenario file: simulated controllers with their data, and what they do as time passes, written
// down as JSON. Read by tools and tests that want a cell without a program for it.
// docs/simulator.md shows the format, scenario.schema.json lets an editor complete and check it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/Network.h"

namespace orif::sim {

struct Scenario {
  std::string name;                ///< of the cell, for people
  std::string description;         ///< a sentence or two, or nothing
  Network network;                 ///< its controllers, and their time
  std::vector<std::string> hosts;  ///< their names, in the order of the file
  std::string summary;             ///< of the controllers, for Describe
};

/// Tells file, line, field, what is wrong with it and what is right:
/// "cell.json:12: controllers[0].registers.R[3]: must be a number, not a text".
class ScenarioError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads and checks the whole file before it answers anything; throws ScenarioError.
Scenario LoadScenario(const std::filesystem::path& file);

/// Name, description, controllers with their sizes and data, and what they do, a line each.
std::string Describe(const Scenario& scenario);

}  // namespace orif::sim

// Reads what a controller of a scenario file does as time passes. Used by LoadScenario.
#pragma once

#include <string>
#include <vector>

#include "simulator/scenario/ScenarioItem.h"

namespace orif::sim {

/// Adds the behaviours in `list` to the controller, which already has its data. Answers each in
/// words: "R[1] goes from 0 to 100 in 10s, then stays". Throws a Mistake.
std::vector<std::string> AddBehaviours(const Site& site, const Node& list);

}  // namespace orif::sim

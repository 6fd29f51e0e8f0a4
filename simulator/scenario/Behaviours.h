// What a controller of a scenario file does as time passes. Used by LoadScenario.
#pragma once

#include <string>
#include <vector>

#include "simulator/scenario/ScenarioItem.h"

namespace orif::sim {

/// Adds the behaviours that `list` describes to the controller, whose data is there already, and
/// answers them in words: "R[1] goes from 0 to 100 in 10s, then stays". Throws a Mistake.
std::vector<std::string> AddBehaviours(const Site& site, const Node& list);

}  // namespace orif::sim

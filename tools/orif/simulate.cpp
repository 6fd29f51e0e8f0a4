// "orif simulate": checks a scenario file and prints what is in it.
#include <iostream>

#include "simulator/scenario/Scenario.h"
#include "tools/orif/Commands.h"

namespace orif::tool {

void Simulate(const std::string& file) { std::cout << sim::Describe(sim::LoadScenario(file)); }

}  // namespace orif::tool

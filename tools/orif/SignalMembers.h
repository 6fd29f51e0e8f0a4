// Calls the members of Core that read and write the signals of a symbol.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/orif/Designation.h"

namespace orif {
class Core;
}

namespace orif::tool {

/// Reads the signals of a designation. False if the controller refuses.
bool ReadSignals(Core& core, const Designation& signals, std::vector<std::int32_t>& values);

/// Writes one signal; a bit is 0 or 1. False if the controller refuses.
bool WriteSignal(Core& core, const Symbol& symbol, std::int32_t number, std::int32_t value);

}  // namespace orif::tool

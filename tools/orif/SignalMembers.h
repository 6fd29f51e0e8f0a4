// The members of Core that serve the signals of each symbol.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/orif/Designation.h"

namespace orif {
class Core;
}

namespace orif::tool {

/// Reads the signals from `first` to `last` of a designation; false when the controller refuses.
bool ReadSignals(Core& core, const Designation& signals, std::vector<std::int32_t>& values);

/// Writes one signal, 0 or 1 for a bit.
bool WriteSignal(Core& core, const Symbol& symbol, std::int32_t number, std::int32_t value);

}  // namespace orif::tool

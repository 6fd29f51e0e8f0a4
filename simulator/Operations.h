// What others may ask about the operations of a core object without knowing core objects.
#pragma once

#include <string_view>

namespace orif::sim {

/// Whether the controller answers `operation`; only such an operation can fail there.
bool ReachesController(std::string_view operation);

}  // namespace orif::sim

// A recording as a cell to develop against: one controller whose data change as they did when they
// were recorded, link included, over and over again.
#pragma once

#include <filesystem>
#include <string>

#include "simulator/Network.h"

namespace orif::tool {

struct Playback {
  sim::Network network;
  std::string host;     ///< the controller's
  std::string summary;  ///< what was recorded, in words
};

/// Reads and checks the whole recording. Throws an Error that says in which row and column the
/// mistake is.
Playback LoadPlayback(const std::filesystem::path& path);

}  // namespace orif::tool

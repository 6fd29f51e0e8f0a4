// A small ready-made cell with some of every kind of data, for demonstrations, examples and the
// loadable component. Every call makes one of its own, on any thread.
#pragma once

#include "simulator/Network.h"

namespace orif::sim {

/// The host name of the demonstration cell's only controller.
inline constexpr const char* DemoHost = "demo";

/// A cell of its own at each call.
Network DemoNetwork();

}  // namespace orif::sim

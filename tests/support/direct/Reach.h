// How core objects of a test reach a simulated network: in this process, or in the header of the
// other directory through a server. The build chooses one for each test program.
#pragma once

#include "simulator/Network.h"

namespace orif::test {

inline DispatchFactory Reach(const sim::Network& network) { return network.Factory(); }

}  // namespace orif::test

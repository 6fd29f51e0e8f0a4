// A lower core object whose controller is in a served cell, if its host name says so: sim://... The
// loadable component and the command-line tool make such objects.
#pragma once

#include "orif/lowerlayer/Dispatch.h"
#include "simulator/Network.h"

namespace orif::sim {

/// Makes core objects that connect to a served cell for the host name sim://ADDRESS:PORT, its first
/// controller, or sim://ADDRESS:PORT/NAME, the controller of that name. Any other host name is a
/// controller of `local`, in this process.
///
/// A call that needs the controller waits for it as long as the time-out says, and no longer. What
/// no controller is needed for, the conversion of words above all, is answered in this process.
DispatchFactory RemoteFactory(const Network& local = {});

}  // namespace orif::sim

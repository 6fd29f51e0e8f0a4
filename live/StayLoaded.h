// Keeps this code in memory for a thread that nobody waits for. StayLoaded_posix.cpp or
// StayLoaded_windows.cpp implements it; the build chooses one. Internal.
#pragma once

namespace orif::live {

/// From now on the module that contains this code is not unloaded.
void StayLoaded();

}  // namespace orif::live

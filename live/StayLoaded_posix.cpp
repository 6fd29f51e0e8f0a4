#include "live/StayLoaded.h"

namespace orif::live {

// The shared library is linked so that it is never unloaded.
void StayLoaded() {}

}  // namespace orif::live

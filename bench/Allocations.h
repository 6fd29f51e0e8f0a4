// The number of allocations of this process so far; Allocations.cpp counts them.
#pragma once

namespace orif::bench {

long Allocations() noexcept;

}  // namespace orif::bench

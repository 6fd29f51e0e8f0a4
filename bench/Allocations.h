// How many allocations this process has made so far; Allocations.cpp counts them.
#pragma once

namespace orif::bench {

long Allocations() noexcept;

}  // namespace orif::bench

// How far a misspelt word is from the one that was meant. Used by messages that suggest a name.
#pragma once

#include <cstddef>
#include <string_view>

namespace orif::sim {

/// How many characters must be put in, left out or replaced to make one word the other.
std::size_t EditDistance(std::string_view a, std::string_view b);

}  // namespace orif::sim

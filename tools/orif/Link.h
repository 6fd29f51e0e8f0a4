// What a refresh found the link to the controller to be. Told by Poll, shown by watch and written
// down by record.
#pragma once

#include <cstdint>

namespace orif::tool {

enum class Link : std::uint8_t { Up, Lost, StillLost, Back };

inline bool IsLost(Link link) { return link == Link::Lost || link == Link::StillLost; }

}  // namespace orif::tool

// The state of the link to the controller at a refresh. Poll tells it, watch shows it and record
// writes it down.
#pragma once

#include <cstdint>

namespace orif::tool {

enum class Link : std::uint8_t { Up, Lost, StillLost, Back };

inline bool IsLost(Link link) { return link == Link::Lost || link == Link::StillLost; }

}  // namespace orif::tool

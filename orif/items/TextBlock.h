// The words that a text takes in the data area: two bytes a word, the first in its low half.
#pragma once

#include <cstdint>

namespace orif {

constexpr std::int32_t TextWords = 40;  // 80 bytes

}  // namespace orif

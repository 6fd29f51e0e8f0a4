#include "orif/datatable/LastData.h"

#include <algorithm>

namespace orif {

void LastData::Text(std::int32_t address, std::int32_t words, std::string& text) const {
  const std::int16_t* first = words_.data() + Element(address, std::max(words, 0));
  const auto byte = [first](std::int32_t i) {
    const auto word = static_cast<std::uint16_t>(first[i / 2]);
    return static_cast<char>(i % 2 == 0 ? word % 256 : word / 256);
  };
  const std::int32_t all = 2 * std::max(words, 0);
  std::int32_t end = 0;
  while (end < all && byte(end) != '\0') ++end;
  std::int32_t begin = 0;
  while (begin < end && byte(begin) == ' ') ++begin;
  while (end > begin && byte(end - 1) == ' ') --end;
  text.resize(static_cast<std::size_t>(end - begin));
  for (std::int32_t i = begin; i < end; ++i) text[static_cast<std::size_t>(i - begin)] = byte(i);
}

}  // namespace orif

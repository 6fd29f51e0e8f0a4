// How far a misspelt word is from the one that was meant, for messages that suggest a name.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

namespace orif::spelling {

/// How many characters have to be inserted, removed or replaced to turn one word into the other.
inline std::size_t EditDistance(std::string_view a, std::string_view b) {
  // The distances from what has been read of `a` to each prefix of `b`.
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace orif::spelling

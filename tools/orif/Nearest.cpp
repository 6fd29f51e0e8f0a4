#include "tools/orif/Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

namespace orif::tool {
namespace {

// The edit distance, row by row.
std::size_t Changes(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::string Nearest(std::string_view word, std::span<const std::string> names) {
  const std::string wanted = UpperCase(word);
  return *std::ranges::min_element(
      names, {}, [&](const std::string& name) { return Changes(wanted, UpperCase(name)); });
}

std::string AnyOf(std::span<const std::string> names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

}  // namespace orif::tool

// What a text has instead of the expected one, as a unified diff.
#pragma once

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace orif::test {

struct Difference {
  std::string diff;       // nothing if the texts are equal
  std::ptrdiff_t at = 0;  // the first line of the actual text that differs, counted from 0
};

/// The lines of both texts, marked '-' if only `expected` has it, '+' if only `actual` has it.
inline std::vector<std::string> Merge(const std::string& expected, const std::string& actual) {
  const auto split = [](std::istringstream text) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  };
  const auto a = split(std::istringstream(expected));
  const auto b = split(std::istringstream(actual));
  // How many lines the ends have in common that begin with a[i] and b[j].
  std::vector common(a.size() + 1, std::vector<int>(b.size() + 1));
  for (auto i = a.size(); i-- > 0;) {
    for (auto j = b.size(); j-- > 0;) {
      common[i][j] =
          a[i] == b[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  std::vector<std::string> lines;
  for (std::size_t i = 0, j = 0; i < a.size() || j < b.size();) {
    if (i < a.size() && j < b.size() && a[i] == b[j]) {
      lines.push_back(' ' + a[i++]);
      ++j;
    } else if (j == b.size() || (i < a.size() && common[i + 1][j] >= common[i][j + 1])) {
      lines.push_back('-' + a[i++]);
    } else {
      lines.push_back('+' + b[j++]);
    }
  }
  return lines;
}

inline Difference Compare(const std::string& expected, const std::string& actual) {
  constexpr std::ptrdiff_t context = 3;
  const auto lines = Merge(expected, actual);
  const auto differs = [](const std::string& line) { return line[0] != ' '; };
  Difference difference{{}, std::ranges::find_if(lines, differs) - lines.begin()};
  std::ptrdiff_t number = 0;  // of the line in the expected text
  auto shown = lines.begin();
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    if (line->front() != '+') ++number;
    const auto from = line - std::min(context, line - lines.begin());
    const auto to = line + std::min(context, lines.end() - line - 1) + 1;
    if (std::none_of(from, to, differs)) continue;
    if (difference.diff.empty() || shown != line) {
      difference.diff += "@@ line " + std::to_string(number) + " @@\n";
    }
    difference.diff += *line + '\n';
    shown = line + 1;
  }
  return difference;
}

}  // namespace orif::test

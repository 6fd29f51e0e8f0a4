// Names that mean the same in upper and lower case.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace orif::tool {

/// The letters A to Z only, whatever the locale.
inline std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return upper;
}

}  // namespace orif::tool

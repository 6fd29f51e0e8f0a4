// For names in which upper and lower case mean the same.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace orif::spelling {

/// Changes the letters a to z only, whatever the locale.
inline std::string UpperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return upper;
}

}  // namespace orif::spelling

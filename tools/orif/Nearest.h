// Finds what somebody probably meant who misspelt a name. Used by messages about unknown items and
// columns.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orif::tool {

/// The name that takes the fewest single-character changes to get from `word`; the first of
/// several. Upper and lower case are the same. `names` is not empty.
std::string Nearest(std::string_view word, std::span<const std::string> names);

/// "A, B or C".
std::string AnyOf(std::span<const std::string> names);

}  // namespace orif::tool

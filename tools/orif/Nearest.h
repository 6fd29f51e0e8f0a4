// Finds the name that a user probably meant, for messages about unknown commands, items and
// columns.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orif::tool {

/// The name that is the fewest characters away from `word`, or the first of several. Ignores case.
/// `names` must not be empty.
std::string Nearest(std::string_view word, std::span<const std::string> names);

/// "A, B or C".
std::string AnyOf(std::span<const std::string> names);

}  // namespace orif::tool

// Questions that come before something that cannot be undone.
#pragma once

#include <string>

namespace orif::tool {

/// Throws an Error if nobody could answer. `what` the program would do: "write".
void CheckSomebodyAnswers(const std::string& what);

/// Asks, and answers whether the user said yes.
bool Confirmed(const std::string& question);

}  // namespace orif::tool

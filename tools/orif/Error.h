// Why a command could not do what it was asked: the program's exit code and a sentence for the
// user. Thrown anywhere in the tool, caught once, in main.
#pragma once

#include <stdexcept>
#include <string>

namespace orif::tool {

enum class Exit { Done = 0, Refused = 1, Usage = 2, NoConnection = 3 };

struct Error : std::runtime_error {
  Error(Exit exitCode, const std::string& message) : std::runtime_error(message), code(exitCode) {}

  Exit code;
};

}  // namespace orif::tool

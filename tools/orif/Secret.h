// Passwords and tokens, which come from files and never from a command line.
#pragma once

#include <string>

namespace orif::tool {

/// The first line of a file with a secret. Throws a std::runtime_error that names the file.
std::string Secret(const std::string& file);

}  // namespace orif::tool

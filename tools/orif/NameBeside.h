// Names for files that are put in the place of another one once they are finished.
#pragma once

#include <filesystem>

namespace orif::tool {

/// A name in the folder of `path` that nobody can foresee.
std::filesystem::path NameBeside(const std::filesystem::path& path);

}  // namespace orif::tool

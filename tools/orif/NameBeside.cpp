#include "tools/orif/NameBeside.h"

#include <random>
#include <string>

namespace orif::tool {

std::filesystem::path NameBeside(const std::filesystem::path& path) {
  std::random_device random;
  return path.parent_path() /
         (".orif-" + std::to_string(random()) + '-' + std::to_string(random()) + ".part");
}

}  // namespace orif::tool

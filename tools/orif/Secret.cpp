#include "tools/orif/Secret.h"

#include <fstream>
#include <stdexcept>

namespace orif::tool {

std::string Secret(const std::string& file) {
  std::ifstream in(file);
  std::string line;
  if (!std::getline(in, line)) throw std::runtime_error(file + " cannot be read, or is empty");
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace orif::tool

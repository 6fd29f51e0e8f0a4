#include "tools/orif/Nearest.h"

#include <algorithm>

#include "spelling/EditDistance.h"
#include "spelling/UpperCase.h"

namespace orif::tool {

std::string Nearest(std::string_view word, std::span<const std::string> names) {
  const std::string wanted = spelling::UpperCase(word);
  return *std::ranges::min_element(names, {}, [&](const std::string& name) {
    return spelling::EditDistance(wanted, spelling::UpperCase(name));
  });
}

std::string AnyOf(std::span<const std::string> names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

}  // namespace orif::tool

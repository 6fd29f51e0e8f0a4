#include "tools/orif/terminal/Tell.h"

#include <iostream>

#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {

void Tell(std::string_view line) {
  std::cout.flush();
  std::cerr << Printable(line) << std::endl;
}

void PrintCsv(std::string_view line) {
  constexpr std::string_view LineEnd = "\r\n";
  if (!platform::IsTerminal(platform::Stream::Output)) {
    std::cout << line;
  } else {
    std::cout << Printable(line.substr(0, line.size() - LineEnd.size())) << LineEnd;
  }
}

}  // namespace orif::tool

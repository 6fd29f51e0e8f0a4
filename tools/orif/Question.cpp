#include "tools/orif/Question.h"

#include <iostream>

#include "spelling/UpperCase.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {

void CheckSomebodyAnswers(const std::string& what) {
  if (platform::IsTerminal(platform::Stream::Input)) return;
  throw Error(Exit::Usage, "nobody to ask: standard input is no terminal; add --yes to " + what +
                               " without a question");
}

bool Confirmed(const std::string& question) {
  std::cout << Printable(question) << " [y/N] " << std::flush;
  std::string answer;
  std::getline(std::cin, answer);
  return spelling::UpperCase(answer) == "Y" || spelling::UpperCase(answer) == "YES";
}

}  // namespace orif::tool

// Leaves lines in the log file, if there is one, and tells on standard output what the trail says.
// With an argument, a command that runs between the lines.
#include <cstdio>
#include <cstdlib>

#include "orif/orif.h"

namespace {
const orif::DispatchFactory NoLowerCore = [] { return std::shared_ptr<orif::Dispatch>(); };
orif::Core early(NoLowerCore);  // before main, and maybe before the library's own start
}  // namespace

int main(int argc, char** argv) {
  early.AddUserMessage("before");
  if (argc > 1 && std::system(argv[1]) != 0) return 1;
  early.AddUserMessage("after");
  std::puts(early.DebugMessage().c_str());
}

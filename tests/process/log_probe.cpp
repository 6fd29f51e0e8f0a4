// Leaves lines in the log file, if there is one, and tells on standard output what the trail says.
// With an argument, a command that runs between the lines; with a second one, a number of threads
// that write there too.
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "orif/orif.h"

namespace {
const orif::DispatchFactory NoLowerCore = [] { return std::shared_ptr<orif::Dispatch>(); };
orif::Core early(NoLowerCore);  // before main, and maybe before the library's own start
}  // namespace

int main(int argc, char** argv) {
  early.AddUserMessage("before");
  if (argc > 1 && std::system(argv[1]) != 0) return 1;
  std::vector<std::thread> threads;
  for (int i = argc > 2 ? std::atoi(argv[2]) : 0; i > 0; --i) {
    threads.emplace_back([] {
      const orif::Core core(NoLowerCore);
      for (int line = 0; line < 200; ++line) core.AddUserMessage("on and on and on");
    });
  }
  for (std::thread& thread : threads) thread.join();
  early.AddUserMessage("after");
  std::puts(early.DebugMessage().c_str());
}

// Lines that are written while a thread ends.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "orif/orif.h"
#include "simulator/Network.h"
#include "tests/threads/Together.h"

namespace orif::test {

inline const DispatchFactory LowerCore = sim::Network().Factory();

/// Writes lines when it ends. Each is dropped, or else it is the thread's last message.
struct Late {
  ~Late() {
    core.AddUserMessage("late");
    const std::string last = core.DebugMessage();
    const std::string id = "] ID=" + std::to_string(core.ObjectID()) + ", ";
    if (last.empty() || last.find(id) != last.npos) return;
    std::fprintf(stderr, "not this thread's: %s\n", last.c_str());
    std::abort();  // no test may be running any more
  }

  Core core{LowerCore};
};

/// Runs `work` on many threads, which end while others write lines.
template <class Work>
void EndThreads(const Work& work) {
  Together([&](int number) {
    Core core(LowerCore);
    for (int i = 0; i < 25; ++i) {
      std::jthread([&] { work(); });
      const std::string words = std::to_string(1000 * number + i);
      core.AddUserMessage(words);
      EXPECT_TRUE(core.DebugMessage().ends_with(", " + words));
    }
  });
}

}  // namespace orif::test

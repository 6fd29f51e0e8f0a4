// The trail with many threads: whose lines it keeps, while whose DebugLog is on, and what becomes
// of lines that a thread writes at its end.
#include <pthread.h>

#include <regex>

#include "tests/threads/Late.h"

namespace orif::test {
namespace {

// Ends in the last of several rounds in which the system ends what was left to a thread. In one of
// them it ends what the library keeps for the thread, so lines are written before that and after
// it.
struct LeftToThread {
  static void End(void* object) {
    auto* const left = static_cast<LeftToThread*>(object);
    const Late late;
    if (--left->rounds > 0) {
      pthread_setspecific(left->key, left);
    } else {
      delete left;
    }
  }

  pthread_key_t key;
  int rounds = 3;
  Late late = {};
};

TEST(Trail, TakesOrDropsWhatIsWrittenAtTheVeryEndOfAThread) {
  static const Late atExit;
  pthread_key_t key{};
  ASSERT_EQ(pthread_key_create(&key, &LeftToThread::End), 0);
  EndThreads([&] {
    auto* const left = new LeftToThread{.key = key};
    ASSERT_EQ(pthread_setspecific(key, left), 0);
    left->late.core.DebugLog(true);
  });
}

TEST(Trail, IsKeptWhileTheLastDebugLogOfAnyThreadIsOn) {
  Core here(LowerCore);
  Core there(LowerCore);
  const auto put = [&](bool value) { std::jthread([&, value] { there.DebugLog(value); }); };
  here.AddUserMessage("no");
  put(true);
  here.AddUserMessage("1");
  put(false);
  here.AddUserMessage("no");
  Core traced(LowerCore);
  traced.DebugLog(true);
  put(false);
  EXPECT_TRUE(traced.DebugLog());
  here.AddUserMessage("no");
  Together([](int number) {
    Core core(LowerCore);
    for (int i = 0; i < 500; ++i) core.DebugLog((number + i) % 2 == 0);
  });
  put(true);
  here.AddUserMessage("2");
  here.AddUserMessage("3");
  const std::regex stamp(R"(\d\d:\d\d:\d\d \d+ \[Core.AddUserMessage\] ID=1, )");
  EXPECT_EQ(std::regex_replace(here.GetDebugMessages(), stamp, ""), "12\r\n3\r\n");
}

}  // namespace
}  // namespace orif::test

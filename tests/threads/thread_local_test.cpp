// Objects with thread storage that write lines when their thread ends. Not for Windows: there the
// cross compiler's library frees such objects before it destroys them.
#include "tests/threads/Late.h"

namespace orif::test {
namespace {

void UseThreadLocals() {
  thread_local Late early;
  early.core.ObjectID();  // made here, before the thread's first line
  early.core.DebugLog(true);
  thread_local Late later;
  later.core.DebugLog(true);
}

TEST(Trail, TakesOrDropsWhatAThreadsObjectsWriteAtTheirEnd) {
  UseThreadLocals();  // which end with the program
  EndThreads(UseThreadLocals);
}

}  // namespace
}  // namespace orif::test

// Threads that begin at once, for tests of what may happen at once.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace orif::test {

constexpr int Threads = 8;

/// Where threads wait until all have come. Not std::latch: in the cross compiler's library that may
/// not wake them.
class Gate {
 public:
  void Pass() {
    std::unique_lock lock(mutex_);
    if (--missing_ == 0) all_.notify_all();
    all_.wait(lock, [this] { return missing_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable all_;
  int missing_ = Threads;
};

/// Runs `work` with the numbers from 0 on, each on a thread of its own, all beginning at once, and
/// waits for them.
template <class Work>
void Together(const Work& work) {
  Gate start;
  std::vector<std::jthread> threads;
  for (int i = 0; i < Threads; ++i) {
    threads.emplace_back([&, i] {
      start.Pass();
      work(i);
    });
  }
}

}  // namespace orif::test

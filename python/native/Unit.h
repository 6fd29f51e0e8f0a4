// The unit that a Core, its tables and their items are. One thread at a time uses it: objects of
// Python share a Unit, and their members hold its lock.
#pragma once

#include <pybind11/pybind11.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace orif::python {

/// Every function is called with the interpreter's lock, unless it says something else.
class Unit {
 public:
  /// Waits for the lock, without the interpreter's while another thread has it. A signal (Ctrl-C)
  /// ends the wait. False with an exception set if there was one.
  bool Lock();

  /// Takes the lock if nobody has it.
  bool TryLock() { return mutex_.try_lock(); }

  /// Gives the lock back, and releases what was given up meanwhile. With or without the
  /// interpreter's lock.
  void Unlock();

  /// Releases an object of the library, now or when the thread that uses the unit has finished.
  /// `mayWait` says that it is better done without the interpreter's lock.
  void Release(std::shared_ptr<void> object, bool mayWait);

  /// The object of Python that stands for an object of the library, borrowed, or null.
  PyObject* Find(const void* object) const;
  void Remember(const void* object, PyObject* standsForIt) { objects_[object] = standsForIt; }
  void Forget(const void* object) { objects_.erase(object); }

 private:
  void ReleaseGivenUp();

  std::timed_mutex mutex_;
  std::unordered_map<const void*, PyObject*> objects_;

  std::mutex givenUpMutex_;
  std::vector<std::shared_ptr<void>> givenUp_;
  std::atomic<bool> anyGivenUp_ = false;
};

}  // namespace orif::python

#include "python/native/Unit.h"

#include <utility>

#include "python/native/Interpreter.h"

namespace orif::python {

bool Unit::Lock() { return LockWithoutInterpreter(mutex_); }

// Whoever gives an object up tries the lock afterwards, and whoever unlocks looks for given up
// objects afterwards, so one of them sees it.
void Unit::Unlock() {
  mutex_.unlock();
  while (anyGivenUp_ && mutex_.try_lock()) {
    ReleaseGivenUp();
    mutex_.unlock();
  }
}

void Unit::ReleaseGivenUp() {
  std::vector<std::shared_ptr<void>> objects;
  const std::lock_guard lock(givenUpMutex_);
  anyGivenUp_ = false;
  objects.swap(givenUp_);
}

void Unit::Release(std::shared_ptr<void> object, bool mayWait) {
  {
    const std::lock_guard lock(givenUpMutex_);
    givenUp_.push_back(std::move(object));
    anyGivenUp_ = true;
  }
  if (!mutex_.try_lock()) return;
  PyThreadState* const state = mayWait ? ReleaseInterpreter() : nullptr;
  Unlock();
  if (mayWait) TakeInterpreter(state);
}

PyObject* Unit::Find(const void* object) const {
  const auto found = objects_.find(object);
  return found == objects_.end() ? nullptr : found->second;
}

}  // namespace orif::python

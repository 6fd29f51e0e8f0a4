// A counted reference for objects whose owner may release them during a call: the lower core object
// while it is called, tables and items while one of their members runs. Such a call may run code of
// the host. The count is not atomic, which keeps a value read fast: only one thread at a time uses
// the references to an object.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

namespace orif {

/// The base class of objects that a Ref can refer to.
class Counted {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

 protected:
  Counted() = default;
  ~Counted() = default;

 private:
  template <class T>
  friend class Ref;
  mutable std::int32_t references_ = 0;
};

/// A reference to a `T`, or to nothing. The last one deletes the object.
template <class T>
class Ref {
 public:
  constexpr Ref() = default;
  explicit Ref(T* object) noexcept : object_(object) {
    if (object_ != nullptr) ++object_->references_;
  }
  Ref(const Ref& other) noexcept : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(const Ref& other) noexcept {
    *this = Ref(other);
    return *this;
  }
  Ref& operator=(Ref&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  // NOLINTBEGIN(clang-analyzer-cplusplus.NewDelete): the analyzer cannot follow the count
  constexpr ~Ref() {
    if (object_ != nullptr && --object_->references_ == 0) delete object_;
  }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  // NOLINTEND(clang-analyzer-cplusplus.NewDelete)
  explicit operator bool() const { return object_ != nullptr; }

 private:
  T* object_ = nullptr;
};

/// A new object as clients hold it. All their shared pointers together count as one Ref, so an
/// object whose member is running outlives them.
template <class T, class... Arguments>
std::shared_ptr<T> MakeShared(Arguments&&... arguments) {
  auto* const object = new T(std::forward<Arguments>(arguments)...);
  return std::shared_ptr<T>(object, [held = Ref<T>(object)](T*) mutable { held = {}; });
}

}  // namespace orif

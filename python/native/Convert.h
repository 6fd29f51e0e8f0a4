// Values on their way between Python and the library.
#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orif/base/ArrayView.h"
#include "orif/base/Variant.h"
#include "orif/items/DataType.h"
#include "python/native/Interpreter.h"

namespace orif::python {

/// True or False, or NumPy's kind of it, which is no subclass; nothing for any other object.
std::optional<bool> BoolOf(PyObject* object);

// From Python. They return false with an exception set for an object of another type (TypeError)
// and for a number that does not fit (OverflowError).
bool FromPython(PyObject* object, std::int16_t& value);
bool FromPython(PyObject* object, std::int32_t& value);
bool FromPython(PyObject* object, ORIF_DATA_TYPE& value);
bool FromPython(PyObject* object, float& value);
/// True, False, an integer or NumPy's kind of a bool.
bool FromPython(PyObject* object, bool& value);
bool FromPython(PyObject* object, std::string& value);
/// An integer of more than 32 bits becomes a real.
bool FromPython(PyObject* object, Variant& value);

// To Python. They return a new reference, or null with an exception set.
inline PyObject* NewObject(bool value) { return PyBool_FromLong(value ? 1 : 0); }
inline PyObject* NewObject(std::int16_t value) { return PyLong_FromLong(value); }
inline PyObject* NewObject(std::int32_t value) { return PyLong_FromLong(value); }
inline PyObject* NewObject(float value) { return PyFloat_FromDouble(value); }
inline PyObject* NewObject(const std::string& value) { return NewText(value); }
PyObject* NewObject(const Variant& value);

/// What the elements of an array are: a character of a buffer's format and its width.
template <class T>
struct ElementKind;
template <>
struct ElementKind<std::int16_t> {
  static constexpr bool IsReal = false;
  static constexpr const char* Name = "int16";
};
template <>
struct ElementKind<std::int32_t> {
  static constexpr bool IsReal = false;
  static constexpr const char* Name = "int32";
};
template <>
struct ElementKind<float> {
  static constexpr bool IsReal = true;
  static constexpr const char* Name = "float32";
};

/// A buffer of an object of Python, as long as this lives.
class Buffer {
 public:
  Buffer() = default;
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() { Close(); }

  /// Whether a single element without a dimension will do as well as a row of them.
  enum Shape : bool { IsRow, MayBeSingle };

  /// False with a TypeError set if the object has none, or one of another shape.
  bool Open(PyObject* object, Shape shape = IsRow);
  void Close();

  bool IsOpen() const { return view_.obj != nullptr; }
  bool IsReadOnly() const { return view_.readonly != 0; }
  bool IsSingle() const { return view_.ndim == 0; }
  std::size_t Count() const { return static_cast<std::size_t>(view_.shape[0]); }
  std::byte* At(std::size_t place) const;

  /// Whether the elements are `T`s.
  template <class T>
  bool Holds() const {
    return HoldsElements(ElementKind<T>::IsReal, sizeof(T));
  }
  /// Whether they lie side by side, where a `T` may lie.
  template <class T>
  bool IsPlain() const {
    return Stride() == sizeof(T) && reinterpret_cast<std::uintptr_t>(view_.buf) % alignof(T) == 0;
  }
  /// What the elements are, for people.
  std::string ElementName() const;

 private:
  bool HoldsElements(bool real, std::size_t size) const;
  // From one element to the next. Arrays of ctypes say nothing of it.
  Py_ssize_t Stride() const { return view_.strides != nullptr ? view_.strides[0] : view_.itemsize; }

  Py_buffer view_{};
};

/// The elements of an array that Python gives: those of a buffer in place where they lie side by
/// side, or copies.
template <class T>
class Elements {
 public:
  /// Any sequence of numbers.
  bool TakeToRead(PyObject* given);
  /// A writable buffer of `T`s, or a list of numbers.
  bool TakeToFill(PyObject* given);
  /// Puts copies back that the member changed. False with an exception set.
  bool GiveBack();

  ArrayView<T> View() const { return {first_, 0, count_ - 1}; }

 private:
  bool UseBuffer();
  bool UseSequence(PyObject* given);
  bool UseCopies();

  Buffer buffer_;
  PyObject* list_ = nullptr;  // borrowed for the call
  std::vector<T> copies_;
  std::vector<T> before_;
  T* first_ = nullptr;
  std::int32_t count_ = 0;
};

extern template class Elements<std::int16_t>;
extern template class Elements<std::int32_t>;
extern template class Elements<float>;

}  // namespace orif::python

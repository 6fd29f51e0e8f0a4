#include "python/native/Convert.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace orif::python {
namespace {

bool Refuse(PyObject* exception, const char* format, auto... arguments) {
  PyErr_Format(exception, format, arguments...);
  return false;
}

// The type's name without its module.
const char* TypeName(PyObject* object) { return Py_TYPE(object)->tp_name; }

template <class T>
bool IntegerFromPython(PyObject* object, T& value) {
  if (const auto bit = BoolOf(object)) {
    value = *bit ? 1 : 0;
    return true;
  }
  int overflow = 0;
  long number = 0;
  if (PyLong_Check(object)) {
    number = PyLong_AsLongAndOverflow(object, &overflow);
  } else if (PyIndex_Check(object) != 0) {
    PyObject* const index = PyNumber_Index(object);
    if (index == nullptr) return false;
    number = PyLong_AsLongAndOverflow(index, &overflow);
    Py_DECREF(index);
  } else {
    return Refuse(PyExc_TypeError, "must be int, not %.100s", TypeName(object));
  }
  if (overflow != 0 || number < std::numeric_limits<T>::min() ||
      number > std::numeric_limits<T>::max()) {
    return Refuse(PyExc_OverflowError, "does not fit %d bits", static_cast<int>(8 * sizeof(T)));
  }
  value = static_cast<T>(number);
  return true;
}

// A float, an int, or what converts to one.
bool RealFromPython(PyObject* object, double& value) {
  value = PyFloat_AsDouble(object);
  if (value != -1.0 || PyErr_Occurred() == nullptr) return true;
  if (PyErr_ExceptionMatches(PyExc_TypeError) != 0) {
    PyErr_Clear();
    return Refuse(PyExc_TypeError, "must be a number, not %.100s", TypeName(object));
  }
  return false;
}

// Bit by bit: two reals that are no numbers may be the same.
template <class T>
bool AreSame(T one, T other) {
  using Bits = std::array<std::byte, sizeof(T)>;
  return std::bit_cast<Bits>(one) == std::bit_cast<Bits>(other);
}

}  // namespace

std::optional<bool> BoolOf(PyObject* object) {
  const std::string_view type = TypeName(object);
  if (!PyBool_Check(object) && type != "numpy.bool_" && type != "numpy.bool") return {};
  return PyObject_IsTrue(object) == 1;
}

bool FromPython(PyObject* object, std::int16_t& value) { return IntegerFromPython(object, value); }
bool FromPython(PyObject* object, std::int32_t& value) { return IntegerFromPython(object, value); }

bool FromPython(PyObject* object, ORIF_DATA_TYPE& value) {
  std::int32_t number = 0;
  if (!FromPython(object, number)) return false;
  value = static_cast<ORIF_DATA_TYPE>(number);
  return true;
}

bool FromPython(PyObject* object, float& value) {
  double number = 0;
  if (!RealFromPython(object, number)) return false;
  value = static_cast<float>(number);
  if (std::isinf(value) && !std::isinf(number)) {
    return Refuse(PyExc_OverflowError, "does not fit a 32-bit real");
  }
  return true;
}

bool FromPython(PyObject* object, bool& value) {
  std::int32_t number = 0;
  if (!FromPython(object, number)) return false;
  value = number != 0;
  return true;
}

bool FromPython(PyObject* object, std::string& value) {
  std::optional<std::string> text = TextOf(object);
  if (!text) return false;
  value = *std::move(text);
  return true;
}

bool FromPython(PyObject* object, Variant& value) {
  if (const auto bit = BoolOf(object)) {
    value = *bit;
    return true;
  }
  if (PyUnicode_Check(object) || PyBytes_Check(object)) {
    std::string text;
    if (!FromPython(object, text)) return false;
    value = std::move(text);
    return true;
  }
  if (PyLong_Check(object) || (!PyFloat_Check(object) && PyIndex_Check(object) != 0)) {
    std::int32_t number = 0;
    if (FromPython(object, number)) {
      value = number;
      return true;
    }
    // A NumPy array of one real has an __index__ that raises.
    if (PyErr_ExceptionMatches(PyExc_OverflowError) == 0 &&
        PyErr_ExceptionMatches(PyExc_TypeError) == 0) {
      return false;
    }
    PyErr_Clear();
  }
  double number = 0;
  if (!RealFromPython(object, number)) return false;
  value = number;
  return true;
}

PyObject* NewObject(const Variant& value) {
  if (value.Is<float>()) return NewObject(value.ToFloat());
  if (value.Is<std::int32_t>() || value.Is<std::int16_t>()) return NewObject(value.ToInt32());
  if (value.Is<std::string>()) return NewText(value.ToText());
  if (value.Is<bool>()) return NewObject(value.ToBoolean());
  if (value.Is<double>()) return PyFloat_FromDouble(value.ToDouble());
  Py_RETURN_NONE;
}

bool Buffer::Open(PyObject* object, Shape shape) {
  if (PyObject_GetBuffer(object, &view_, PyBUF_FORMAT | PyBUF_STRIDES) != 0) {
    // Whatever an object has against it, it is not what the argument has to be.
    if (PyErr_ExceptionMatches(PyExc_BufferError) != 0 ||
        PyErr_ExceptionMatches(PyExc_ValueError) != 0) {
      PyObject *type = nullptr, *said = nullptr, *trace = nullptr;
      PyErr_Fetch(&type, &said, &trace);
      PyErr_Format(PyExc_TypeError, "%S", said);
      Py_XDECREF(type);
      Py_XDECREF(said);
      Py_XDECREF(trace);
    }
    return false;
  }
  if (view_.ndim == 1 || (view_.ndim == 0 && shape == MayBeSingle)) return true;
  const int dimensions = view_.ndim;
  Close();
  return Refuse(PyExc_TypeError, "must have one dimension, not %d", dimensions);
}

void Buffer::Close() {
  if (IsOpen()) PyBuffer_Release(&view_);
}

std::byte* Buffer::At(std::size_t place) const {
  auto* const first = static_cast<std::byte*>(view_.buf);
  return place == 0 ? first : first + static_cast<Py_ssize_t>(place) * Stride();
}

bool Buffer::HoldsElements(bool real, std::size_t size) const {
  const char* format = view_.format;
  if (format == nullptr || static_cast<std::size_t>(view_.itemsize) != size) return false;
  constexpr char Native = std::endian::native == std::endian::little ? '<' : '>';
  if (*format == '@' || *format == '=' || *format == Native) ++format;
  return *format != '\0' && std::strchr(real ? "f" : "hilq", *format) != nullptr &&
         format[1] == '\0';
}

std::string Buffer::ElementName() const {
  if (HoldsElements(false, 2)) return "int16";
  if (HoldsElements(false, 4)) return "int32";
  if (HoldsElements(false, 8)) return "int64";
  if (HoldsElements(true, 4)) return "float32";
  if (view_.format != nullptr && std::strcmp(view_.format, "d") == 0) return "float64";
  return std::string("elements of format '") + (view_.format == nullptr ? "B" : view_.format) + "'";
}

template <class T>
bool Elements<T>::UseBuffer() {
  if (buffer_.Count() > std::numeric_limits<std::int32_t>::max()) {
    return Refuse(PyExc_OverflowError, "has more elements than fit 32 bits");
  }
  if (buffer_.IsPlain<T>()) {
    first_ = reinterpret_cast<T*>(buffer_.At(0));
    count_ = static_cast<std::int32_t>(buffer_.Count());
    return true;
  }
  copies_.resize(buffer_.Count());
  for (std::size_t i = 0; i < copies_.size(); ++i) {
    std::memcpy(&copies_[i], buffer_.At(i), sizeof(T));
  }
  return UseCopies();
}

template <class T>
bool Elements<T>::UseSequence(PyObject* given) {
  if (PySequence_Check(given) == 0 || PyUnicode_Check(given)) {
    return Refuse(PyExc_TypeError, "must be a sequence of numbers, not %.100s", TypeName(given));
  }
  PyObject* const sequence = PySequence_Fast(given, "must be a sequence of numbers");
  if (sequence == nullptr) return false;
  bool converted = true;
  // Converting an element may run code that changes a list.
  for (Py_ssize_t i = 0; converted && i < PySequence_Fast_GET_SIZE(sequence); ++i) {
    PyObject* const element = PySequence_Fast_GET_ITEM(sequence, i);
    Py_INCREF(element);
    T value{};
    converted = FromPython(element, value);
    Py_DECREF(element);
    if (converted) copies_.push_back(value);
  }
  Py_DECREF(sequence);
  return converted && UseCopies();
}

template <class T>
bool Elements<T>::UseCopies() {
  if (copies_.size() > std::numeric_limits<std::int32_t>::max()) {
    return Refuse(PyExc_OverflowError, "has more elements than fit 32 bits");
  }
  first_ = copies_.data();
  count_ = static_cast<std::int32_t>(copies_.size());
  return true;
}

template <class T>
bool Elements<T>::TakeToRead(PyObject* given) {
  if (PyObject_CheckBuffer(given) != 0) {
    if (!buffer_.Open(given)) return false;
    if (buffer_.Holds<T>()) return UseBuffer();
    buffer_.Close();
  }
  return UseSequence(given);
}

template <class T>
bool Elements<T>::TakeToFill(PyObject* given) {
  if (PyObject_CheckBuffer(given) != 0) {
    if (!buffer_.Open(given)) return false;
    if (!buffer_.Holds<T>()) {
      return Refuse(PyExc_TypeError, "must hold %s, not %s", ElementKind<T>::Name,
                    buffer_.ElementName().c_str());
    }
    if (buffer_.IsReadOnly()) return Refuse(PyExc_TypeError, "must be writable");
    if (!UseBuffer()) return false;
  } else if (PyList_Check(given)) {
    if (!UseSequence(given)) return false;
    list_ = given;
  } else {
    return Refuse(PyExc_TypeError, "must be a writable buffer of %s or a list, not %.100s",
                  ElementKind<T>::Name, TypeName(given));
  }
  before_ = copies_;
  return true;
}

// Elements that stayed as they were are not touched: they may be more exact than a copy, or another
// thread's by now.
template <class T>
bool Elements<T>::GiveBack() {
  for (std::size_t i = 0; i < before_.size(); ++i) {
    if (AreSame(copies_[i], before_[i])) continue;
    if (list_ == nullptr) {
      std::memcpy(buffer_.At(i), &copies_[i], sizeof(T));
      continue;
    }
    if (static_cast<Py_ssize_t>(i) >= PyList_GET_SIZE(list_)) {
      return Refuse(PyExc_TypeError, "a list was shortened during the call");
    }
    PyObject* const value = NewObject(copies_[i]);
    if (value == nullptr) return false;
    // Takes over the reference.
    if (PyList_SetItem(list_, static_cast<Py_ssize_t>(i), value) != 0) return false;
  }
  return true;
}

template class Elements<std::int16_t>;
template class Elements<std::int32_t>;
template class Elements<float>;

}  // namespace orif::python

#include "python/native/Interpreter.h"

#include <cxxabi.h>

#include <chrono>
#include <thread>

namespace orif::python {

void TakeInterpreter(PyThreadState* state) {
  try {
    PyEval_RestoreThread(state);
  } catch (const abi::__forced_unwind&) {
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
  }
}

PyObject* NewText(std::string_view text) {
  return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
}

pybind11::str ToPython(std::string_view text) {
  PyObject* const made = NewText(text);
  if (made == nullptr) throw pybind11::error_already_set();
  return pybind11::reinterpret_steal<pybind11::str>(made);
}

std::optional<std::string> TextOf(PyObject* object) {
  if (PyBytes_Check(object)) {
    return std::string(PyBytes_AS_STRING(object),
                       static_cast<std::size_t>(PyBytes_GET_SIZE(object)));
  }
  if (!PyUnicode_Check(object)) {
    PyErr_Format(PyExc_TypeError, "must be str, not %.100s", Py_TYPE(object)->tp_name);
    return std::nullopt;
  }
  Py_ssize_t size = 0;
  if (const char* const bytes = PyUnicode_AsUTF8AndSize(object, &size)) {
    return std::string(bytes, static_cast<std::size_t>(size));
  }
  PyErr_Clear();
  PyObject* const encoded = PyUnicode_AsEncodedString(object, "utf-8", "surrogateescape");
  if (encoded == nullptr) return std::nullopt;
  std::optional<std::string> text = TextOf(encoded);
  Py_DECREF(encoded);
  return text;
}

}  // namespace orif::python

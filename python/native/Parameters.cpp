#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

#include "python/native/Member.h"

namespace orif::python {
namespace {

bool IsNamed(PyObject* keyword, PyObject* name) {
  return keyword == name || PyUnicode_Compare(keyword, name) == 0;
}

}  // namespace

void Parameters::Read(const Description& described, std::size_t expected) {
  member_ = described.member;
  std::string_view rest = described.parameters;
  while (!rest.empty()) {
    const std::string_view one = rest.substr(0, rest.find(", "));
    rest.remove_prefix(std::min(rest.size(), one.size() + 2));
    const std::string_view name = one.substr(0, one.find('='));
    if (name.size() == one.size()) required_ = count_ + 1;
    names_.at(count_++) =
        PyUnicode_InternFromString(std::string(name).c_str());  // lives as long as the module
  }
  if (count_ != expected) {
    throw std::logic_error(std::string(described.className) + "." + member_ + " takes " +
                           std::to_string(expected) + " arguments, not " + described.parameters);
  }
}

bool Parameters::Arrange(PyObject* const* arguments, Py_ssize_t positional, PyObject* keywords,
                         PyObject** places) const {
  const auto given = static_cast<std::size_t>(positional);
  if (given > count_) {
    PyErr_Format(PyExc_TypeError, "%s() takes %zu argument%s, not %zu", member_, count_,
                 count_ == 1 ? "" : "s", given);
    return false;
  }
  std::copy_n(arguments, given, places);
  if (keywords != nullptr && !ArrangeKeywords(arguments, positional, keywords, places)) {
    return false;
  }
  for (std::size_t i = given; i < required_; ++i) {
    if (places[i] == nullptr) {
      PyErr_Format(PyExc_TypeError, "%s() lacks the argument '%U'", member_, names_[i]);
      return false;
    }
  }
  return true;
}

bool Parameters::ArrangeKeywords(PyObject* const* arguments, Py_ssize_t positional,
                                 PyObject* keywords, PyObject** places) const {
  for (Py_ssize_t k = 0; k < PyTuple_GET_SIZE(keywords); ++k) {
    PyObject* const keyword = PyTuple_GET_ITEM(keywords, k);
    std::size_t place = 0;
    while (place < count_ && !IsNamed(keyword, names_[place])) ++place;
    if (place == count_) {
      PyErr_Format(PyExc_TypeError, "%s() has no argument '%U'", member_, keyword);
      return false;
    }
    if (places[place] != nullptr) {
      PyErr_Format(PyExc_TypeError, "%s() got the argument '%U' twice", member_, keyword);
      return false;
    }
    places[place] = arguments[positional + k];
  }
  return true;
}

void Parameters::Blame(std::size_t place) const {
  PyObject* type = nullptr;
  PyObject* value = nullptr;
  PyObject* trace = nullptr;
  PyErr_Fetch(&type, &value, &trace);
  if (type == PyExc_TypeError || type == PyExc_OverflowError) {
    PyErr_Format(type, "%s() argument '%U': %S", member_, names_[place], value);
    Py_XDECREF(type);
    Py_XDECREF(value);
    Py_XDECREF(trace);
  } else {
    PyErr_Restore(type, value, trace);
  }
}

}  // namespace orif::python

// The interpreter's lock, and text on its way to and from Python.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace orif::python {

/// Gives the interpreter's lock up. Every ReleaseInterpreter is followed by a TakeInterpreter with
/// its result on the same thread.
inline PyThreadState* ReleaseInterpreter() { return PyEval_SaveThread(); }

/// Takes the interpreter's lock back. If the interpreter has ended meanwhile, the thread sleeps
/// until the process ends: the interpreter would unwind it, through frames that are not made for
/// that. Not for destructors.
void TakeInterpreter(PyThreadState* state);

/// Runs `body`, which may wait, while other threads of Python run; it must not touch any object of
/// Python. Exceptions pass through.
template <class Body>
auto WithoutInterpreter(const Body& body) -> std::invoke_result_t<const Body&> {
  using Result = std::invoke_result_t<const Body&>;
  std::exception_ptr failure;
  const auto tried = [&](const auto& run) {
    try {
      run();
    } catch (...) {
      failure = std::current_exception();
    }
  };
  PyThreadState* const state = ReleaseInterpreter();
  if constexpr (std::is_void_v<Result>) {
    tried(body);
    TakeInterpreter(state);
    if (failure) std::rethrow_exception(failure);
  } else {
    std::optional<Result> result;
    tried([&] { result.emplace(body()); });
    TakeInterpreter(state);
    if (failure) std::rethrow_exception(failure);
    return *std::move(result);
  }
}

/// Locks `mutex`, a timed one. While another thread has it, it is waited for without the
/// interpreter's lock, and a signal (Ctrl-C) ends the wait: false then, with an exception set. So
/// does the end of the interpreter, after which a thread that sleeps may have the lock for good.
template <class Mutex>
bool LockWithoutInterpreter(Mutex& mutex) {
  constexpr std::chrono::milliseconds SignalsAreSeen{50};
  if (mutex.try_lock()) return true;
  while (!WithoutInterpreter([&] { return mutex.try_lock_for(SignalsAreSeen); })) {
    if (PyErr_CheckSignals() != 0) return false;
    if (_Py_IsFinalizing() != 0) {
      PyErr_SetString(PyExc_RuntimeError, "another thread uses this, and the interpreter ends");
      return false;
    }
  }
  return true;
}

/// Text of the library as Python's. It is read as UTF-8; bytes that are none become lone surrogates
/// ("surrogateescape"), so that every text comes back as it was. A new reference, or null with an
/// exception set.
PyObject* NewText(std::string_view text);

/// The same as an object; throws py::error_already_set.
pybind11::str ToPython(std::string_view text);

/// The bytes of a str, or of a bytes object as they are. Empty, with an exception set, for anything
/// else.
std::optional<std::string> TextOf(PyObject* object);

}  // namespace orif::python

// What the parts of the everyday level share: a controller as Python has it, the simulated cell
// behind it, and the failures that Python's exceptions are made of.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/Controller.h"
#include "python/native/Interpreter.h"
#include "simulator/Network.h"
#include "simulator/RealTime.h"
#include "tools/orif/Pacer.h"

namespace orif::python {

namespace py = pybind11;

using live::Milliseconds;

/// A simulated cell. Its time passes with the clock, or the owner lets it pass.
class SimulatedCell {
 public:
  SimulatedCell(sim::Network network, std::vector<std::string> hosts, bool realTime)
      : network_(std::move(network)), hosts_(std::move(hosts)) {
    if (realTime) realTime_.emplace(network_);
  }

  sim::Network& Network() { return network_; }
  std::vector<std::string>& Hosts() { return hosts_; }

  /// Lets as much time pass as has passed since the cell was made, if it does so by itself. On any
  /// thread.
  void Follow() {
    if (realTime_) realTime_->Follow();
  }

 private:
  sim::Network network_;
  std::vector<std::string> hosts_;
  std::optional<sim::RealTime> realTime_;
};

/// The lock of a controller, which is waited for without the interpreter. A signal ends
/// the wait. Its holder may take it again, since making objects of Python can run any code.
class CellLock {
 public:
  class Held {
   public:
    /// Throws py::error_already_set for a signal that raises.
    explicit Held(CellLock& lock);
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { lock_.mutex_.unlock(); }

   private:
    CellLock& lock_;
  };

 private:
  std::recursive_timed_mutex mutex_;
};

/// What items with several values are in Python.
struct Composite {
  const char* kind;                   ///< a class in orif._values
  std::string name;                   ///< of the item
  std::size_t size;                   ///< how many fields the object has
  std::vector<std::size_t> tags;      ///< of its fields
  std::vector<std::size_t> slots;     ///< where in the object each belongs
  std::optional<std::size_t> config;  ///< where in the object a configuration belongs
};

/// A live::Controller with its lock. All but `controller` never changes.
struct Cell {
  Cell(live::Settings settings, std::shared_ptr<SimulatedCell> simulation);
  Cell(const Cell&) = delete;
  Cell& operator=(const Cell&) = delete;
  ~Cell();

  /// The place that `name` has in `places`, or one under which it is known from now on. Throws a
  /// live::UsageError.
  Py_ssize_t Find(PyObject* name);

  void Follow() const {
    if (simulation != nullptr) simulation->Follow();
  }

  std::shared_ptr<SimulatedCell> simulation;
  std::unique_ptr<live::Controller> controller;
  CellLock lock;
  py::tuple names;                    // of all tags
  py::dict places;                    // of names: a tag's index, or -1 - that of a composite
  std::vector<Composite> composites;  // items with several values
};

/// The Cell of its object in Python. Throws a py::type_error if the constructor has not run.
Cell& CellOf(PyObject* self);

/// How long until the turn of a watch or a recording is due, in seconds.
double WaitFor(tool::Pacer& pacer);

/// The value of an object of Python that is written to `name`. Throws a live::UsageError for what
/// is none.
live::Value ToValue(const std::string& name, PyObject* object);

/// The value in Python. A new reference, or null with an exception set.
PyObject* NewValue(const live::Value& value);

/// Date and time in UTC; None for the epoch.
py::object ToPython(live::Time time);

/// A Reason of Python, for one of the library.
py::object ToPython(const live::Reason& reason);

/// The exception, not raised, that tells a reason: NotConnected, or Refused while the link is up.
py::object Failure(live::Link link, const live::Reason& reason);

/// The time in whole milliseconds; throws a live::UsageError unless it is at least 1 ms, and at
/// most the longest period.
Milliseconds PeriodOf(double seconds);

/// A class or function of the package's own Python modules.
py::object FromPackage(const char* module, const char* name);

/// Recordings.
void BindRecordings(py::module_& module);

/// For members: without it pybind11 would make up a Cell for an object whose constructor has not
/// run.
template <class Usual>
struct ConstructedCaster : Usual {
  bool load(py::handle source, bool convert) {
    if (py::isinstance<Cell>(source)) CellOf(source.ptr());
    return Usual::load(source, convert);
  }
};

}  // namespace orif::python

namespace pybind11::detail {

template <>
struct type_caster<orif::python::Cell>
    : orif::python::ConstructedCaster<type_caster_base<orif::python::Cell>> {};
template <>
struct type_caster<std::shared_ptr<orif::python::Cell>>
    : orif::python::ConstructedCaster<
          copyable_holder_caster<orif::python::Cell, std::shared_ptr<orif::python::Cell>>> {};

}  // namespace pybind11::detail

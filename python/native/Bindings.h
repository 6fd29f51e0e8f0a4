// What the native module is made of, and what its parts share.
#pragma once

#include <pybind11/pybind11.h>

#include "orif/lowerlayer/Dispatch.h"

namespace orif::python {

namespace py = pybind11;

/// The object model: Core, DataTable, the items and their kinds.
void BindModel(py::module_& module);

/// The everyday level: controllers, their tags and monitors.
void BindLive(py::module_& module);

/// Simulated cells.
void BindSimulation(py::module_& module);

/// What makes the lower core objects of a simulated cell; `simulation` is what Python programs give
/// for one: True for the demonstration cell. Throws a py::type_error for anything else.
DispatchFactory SimulationFactory(py::handle simulation);

}  // namespace orif::python

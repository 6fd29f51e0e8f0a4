#include "python/native/Bindings.h"
#include "simulator/Demo.h"

namespace orif::python {

void BindSimulation(py::module_& /*module*/) {}

DispatchFactory SimulationFactory(py::handle simulation) {
  if (simulation.ptr() == Py_True) return sim::DemoNetwork().Factory();
  throw py::type_error("simulation must be True");
}

}  // namespace orif::python

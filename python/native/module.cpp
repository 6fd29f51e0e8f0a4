// The native module of the Python package.
#include "orif/version.h"
#include "python/native/Bindings.h"

PYBIND11_MODULE(_native, module) {
  module.doc() = "The libraries behind the package orif.";
  module.attr("__version__") = orif::Version();
  orif::python::BindModel(module);
  orif::python::BindLive(module);
  orif::python::BindSimulation(module);
}

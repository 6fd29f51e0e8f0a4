#include "python/native/Bindings.h"

namespace orif::python {

void BindModel(py::module_& /*module*/) {}

}  // namespace orif::python

#include "python/native/Bindings.h"

namespace orif::python {

void BindLive(py::module_& /*module*/) {}

}  // namespace orif::python

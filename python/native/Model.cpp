// The classes of Python for the object model.
#include "python/native/Model.h"

#include <structmember.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "orif/lowerlayer/Component.h"
#include "python/native/Bindings.h"

namespace orif::python {
namespace {

struct NamedKind {
  const char* name;
  std::int32_t value;
};

#include "Members.inc"  // Descriptions and Kinds

// What lives as long as the module. The module stays loaded.
struct Made {
  std::string_view name;
  PyTypeObject* type;
  std::vector<std::string> texts;
  std::vector<PyMethodDef> methods;
  std::vector<PyGetSetDef> properties;
};
std::vector<std::unique_ptr<Made>>& MadeClasses() {
  static auto* const classes = new std::vector<std::unique_ptr<Made>>;
  return *classes;
}
std::vector<PyObject*>& KindObjects() {
  static auto* const objects = new std::vector<PyObject*>;
  return *objects;
}

PyTypeObject* TypeNamed(std::string_view name) {
  for (const auto& made : MadeClasses()) {
    if (made->name == name) return made->type;
  }
  throw std::logic_error("No class " + std::string(name));
}

template <class T>
PyObject* NewObject(PyTypeObject* type, std::shared_ptr<Unit> unit, std::shared_ptr<T> object) {
  PyObject* const made = type->tp_alloc(type, 0);
  if (made == nullptr) return nullptr;
  auto& fields = *reinterpret_cast<Object*>(made);
  new (&fields.unit) std::shared_ptr<Unit>(std::move(unit));
  new (&fields.object) std::shared_ptr<void>(std::move(object));
  fields.holdsConnection = std::is_same_v<T, Core> || std::is_same_v<T, Dispatch>;
  fields.unit->Remember(fields.object.get(), made);
  return made;
}

void Dealloc(PyObject* self) {
  auto& fields = *reinterpret_cast<Object*>(self);
  PyTypeObject* const type = Py_TYPE(self);
  fields.unit->Forget(fields.object.get());  // a callback of a weak reference may ask for it
  if (fields.weakReferences != nullptr) PyObject_ClearWeakRefs(self);
  fields.unit->Release(std::move(fields.object), fields.holdsConnection);
  fields.object.~shared_ptr();
  fields.unit.~shared_ptr();
  type->tp_free(self);
  Py_DECREF(type);
}

// Core(component=None, *, simulate=None)
PyObject* NewCore(PyTypeObject* type, PyObject* arguments, PyObject* keywords) try {
  static const char* names[] = {"component", "simulate", nullptr};
  PyObject* component = Py_None;
  PyObject* simulation = Py_None;
  if (PyArg_ParseTupleAndKeywords(arguments, keywords, "|O$O:Core", const_cast<char**>(names),
                                  &component, &simulation) == 0) {
    return nullptr;
  }
  if (simulation == Py_False) simulation = Py_None;
  if (component != Py_None && simulation != Py_None) {
    PyErr_SetString(PyExc_TypeError, "Core() takes a component or a simulation, not both");
    return nullptr;
  }
  DispatchFactory factory;
  if (component != Py_None) {
    std::optional<std::string> name = TextOf(component);
    if (!name) return nullptr;
    factory = [name = *std::move(name)] { return CreateComponentCore(name); };
  } else if (simulation != Py_None) {
    factory = SimulationFactory(simulation);
  }
  auto core = WithoutInterpreter(
      [&] { return factory ? std::make_shared<Core>(factory) : std::make_shared<Core>(); });
  return NewObject(type, std::make_shared<Unit>(), std::move(core));
} catch (py::error_already_set& error) {
  error.restore();
  return nullptr;
} catch (const py::builtin_exception& error) {
  error.set_error();
  return nullptr;
} catch (const std::exception& error) {
  PyErr_SetString(PyExc_RuntimeError, error.what());
  return nullptr;
}

constexpr const char* CoreText =
    "\n\nWithout arguments it uses the lower communication component that the environment "
    "variable\n"
    "ORVEX_COMMLIB names, else the installed one. `component` names another: the path of a shared\n"
    "object, or on Windows also a registered class. `simulate` is a simulated cell, or True for\n"
    "the demonstration cell, whose controller has the host name \"demo\".";

// What inspect reads the parameters from stands before the documentation.
std::string TextOfMethod(const Description& described) {
  const std::string_view parameters = described.parameters;
  return std::string(described.member) + "($self" + (parameters.empty() ? "" : ", ") +
         described.parameters + ")\n--\n\n" + described.text;
}

// An object's class says what its pointer points to, so it cannot be given another one.
#if PY_VERSION_HEX >= 0x030A0000
constexpr unsigned Flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_IMMUTABLETYPE;
#else
constexpr unsigned Flags = Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE;
#endif

void MakeClass(const ClassRow& row, py::module_& module) {
  const bool isCore = std::strcmp(row.name, "Core") == 0;
  auto made = std::make_unique<Made>();
  made->name = row.name;
  made->texts.reserve(row.members.size() + 2);
  const auto keep = [&](std::string text) {
    return made->texts.emplace_back(std::move(text)).c_str();
  };
  for (const MemberRow& member : row.members) {
    const Description& described = Describe(row.name, member.name);
    if (member.method != nullptr) {
      member.prepare(described);
      made->methods.push_back({member.name, member.method, METH_FASTCALL | METH_KEYWORDS,
                               keep(TextOfMethod(described))});
    } else {
      made->properties.push_back(
          {member.name, member.get, member.put, described.text, const_cast<char*>(member.name)});
    }
  }
  made->methods.push_back({});
  made->properties.push_back({});
  static PyMemberDef weakReferences[] = {
      {"__weaklistoffset__", T_PYSSIZET, offsetof(Object, weakReferences), READONLY, nullptr}, {}};
  std::string text = Describe(row.name, "").text;
  if (isCore) text = "Core(component=None, *, simulate=None)\n--\n\n" + text + CoreText;
  std::vector<PyType_Slot> slots{
      {Py_tp_doc, const_cast<char*>(keep(std::move(text)))},
      {Py_tp_methods, made->methods.data()},
      {Py_tp_getset, made->properties.data()},
      {Py_tp_members, weakReferences},
      {Py_tp_dealloc, reinterpret_cast<void*>(&Dealloc)},
      {Py_tp_repr, reinterpret_cast<void*>(row.repr)},
  };
  if (isCore) slots.push_back({Py_tp_new, reinterpret_cast<void*>(&NewCore)});
  slots.push_back({0, nullptr});
  PyType_Spec description{keep(std::string("orif.") + row.name), sizeof(Object), 0, Flags,
                          slots.data()};
  const py::object bases =
      row.base == nullptr ? py::object() : py::make_tuple(module.attr(row.base));
  PyObject* const type = PyType_FromSpecWithBases(&description, bases.ptr());
  if (type == nullptr) throw py::error_already_set();
  made->type = reinterpret_cast<PyTypeObject*>(type);
  // Only tables make tables' items, and only a Core makes tables.
  if (!isCore) made->type->tp_new = nullptr;
  module.add_object(row.name, type);
  MadeClasses().push_back(std::move(made));
}

void MakeKinds(py::module_& module) {
  py::dict names;
  for (const NamedKind& kind : Kinds) names[kind.name] = kind.value;
  const py::object made = py::module_::import("enum").attr("IntEnum")("ORIF_DATA_TYPE", names,
                                                                      py::arg("module") = "orif");
  made.attr("__doc__") = "The kinds of data, each with the members of DataTable that register it.";
  module.attr("ORIF_DATA_TYPE") = made;
  for (const NamedKind& kind : Kinds) {
    const py::object one = made.attr(kind.name);
    module.attr(kind.name) = one;
    KindObjects().push_back(one.inc_ref().ptr());
  }
}

template <class T>
PyObject* StandingFor(PyObject* self, const std::shared_ptr<T>& object, std::string_view type) {
  const std::shared_ptr<Unit>& unit = reinterpret_cast<Object*>(self)->unit;
  if (PyObject* const known = unit->Find(object.get())) {
    Py_INCREF(known);
    return known;
  }
  return NewObject(TypeNamed(type), unit, object);
}

}  // namespace

const Description& Describe(const char* className, const char* member) {
  for (const Description& one : Descriptions) {
    if (std::strcmp(one.className, className) == 0 && std::strcmp(one.member, member) == 0) {
      return one;
    }
  }
  throw std::logic_error(std::string("The headers have no ") + className + "." + member);
}

std::string KindName(ORIF_DATA_TYPE kind) {
  for (const NamedKind& one : Kinds) {
    if (one.value == kind) return one.name;
  }
  return std::to_string(kind);
}

PyObject* NewObject(ORIF_DATA_TYPE kind) {
  const auto place = static_cast<std::size_t>(kind);  // beyond the kinds if it is negative
  if (place >= KindObjects().size()) return PyLong_FromLong(kind);
  PyObject* const object = KindObjects()[place];
  Py_INCREF(object);
  return object;
}

PyObject* NewObject(PyObject* self, const std::shared_ptr<DataItem>& item) {
  if (item == nullptr) Py_RETURN_NONE;
  return StandingFor(self, item, item->GetTypeName());
}

PyObject* NewObject(PyObject* self, const std::shared_ptr<DataTable>& table) {
  if (table == nullptr) Py_RETURN_NONE;
  return StandingFor(self, table, "DataTable");
}

PyObject* NewObject(PyObject* self, const std::shared_ptr<Dispatch>& lower) {
  if (lower == nullptr) Py_RETURN_NONE;
  return StandingFor(self, lower, "LowerCore");
}

void BindModel(py::module_& module) {
  MakeKinds(module);
  for (const ClassRow& row : ModelClasses()) MakeClass(row, module);
}

}  // namespace orif::python

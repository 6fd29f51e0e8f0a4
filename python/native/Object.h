// The objects of Python that stand for those of the object model.
#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <type_traits>

#include "orif/orif.h"
#include "python/native/Convert.h"
#include "python/native/Unit.h"

namespace orif::python {

/// One object of Python: a Core, a table or an item, and the unit that it belongs to.
struct Object {
  // clang-format off
  PyObject_HEAD
      // clang-format on
      PyObject* weakReferences;
  std::shared_ptr<Unit> unit;
  std::shared_ptr<void> object;  // of the class of ItsPointer
  bool holdsConnection;          // the end of the object may wait for the controller
};

/// As what an Object keeps a pointer to a `T`.
template <class T>
using ItsPointer = std::conditional_t<std::is_base_of_v<DataItem, T>, DataItem, T>;

template <class T>
T& Target(PyObject* self) {
  void* const object = reinterpret_cast<Object*>(self)->object.get();
  return static_cast<T&>(*static_cast<ItsPointer<T>*>(object));
}

inline Unit& UnitOf(PyObject* self) { return *reinterpret_cast<Object*>(self)->unit; }

/// The object that stands for `object` of the unit of `self`: the same one as long as Python has
/// it. None for an empty pointer. A new reference, or null with an exception set.
PyObject* NewObject(PyObject* self, const std::shared_ptr<DataItem>& item);
PyObject* NewObject(PyObject* self, const std::shared_ptr<DataTable>& table);
PyObject* NewObject(PyObject* self, const std::shared_ptr<Dispatch>& lower);
PyObject* NewObject(ORIF_DATA_TYPE kind);

/// "NUMREG_INT"; the number of a kind that has no name.
std::string KindName(ORIF_DATA_TYPE kind);

/// What is known of a class's member, or with an empty name of the class: the parameters that
/// Python gives, and the documentation.
struct Description {
  const char* className;
  const char* member;
  const char* parameters;
  const char* text;
};
const Description& Describe(const char* className, const char* member);

}  // namespace orif::python

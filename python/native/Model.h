// The classes of the object model, each with the table of its members.
#pragma once

#include <span>

#include "python/native/Member.h"

namespace orif::python {

/// A class of Python for a class of the object model.
struct ClassRow {
  const char* name;
  const char* base;  // null for none
  std::span<const MemberRow> members;
  reprfunc repr;
};

/// The class of lower core objects.
ClassRow LowerCoreClass();

/// The classes, each behind its base class.
std::span<const ClassRow> ModelClasses();

}  // namespace orif::python

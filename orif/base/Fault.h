// A fault is what goes wrong inside a member: a number that does not fit, an index outside an
// array, a missing object, an error of the lower layer. It travels as an exception and ends in the
// guard of the public member, so a client never sees one; only its description reaches the debug
// trail.
#pragma once

#include <stdexcept>

#include "orif/orif_export.h"

namespace orif {

class ORIF_HEADER_TYPE Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  /// The descriptions of the library's own faults, in the platform's words.
  static constexpr const char* Overflow = "Overflow";
  static constexpr const char* OutOfMemory = "Out of memory";
  static constexpr const char* SubscriptOutOfRange = "Subscript out of range";
  static constexpr const char* DivisionByZero = "Division by zero";
  static constexpr const char* TypeMismatch = "Type mismatch";
  static constexpr const char* ObjectNotSet = "Object variable not set";
  static constexpr const char* AutomationError = "Automation error";
};

}  // namespace orif

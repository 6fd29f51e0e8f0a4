// Fault, the exception that ends a member.
#pragma once

#include <stdexcept>

#include "orif/orif_export.h"

namespace orif {

/// What goes wrong inside a member: a number that does not fit, an index outside an array, a
/// missing object, an error of the lower layer. The public member that it ends catches it and
/// returns its default, so a client never sees one from a Core, a table or an item; its description
/// goes to the debug trail. Variant and ArrayView throw it to their caller.
class ORIF_HEADER_TYPE Fault : public std::runtime_error {
 public:
  /// A fault with a description of its own.
  using std::runtime_error::runtime_error;

  /// A number that does not fit its type, such as an index above 32767 for the lower layer.
  static constexpr const char* Overflow = "Overflow";

  /// There was no memory.
  static constexpr const char* OutOfMemory = "Out of memory";

  /// An index outside an array, or an array shorter than the count that goes with it.
  static constexpr const char* SubscriptOutOfRange = "Subscript out of range";

  /// The system has no high-resolution counter to time a refresh with.
  static constexpr const char* DivisionByZero = "Division by zero";

  /// A value that cannot be converted to the type needed.
  static constexpr const char* TypeMismatch = "Type mismatch";

  /// There is no lower core object, or no table, to work with.
  static constexpr const char* ObjectNotSet = "Object variable not set";

  /// An error that came without a description.
  static constexpr const char* AutomationError = "Automation error";
};

}  // namespace orif

// The one place where exceptions end. Every public member runs its body in Guarded: whatever is
// thrown ends the body, and the result stands as the body left it at that moment.
#pragma once

#include <exception>
#include <new>
#include <type_traits>
#include <utility>

#include "orif/base/Fault.h"

namespace orif {

/// The description of the exception that is being handled; valid while it is.
inline const char* FaultDescription() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return Fault::OutOfMemory;
  } catch (const std::exception& fault) {
    const char* description = fault.what();
    return description == nullptr ? Fault::AutomationError : description;
  } catch (...) {
    return Fault::AutomationError;
  }
}

/// What a member does about a fault that has no line of its own.
struct SayNothing {
  void operator()(const char*) const noexcept {}
};

/// Runs `body` on `result`, which it may set at any step; a fault ends the body and its description
/// goes to `report`, which must not throw.
template <class Result, class Body, class Report = SayNothing>
Result Guarded(Result result, const Body& body,
               const Report& report = {}) noexcept requires std::is_invocable_v<Body, Result&> {
  try {
    body(result);
  } catch (...) {
    report(FaultDescription());
  }
  return result;
}

/// The same for a member without a result.
template <class Body, class Report = SayNothing>
void Guarded(const Body& body,
             const Report& report = {}) noexcept requires std::is_invocable_v<Body> {
  try {
    body();
  } catch (...) {
    report(FaultDescription());
  }
}

}  // namespace orif

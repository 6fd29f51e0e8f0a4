// The one place where exceptions end. Every public member runs its body in Guarded: whatever is
// thrown ends the body, and the member answers its default.
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

/// Runs `body` and answers what it answers; where a fault ends it, `preset`. The fault's
/// description goes to `report`, which must not throw.
template <class Result, class Body, class Report = SayNothing>
Result Guarded(Result preset, const Body& body,
               const Report& report = {}) noexcept requires std::is_invocable_r_v<Result, Body> {
  try {
    return body();
  } catch (...) {
    report(FaultDescription());
  }
  return preset;
}

/// The same for a body without an answer.
template <class Body, class Report = SayNothing>
void Guarded(const Body& body,
             const Report& report = {}) noexcept requires std::is_invocable_v<Body> {
  try {
    body();
  } catch (...) {
    report(FaultDescription());
  }
}

/// Runs `body`, which is given up without a word where there is no memory for it. Any other fault
/// goes on.
template <class Body>
void WhereMemoryLasts(const Body& body) {
  try {
    body();
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): nobody misses it
  }
}

}  // namespace orif

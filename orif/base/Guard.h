// The one place that catches exceptions. Every public member runs its body in Guarded: an exception
// ends the body, and the member returns its default.
#pragma once

#include <exception>
#include <new>
#include <type_traits>
#include <utility>

#include "orif/base/Fault.h"

namespace orif {

/// The description of the exception being handled; valid until it has been handled.
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

/// The report of a member that writes no line about a fault.
struct NoReport {
  void operator()(const char*) const noexcept {}
};

/// Runs `body` and returns its result, or `preset` if a fault ends it. `report` gets the
/// description of the fault and must not throw.
template <class Result, class Body, class Report = NoReport>
Result Guarded(Result preset, const Body& body,
               const Report& report = {}) noexcept requires std::is_invocable_r_v<Result, Body> {
  try {
    return body();
  } catch (...) {
    report(FaultDescription());
  }
  return preset;
}

/// The same for a body without a result.
template <class Body, class Report = NoReport>
void Guarded(const Body& body,
             const Report& report = {}) noexcept requires std::is_invocable_v<Body> {
  try {
    body();
  } catch (...) {
    report(FaultDescription());
  }
}

/// Runs `body` and ignores it if memory runs out. Other exceptions pass through.
template <class Body>
void WhereMemoryLasts(const Body& body) {
  try {
    body();
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): ignored
  }
}

}  // namespace orif

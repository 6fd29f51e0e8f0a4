// The loadable component: core objects of the demonstration cell behind the plain C interface. One
// network serves every object of the process, on whichever threads they are used.
#include <exception>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "orif/base/Fault.h"
#include "orif/lowerlayer/Dispatch.h"
#include "simulator/Demo.h"
#include "simulator/Operation.h"
#include "simulator/served/RemoteCore.h"

#if defined(_WIN32)
#define ORIF_COMPONENT_ENTRY extern "C" __declspec(dllexport)
#else
#define ORIF_COMPONENT_ENTRY extern "C" __attribute__((visibility("default")))
#endif

namespace orif::sim {
namespace {

struct Object {
  std::shared_ptr<Dispatch> core;
  std::string fault;  // what the last failed call answered
};

// Runs `action`. If it throws, `result` is the error's text, which is stored in `fault`.
template <class Action>
std::int32_t Guarded(std::string& fault, OrvexValue* result, Action action) noexcept {
  try {
    try {
      action();
      return 0;
    } catch (const std::exception& error) {
      fault = error.what();
    }
    if (result != nullptr) *result = MakeValue(fault);
  } catch (...) {
    if (result != nullptr) *result = OrvexValue{};
  }
  return 1;
}

void* Create(OrvexValue* fault) {
  try {
    // Never destroyed: objects may be released as late as the end of the process.
    static const DispatchFactory& factory = *new DispatchFactory(RemoteFactory(DemoNetwork()));
    return new Object{factory(), {}};
  } catch (const std::exception&) {  // no memory: nothing else fails here
    if (fault != nullptr) *fault = MakeValue(Fault::OutOfMemory);
    return nullptr;
  }
}

void Release(void* object) { delete static_cast<Object*>(object); }

std::int32_t Lookup(void* object, const char* name, std::int32_t* id) {
  if (object == nullptr || name == nullptr || id == nullptr) return 1;
  auto& self = *static_cast<Object*>(object);
  return Guarded(self.fault, nullptr, [&] { *id = self.core->Lookup(name); });
}

OrvexCall CallFrom(std::uint16_t call) {
  switch (call) {
    case ORVEX_METHOD:
    case ORVEX_GET:
    case ORVEX_PUT:
      return static_cast<OrvexCall>(call);
    default:
      throw std::invalid_argument("Unknown kind of call");
  }
}

std::int32_t Invoke(void* object, std::int32_t id, std::uint16_t call, const OrvexValue* arguments,
                    std::int32_t count, OrvexValue* result) {
  if (object == nullptr || result == nullptr) return 1;
  *result = OrvexValue{};
  auto& self = *static_cast<Object*>(object);
  return Guarded(self.fault, result, [&] {
    if (count < 0 || (count > 0 && arguments == nullptr)) {
      throw std::invalid_argument("Wrong number of arguments");
    }
    const std::span<const OrvexValue> given(arguments, static_cast<std::size_t>(count));
    *result = self.core->Invoke(id, CallFrom(call), given);
  });
}

constexpr OrvexCommLib Component{ORVEX_COMMLIB_VERSION, Create, Release, Lookup, Invoke};

}  // namespace
}  // namespace orif::sim

ORIF_COMPONENT_ENTRY const OrvexCommLib* OrvexCommLibEntry(std::uint32_t version) {
  return version == ORVEX_COMMLIB_VERSION ? &orif::sim::Component : nullptr;
}

// The late-bound object behind which the lower communication layer works: an operation is invoked
// by number, a name can be looked up for its number. Implemented by the adapter of a loaded
// component, by the simulated controller, and by whoever hands a Core a factory of his own. One
// object serves one Core, one thread at a time. Different objects may be called at once, and a
// factory too if the Cores that it serves are made on several threads.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

#include "orif/lowerlayer/orvex_commlib.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_HEADER_TYPE Dispatch {
 public:
  Dispatch() = default;
  Dispatch(const Dispatch&) = delete;
  Dispatch& operator=(const Dispatch&) = delete;
  virtual ~Dispatch() = default;

  /// Carries out the operation with the number `id`. References among the arguments are used during
  /// the call only, and only as far as their count reaches. A text in the result stays as it is
  /// until the next call. Throws a Fault for what is not a status: an unknown number, wrong
  /// arguments, a broken component.
  virtual OrvexValue Invoke(std::int32_t id, OrvexCall call,
                            std::span<const OrvexValue> arguments) = 0;

  /// The number of the operation `name`. Throws a Fault when there is none of that name.
  virtual std::int32_t Lookup(std::string_view name) = 0;
};

/// Makes one lower core object; throws, or answers empty, when it cannot.
using DispatchFactory = std::function<std::shared_ptr<Dispatch>()>;

}  // namespace orif

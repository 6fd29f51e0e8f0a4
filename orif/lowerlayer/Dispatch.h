// Dispatch, through which the library reaches the lower communication layer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

#include "orif/lowerlayer/orvex_commlib.h"
#include "orif/orif_export.h"

namespace orif {

/// The late-bound core object of the lower communication layer: an operation is invoked by its
/// number, and a name can be looked up for its number. The adapter of a loaded component and the
/// simulated controller implement it, and so may any host that gives a Core a factory of its own.
/// One object serves one Core, and one thread at a time calls it. Different objects may be called
/// at once.
class ORIF_HEADER_TYPE Dispatch {
 public:
  Dispatch() = default;
  Dispatch(const Dispatch&) = delete;
  Dispatch& operator=(const Dispatch&) = delete;

  /// Ends the object, and its connection if that is open.
  virtual ~Dispatch() = default;

  /// Carries out the operation with the number `id`; `call` says whether it is a method or a
  /// property to get or put. References among the arguments are used during the call only, and only
  /// as far as their count reaches. A text in the result stays as it is until the next call. Throws
  /// a Fault for what is not a status: an unknown number, wrong arguments, a broken component.
  virtual OrvexValue Invoke(std::int32_t id, OrvexCall call,
                            std::span<const OrvexValue> arguments) = 0;

  /// The number of the operation `name`. Throws a Fault if there is none of that name.
  virtual std::int32_t Lookup(std::string_view name) = 0;
};

/// Makes one lower core object. Throws, or returns an empty pointer, if it cannot. It may be called
/// by several threads at once if the Cores that use it are constructed on several threads.
using DispatchFactory = std::function<std::shared_ptr<Dispatch>()>;

class Variant;

/// What an operation answered, as a variant. Throws a Fault for a kind that no result has.
ORIF_EXPORT Variant ToVariant(const OrvexValue& value);

}  // namespace orif

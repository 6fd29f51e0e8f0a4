// What others may ask about the operations of a core object without knowing core objects.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "orif/lowerlayer/orvex_commlib.h"
#include "simulator/Arguments.h"

namespace orif::sim {

/// How an operation is called.
struct CallForm {
  std::string_view name;
  bool remote = false;  ///< a served cell carries it out; else the core object by itself
  /// What it refers to is filled: a request has only how many elements, the answer has them.
  bool fills = false;
  std::span<const Parameter> parameters;
};

/// None if there is no such operation.
std::optional<CallForm> FindCallForm(std::int32_t id, OrvexCall call);

/// Whether the controller answers `operation`; only such an operation can fail there.
bool ReachesController(std::string_view operation);

}  // namespace orif::sim

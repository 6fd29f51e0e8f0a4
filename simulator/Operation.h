// One operation of a simulated core object: its number, name and arguments, and the handler that
// carries it out. Only the two source files of SimulatedCore use it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "orif/lowerlayer/DispId.h"
#include "simulator/Arguments.h"
#include "simulator/SimulatedCore.h"

namespace orif::sim {

struct SimulatedCore::Operation {
  // Who answers: the core object itself, the controller over the connection, or the controller
  // without one, when a connection is made or ended.
  enum class Place { Local, Connection, Host };

  using Handler = OrvexValue (*)(SimulatedCore& core, const Arguments& arguments);

  std::int32_t id;
  std::string_view name;
  OrvexCall call;
  Place place;
  std::span<const Parameter> parameters;
  Handler handler;

  static constexpr Operation Method(DispId id, std::string_view name, Place place,
                                    std::span<const Parameter> parameters, Handler handler) {
    return {static_cast<std::int32_t>(id), name, ORVEX_METHOD, place, parameters, handler};
  }
  static constexpr Operation Property(DispId id, std::string_view name, OrvexCall call,
                                      std::span<const Parameter> parameters, Handler handler) {
    return {static_cast<std::int32_t>(id), name, call, Place::Local, parameters, handler};
  }
};

inline OrvexValue MakeValue(std::int32_t value) {
  OrvexValue result{};
  result.kind = ORVEX_I4;
  result.as.i4 = value;
  return result;
}

inline OrvexValue MakeValue(float value) {
  OrvexValue result{};
  result.kind = ORVEX_R4;
  result.as.r4 = value;
  return result;
}

/// Refers to `text`, which must not change before the next call.
inline OrvexValue MakeValue(std::string_view text) {
  OrvexValue result{};
  result.kind = ORVEX_TEXT;
  result.count = static_cast<std::int32_t>(text.size());
  result.as.text = text.data();
  return result;
}

}  // namespace orif::sim

// A tag as a metric: its datatype, value, unit and quality.
#pragma once

#include <cstdint>
#include <string_view>

#include "live/Value.h"
#include "tools/gateway/sparkplug/payload.pb.h"

namespace orif::gateway {

/// Numbers of the standard.
enum class Datatype : std::uint32_t {
  Int32 = 3,
  Int64 = 4,
  Float = 9,
  Double = 10,
  Boolean = 11,
  String = 12
};

/// The datatype of the tag of that name, whatever value it has now.
Datatype DatatypeOf(std::string_view tag);

/// Sets the value; one that is none, or that the type cannot hold, is null.
void SetValue(sparkplug::Metric& metric, Datatype type, const live::Value& value);

/// Adds properties.
void AddUnit(sparkplug::Metric& metric, std::string_view unit);
void AddQuality(sparkplug::Metric& metric, live::Quality quality);

/// A value as a row has it (RowValue::members), read again. The text must be such members.
struct ReadValue {
  live::Value value;
  live::Quality quality = live::Quality::Good;
  std::uint64_t time = 0;  ///< ms since 1970
};
ReadValue ReadMembers(std::string_view members);

}  // namespace orif::gateway

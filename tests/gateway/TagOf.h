// A good tag, read at a certain time.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "live/Value.h"

namespace orif::gateway {

/// Read at 2023-11-14T22:13:20.123Z.
inline live::Tag TagOf(std::string name, live::Value value, std::string unit = {}) {
  live::Tag tag;
  tag.name = std::move(name);
  tag.value = std::move(value);
  tag.unit = std::move(unit);
  tag.quality = live::Quality::Good;
  tag.time = live::Time(std::chrono::milliseconds(1700000000123));
  return tag;
}

}  // namespace orif::gateway

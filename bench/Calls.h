// Calls of the lower layer without the library, to compare the library with.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif::bench {

/// Calls an operation that reads `words` from number `first` on: the bulk read, or bit signals.
inline std::int32_t Read(Dispatch& lower, DispId id, std::int16_t first,
                         std::span<std::int16_t> words) {
  std::array<OrvexValue, 3> arguments{};
  arguments[0].kind = ORVEX_I2;
  arguments[0].as.i2 = first;
  arguments[1].kind = ORVEX_I2 | ORVEX_BYREF;
  arguments[1].count = static_cast<std::int32_t>(words.size());
  arguments[1].as.i2Ref = words.data();
  arguments[2].kind = ORVEX_I2;
  arguments[2].as.i2 = static_cast<std::int16_t>(words.size());
  return lower.Invoke(static_cast<std::int32_t>(id), ORVEX_METHOD, arguments).as.i4;
}

}  // namespace orif::bench

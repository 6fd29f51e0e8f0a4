// The lower core object of the benchmarks. It answers at once, so that a figure shows the library's
// own cost: reading values works, every other operation succeeds and does nothing.
#pragma once

#include <bit>
#include <cstdint>
#include <memory>

#include "orif/lowerlayer/Dispatch.h"

namespace orif::bench {

constexpr std::int32_t AreaWords = 16383;

/// The value in two adjacent words, low-order word first; `T` is std::int32_t or float.
template <class T>
T ByHand(const std::int16_t* words) {
  const std::uint32_t low = static_cast<std::uint16_t>(words[0]);
  const std::uint32_t high = static_cast<std::uint16_t>(words[1]);
  return std::bit_cast<T>(low | high << 16);
}

/// What ReadRShort delivers: the same words every time; others every time, so that all numbers
/// change; or none, so that it costs the same for any count.
enum class Delivery { Copy, Change, None };

std::shared_ptr<Dispatch> MakeDirectCore(Delivery delivery);

}  // namespace orif::bench

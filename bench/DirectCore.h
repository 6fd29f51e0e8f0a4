// The lower core object of the benchmarks: it answers at once what reading values needs, so that a
// figure shows the library's own cost. Every other operation succeeds and does nothing.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string_view>

#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif::bench {

constexpr std::int32_t AreaWords = 16383;

/// The value in two neighbouring words, low-order word first; `T` is std::int32_t or float.
template <class T>
T ByHand(const std::int16_t* words) {
  const std::uint32_t low = static_cast<std::uint16_t>(words[0]);
  const std::uint32_t high = static_cast<std::uint16_t>(words[1]);
  return std::bit_cast<T>(low | high << 16);
}

class DirectCore final : public Dispatch {
 public:
  /// Whether ReadRShort delivers its words, or only says so: then it costs the same for any count.
  enum class Delivery { Copy, None };

  explicit DirectCore(Delivery delivery = Delivery::Copy) : delivery_(delivery) {
    words_.fill(0x2041);  // texts are full, and their last character is a blank
  }

  OrvexValue Invoke(std::int32_t id, OrvexCall /*call*/,
                    std::span<const OrvexValue> arguments) override {
    switch (static_cast<DispId>(id)) {
      case DispId::ShortToLong:
        return {ORVEX_I4, 0, 0, {.i4 = ByHand<std::int32_t>(arguments[0].as.i2Ref)}};
      case DispId::ShortToFloat:
        return {ORVEX_R4, 0, 0, {.r4 = ByHand<float>(arguments[0].as.i2Ref)}};
      case DispId::ReadRShort:
        if (delivery_ == Delivery::Copy) Deliver(arguments);
        return {ORVEX_I4, 0, 0, {.i4 = arguments[2].as.i2}};
      case DispId::ReadSDO:
        Deliver(arguments);
        [[fallthrough]];
      default:
        return {ORVEX_I4, 0, 0, {.i4 = 0}};
    }
  }

  std::int32_t Lookup(std::string_view /*name*/) override { return 0; }

 private:
  void Deliver(std::span<const OrvexValue> arguments) const {
    std::copy_n(words_.data(), arguments[2].as.i2, arguments[1].as.i2Ref);
  }

  Delivery delivery_;
  std::array<std::int16_t, AreaWords> words_{};
};

}  // namespace orif::bench

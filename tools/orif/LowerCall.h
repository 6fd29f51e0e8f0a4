// Calls of a lower core object by number, with arguments as the library gives them, and what came
// of each call: also what the library would not notice or would convert.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif::tool {

OrvexValue Argument(std::int16_t value);
OrvexValue Argument(std::int32_t value);
/// A text, by reference with ORVEX_BYREF. It refers to `text`.
OrvexValue Argument(const std::string& text, unsigned passing = 0);

/// Elements for a component to fill, between others that it must not touch.
template <class T>
class GuardedBuffer {
 public:
  GuardedBuffer(std::size_t count, T filling) : filling_(filling) {
    elements_.assign(Guard + count + Guard, filling);
  }

  OrvexValue Reference() {
    OrvexValue argument{};
    argument.count = static_cast<std::int32_t>(Elements().size());
    if constexpr (std::is_same_v<T, std::int16_t>) {
      argument.kind = ORVEX_I2 | ORVEX_BYREF;
      argument.as.i2Ref = Elements().data();
    } else {
      argument.kind = ORVEX_I4 | ORVEX_BYREF;
      argument.as.i4Ref = Elements().data();
    }
    return argument;
  }

  std::span<T> Elements() {
    return std::span(elements_).subspan(Guard, elements_.size() - 2 * Guard);
  }

  /// Whether anything but the first `count` elements was written to.
  bool WrittenBeyond(std::size_t count) const {
    const auto untouched = [this](T element) { return element == filling_; };
    return !std::all_of(elements_.begin(), elements_.begin() + Guard, untouched) ||
           !std::all_of(elements_.begin() + Guard + static_cast<std::ptrdiff_t>(count),
                        elements_.end(), untouched);
  }

 private:
  static constexpr std::ptrdiff_t Guard = 1024;

  T filling_;
  std::vector<T> elements_;
};

/// What one call came to.
struct Reply {
  std::string shown;                   ///< for the user
  bool fault = false;                  ///< there was no result
  std::uint16_t kind = ORVEX_EMPTY;    ///< of the result
  std::optional<std::int32_t> number;  ///< if the result is one of 32 bits
  std::optional<std::string> text;     ///< if the result is one
  std::string flaw;                    ///< what is wrong with the result itself
};

/// Calls an operation. Texts of the component are copied, and shown without control characters.
Reply Call(Dispatch& object, DispId id, OrvexCall call, std::span<const OrvexValue> arguments = {});

}  // namespace orif::tool

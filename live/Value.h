// What a controller's data is to a program: values with unit, quality and time.
#pragma once

#include <bit>
#include <chrono>
#include <concepts>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "live/Reason.h"
#include "live/live_export.h"

namespace orif::live {

/// Whether two reals are the same bit by bit. That holds for two that are no number as well, which
/// are never equal.
inline bool AreSame(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// A value as the controller has it: nothing (a form of a position that is not valid, an empty
/// entry of a list), a bit, an integer, a 32-bit real, or a text in the controller's own bytes
/// unless the settings convert it.
class ORIF_LIVE_EXPORT Value
    : public std::variant<std::monostate, bool, std::int64_t, float, std::string> {
 public:
  // NOLINTBEGIN(google-explicit-constructor, hicpp-explicit-conversions): meant to convert
  /// No value.
  Value() = default;

  /// A bit.
  Value(std::same_as<bool> auto value) : variant(value) {}

  /// An integer; one beyond 64 bits with sign becomes the greatest.
  template <std::integral T>
  requires(!std::same_as<T, bool>) Value(T value)
      : variant(std::in_range<std::int64_t>(value) ? static_cast<std::int64_t>(value)
                                                   : std::numeric_limits<std::int64_t>::max()) {}

  /// A real; a 64-bit one is rounded to 32 bits.
  Value(std::floating_point auto value) : variant(static_cast<float>(value)) {}

  /// A text.
  Value(std::string value) : variant(std::move(value)) {}

  /// A text.
  Value(std::string_view value) : variant(std::string(value)) {}

  /// A text that ends at its zero byte; not null.
  Value(const char* value) : variant(std::string(value)) {}
  // NOLINTEND(google-explicit-constructor, hicpp-explicit-conversions)

  /// Whether two values have the same type and are equal.
  friend bool operator==(const Value& a, const Value& b) {
    return static_cast<const variant&>(a) == static_cast<const variant&>(b);
  }

  /// Whether nothing has changed from one value to the other: they are equal, or AreSame as reals.
  bool IsSame(const Value& other) const {
    const auto* const a = std::get_if<float>(this);
    const auto* const b = std::get_if<float>(&other);
    return a != nullptr && b != nullptr ? AreSame(*a, *b) : *this == other;
  }

  /// Whether there is no value.
  bool IsEmpty() const { return std::holds_alternative<std::monostate>(*this); }

  /// A bit (1 or 0), an integer or a real as a number; none for a text or no value.
  std::optional<double> Number() const;

  /// The value in words: "on" and "off", a real with as many digits as it takes to tell it from
  /// others, a text as it is, "-" for no value.
  std::string Text() const;
};

/// Date and time of the computer.
using Time = std::chrono::system_clock::time_point;

/// How far a value can be trusted.
enum class Quality {
  Good,     ///< what the controller had at the last refresh
  Stale,    ///< an older value, or none yet: the last refresh failed, or there was none
  Refused,  ///< the controller refuses the item; there is no value
};

/// "good", "stale" or "refused".
ORIF_LIVE_EXPORT std::string_view ToText(Quality quality);

/// A value with how far it can be trusted, when it was read, and why it is not good.
struct Reading {
  Value value;                       ///< the last good one; nothing while the item is refused
  Quality quality = Quality::Stale;  ///< how far it can be trusted
  Time time;                         ///< when the value was read; the epoch before the first time
  std::shared_ptr<const Reason> reason;  ///< why it is not good; null while it is
};

/// A named value of a controller. Its first part, the reading, changes with every refresh, the
/// names never.
struct Tag : Reading {
  std::string name;   ///< "R[1]", "PR[2].X", "PRG[1].line", "ALM[E1].message"
  std::string item;   ///< "PR[2]"
  std::string field;  ///< "X"; empty for an item with one value
  std::string unit;   ///< "mm", "deg" or empty
};

}  // namespace orif::live

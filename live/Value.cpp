#include "live/Value.h"

#include <array>
#include <charconv>

namespace orif::live {

std::optional<double> Value::Number() const {
  if (const auto* bit = std::get_if<bool>(this)) return *bit ? 1 : 0;
  if (const auto* integer = std::get_if<std::int64_t>(this)) return static_cast<double>(*integer);
  if (const auto* real = std::get_if<float>(this)) return *real;
  return {};
}

std::string Value::Text() const {
  if (const auto* bit = std::get_if<bool>(this)) return *bit ? "on" : "off";
  if (const auto* integer = std::get_if<std::int64_t>(this)) return std::to_string(*integer);
  if (const auto* text = std::get_if<std::string>(this)) return *text;
  if (const auto* real = std::get_if<float>(this)) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), *real).ptr;
    return {digits.data(), end};
  }
  return "-";
}

std::string_view ToText(Quality quality) {
  switch (quality) {
    case Quality::Good:
      return "good";
    case Quality::Stale:
      return "stale";
    default:
      return "refused";
  }
}

}  // namespace orif::live

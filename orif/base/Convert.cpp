#include "orif/base/Convert.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "orif/base/Fault.h"

namespace orif::convert {
namespace {

constexpr int FloatDigits = 7;
constexpr int DoubleDigits = 15;

std::string_view WithoutBlanks(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

std::string RealText(double value, int digits) {
  std::array<char, 40> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::general, digits)
                       .ptr;
  std::string result(text.data(), end);
  if (std::isfinite(value)) {
    for (char& c : result) {
      if (c == 'e') c = 'E';
    }
  }
  return result;
}

}  // namespace

std::int32_t ToInt32(double value) {
  const double whole = value - std::remainder(value, 1.0);
  if (!(whole >= std::numeric_limits<std::int32_t>::min() &&
        whole <= std::numeric_limits<std::int32_t>::max())) {
    throw Fault(Fault::Overflow);
  }
  return static_cast<std::int32_t>(whole);
}

float ToFloat(double value) {
  if (std::abs(value) > std::numeric_limits<float>::max()) throw Fault(Fault::Overflow);
  return static_cast<float>(value);
}

std::optional<double> Number(std::string_view text) {
  std::string_view number = WithoutBlanks(text);
  if (number.starts_with('+')) {
    number.remove_prefix(1);
    if (number.starts_with('-')) return std::nullopt;
  }
  // from_chars also reads "inf" and "nan".
  if (number.find_first_not_of("+-.0123456789eE") != std::string_view::npos) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc::invalid_argument || end != number.data() + number.size()) {
    return std::nullopt;
  }
  if (error == std::errc::result_out_of_range) throw Fault(Fault::Overflow);
  return value;
}

double ToDouble(std::string_view text) {
  const std::optional<double> value = Number(text);
  if (!value) throw Fault(Fault::TypeMismatch);
  return *value;
}

std::int32_t ToInt32(std::string_view text) { return ToInt32(ToDouble(text)); }

bool ToBoolean(std::string_view text) {
  const std::string word = UpperCase(WithoutBlanks(text));
  if (word == "TRUE") return true;
  if (word == "FALSE") return false;
  return ToDouble(word) != 0;
}

std::string_view ToText(bool value) { return value ? "True" : "False"; }
std::string ToText(std::int32_t value) { return std::to_string(value); }
std::string ToText(float value) { return RealText(value, FloatDigits); }
std::string ToText(double value) { return RealText(value, DoubleDigits); }

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

}  // namespace orif::convert

// Conversions between numbers, booleans and text by the rules of automation: reals round half to
// even, numeric text is read, True is -1. They throw a Fault: "Overflow" for what is out of range,
// "Type mismatch" for text that is not a number. A real as text has 7 (32-bit) or 15 (64-bit)
// significant digits, no trailing zeros and never a decimal comma.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orif::convert {

std::int32_t ToInt32(double value);
float ToFloat(double value);

/// The decimal number that `text` is, with blanks around it, a sign, a fraction and an exponent
/// allowed; empty if it is not one. Throws "Overflow" if no real can hold it.
std::optional<double> Number(std::string_view text);
double ToDouble(std::string_view text);
std::int32_t ToInt32(std::string_view text);

/// Reads "True" and "False" in any case, and numbers: 0 is false, all others true.
bool ToBoolean(std::string_view text);

std::string_view ToText(bool value);
std::string ToText(std::int32_t value);
std::string ToText(float value);
std::string ToText(double value);

std::string UpperCase(std::string_view text);

}  // namespace orif::convert

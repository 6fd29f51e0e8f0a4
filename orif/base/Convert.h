// Conversions between numbers, booleans and text by the rules of automation: reals round half to
// even, numeric text is read, True is -1. What is out of range faults with "Overflow", what is no
// number with "Type mismatch". Text of a real has 7 (32-bit) or 15 (64-bit) significant digits, no
// trailing zeros and never a locale's signs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orif::convert {

std::int32_t ToInt32(double value);
float ToFloat(double value);

/// Reads a decimal number: blanks around it, a sign, a fraction and an exponent are allowed,
/// nothing else. Empty for text that is no number; one that no real can hold faults with
/// "Overflow".
std::optional<double> Number(std::string_view text);
double ToDouble(std::string_view text);
std::int32_t ToInt32(std::string_view text);

/// Reads "True" and "False" in any case, or a number, of which 0 is false.
bool ToBoolean(std::string_view text);

std::string_view ToText(bool value);
std::string ToText(std::int32_t value);
std::string ToText(float value);
std::string ToText(double value);

std::string UpperCase(std::string_view text);

}  // namespace orif::convert

// Values as text, for tables and CSV files. What is shown is UTF-8 without control characters.
#pragma once

#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tools/orif/Column.h"

namespace orif::tool {

/// For a table: "on" and "off", reals with as many digits as they need, "-" for no value. Texts are
/// Printable.
std::string TableText(const Value& value);

/// The text in UTF-8: bytes that are no part of a character become U+FFFD.
std::string Utf8(std::string_view text);

/// The same with "?" for control characters, so that a text cannot steer the terminal: those below
/// the blank, DEL, and U+0080 to U+009F.
std::string Printable(std::string_view text);

/// The same for several lines: line ends stay.
std::string PrintableLines(std::string_view text);

/// How many places a text in UTF-8 takes in a line of a terminal: a character of Chinese, Japanese
/// or Korean takes two.
std::size_t Width(std::string_view text);

/// As much of the beginning of a text in UTF-8 as fits into `width` places; takes its own off
/// `width`.
std::string Cut(std::string_view text, std::size_t& width);

/// The same, for a place where a long text would be in the way: "..." stands for what is cut off.
std::string Shortened(const std::string& text);

/// The state of a task in words, for a table.
std::string TaskStateText(const Value& value);

/// The text aligned right: blanks in front, up to `width` places.
std::string Right(std::string text, std::size_t width);
/// The text aligned left: blanks behind it, up to `width` places.
std::string Left(std::string text, std::size_t width);

/// The text without trailing blanks.
std::string WithoutBlanks(std::string text);

/// The shortest text that parses back to the same real.
std::string RealText(float value);

/// The 64-bit real that RealText parses to: 0.1, not 0.100000001490116.
double Widened(float value);

/// The texts with `between` between them.
std::string Joined(std::span<const std::string> texts, std::string_view between = "; ");

/// The number that the whole text is, if it is one of that type.
template <class T>
std::optional<T> ParsedNumber(std::string_view text) {
  T number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return {};
  return number;
}

/// "1 row", "2 rows".
std::string Counted(std::int64_t count, std::string_view word);

/// "2026-01-01T00:00:00.000Z".
std::string Iso8601(std::chrono::sys_time<std::chrono::milliseconds> time);

/// For a CSV field: bits are 1 and 0, no value is an empty text.
std::string CsvText(const Value& value);

/// A line of CSV (RFC 4180) with its line end; fields are quoted where needed.
std::string CsvLine(std::span<const std::string> fields);

}  // namespace orif::tool

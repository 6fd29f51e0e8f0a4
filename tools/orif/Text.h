// Values as text, for tables and CSV files. Texts keep their bytes, whatever their encoding.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tools/orif/Column.h"

namespace orif::tool {

/// For a table: "on" and "off", reals with as many digits as they need, "-" for no value. Control
/// characters become "?", so that a text cannot steer the terminal.
std::string TableText(const Value& value);

/// The text with "?" for control characters.
std::string Printable(std::string text);

/// The same, for a place where a long text would be in the way: "..." stands for what is cut off.
std::string Shortened(const std::string& text);

/// The state of a task in words, for a table.
std::string TaskStateText(const Value& value);

/// The text aligned right: blanks in front, up to `width` characters.
std::string Right(std::string text, std::size_t width);
/// The text aligned left: blanks behind it, up to `width` characters.
std::string Left(std::string text, std::size_t width);

/// The text without trailing blanks.
std::string WithoutBlanks(std::string text);

/// The shortest text that parses back to the same real.
std::string RealText(float value);

/// The 64-bit real that RealText parses to: 0.1, not 0.100000001490116.
double Widened(float value);

/// The texts with "; " between them.
std::string Joined(std::span<const std::string> texts);

/// "1 row", "2 rows".
std::string Counted(std::int64_t count, std::string_view word);

/// For a CSV field: bits are 1 and 0, no value is an empty text.
std::string CsvText(const Value& value);

/// A line of CSV (RFC 4180) with its line end; fields are quoted where needed.
std::string CsvLine(std::span<const std::string> fields);

}  // namespace orif::tool

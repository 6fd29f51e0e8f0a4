// How values are written: for a table and for a CSV file. A text is passed on byte by byte.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tools/orif/Readout.h"

namespace orif::tool {

/// For a table: "on" and "off", reals with as many digits as they need, "-" for no value. Control
/// characters of a text become "?", so that a terminal stays as it is.
std::string TableText(const Value& value);

/// The state of a task in words, for a table.
std::string TaskStateText(const Value& value);

/// Blanks up to `width` characters, before or behind the text.
std::string Right(std::string text, std::size_t width);
std::string Left(std::string text, std::size_t width);

/// The text without the blanks at its end.
std::string WithoutBlanks(std::string text);

/// The shortest text that reads back as the same real.
std::string RealText(float value);

/// The 64-bit real that this text reads as: 0.1 and not 0.100000001490116.
double Widened(float value);

/// "1 row", "2 rows".
std::string Counted(std::int64_t count, std::string_view word);

/// For a field of a CSV line: 1 and 0, an empty text for no value.
std::string CsvText(const Value& value);

/// A line of CSV (RFC 4180) with its line end; fields are quoted where that is needed.
std::string CsvLine(std::span<const std::string> fields);

}  // namespace orif::tool

// Prints lines that may have anybody's words in them, so that they cannot steer a terminal.
#pragma once

#include <string_view>

namespace orif::tool {

/// Prints an error, a warning or a summary to standard error, behind what has been printed so far.
void Tell(std::string_view line);

/// Prints a line of CSV with its line end to standard output: as it is, to a terminal Printable.
void PrintCsv(std::string_view line);

}  // namespace orif::tool

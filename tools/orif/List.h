// Prints lists of tasks and alarms: items that all have the same fields.
#pragma once

#include <span>
#include <string>

#include "tools/orif/Column.h"

namespace orif::tool {

/// A column of the table: its title and the field that it shows.
struct ListColumn {
  const char* title;
  const char* field;
};

/// Prints the entries that exist, as "table" with the given columns or as "csv" or "json" with all
/// fields. A table without entries is the text `none`.
void PrintList(const live::Controller& controller, const std::string& format,
               std::span<const ListColumn> columns, const std::string& none);

}  // namespace orif::tool

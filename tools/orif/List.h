// Lists of tasks and alarms: a Readout whose items are rows of one shape. Used by the commands that
// print such a list.
#pragma once

#include <span>
#include <string>

#include "tools/orif/Readout.h"

namespace orif::tool {

/// A column of the table: its title and the field that it shows.
struct ListColumn {
  const char* title;
  const char* field;
};

/// Prints the items that are there as "table" (the chosen columns, or `none` where no item is
/// there), "csv" or "json" (all fields).
void PrintList(const Readout& readout, const std::string& format,
               std::span<const ListColumn> columns, const std::string& none);

}  // namespace orif::tool

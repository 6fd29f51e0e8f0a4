// A recording, read back: for the plot the columns that the user names, from a CSV file or a
// database.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/orif/Readout.h"
#include "tools/orif/recording/RowSource.h"

namespace orif::tool {

/// The values of one column, one for each row; not-a-number where the row has none.
struct Series {
  Column column;
  std::vector<double> values;
  bool isText = false;  // some value is not a number
};

struct Recording {
  std::string start;  // the time stamp of the first row
  std::vector<double> seconds;
  std::vector<bool> lost;  // whether the link is lost from this row to the next
  std::vector<Series> series;
};

/// Opens a CSV file or a database, and reads the names of its columns. Throws a std::runtime_error
/// if it is no recording.
std::unique_ptr<RowSource> OpenRows(const std::filesystem::path& path, Cells& names);

/// How many columns stand before those of the values: time, seconds, link.
inline constexpr std::size_t LeadingColumns = 3;

/// Works out a column's item, field and unit from its name.
Column ColumnNamed(const std::string& name);

/// Reads the columns in `names`: a column's name, or an item's for all of its columns. Throws an
/// Error if the file is no recording or a name is not in it.
Recording ReadRecording(const std::filesystem::path& path, const std::vector<std::string>& names);

}  // namespace orif::tool

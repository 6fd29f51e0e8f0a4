// A recording, read back for the plot: the columns that the user names, from a CSV file or a
// database.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/orif/Readout.h"

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

/// Reads the columns in `names`: a column's name, or an item's for all of its columns. Throws an
/// Error if the file is no recording or a name is not in it.
Recording ReadRecording(const std::filesystem::path& path, const std::vector<std::string>& names);

}  // namespace orif::tool

// What `orif record` wrote, read back for the plot: the columns that were asked for, from a CSV
// file or a database alike.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/orif/Readout.h"

namespace orif::tool {

/// The values of one column, a row each; not a number where the row has none.
struct Series {
  Column column;
  std::vector<double> values;
  bool isText = false;  // there are values that are no numbers
};

struct Recording {
  std::string start;  // the time stamp of the first row
  std::vector<double> seconds;
  std::vector<bool> lost;  // whether the link is lost from this row on until the next
  std::vector<Series> series;
};

/// Reads the columns that `names` name: a column by its name, or all columns of an item. Throws an
/// Error for a file that is no recording and for a name that is not in it.
Recording ReadRecording(const std::filesystem::path& path, const std::vector<std::string>& names);

}  // namespace orif::tool

// A recording, read back: for the plot the columns that the user names, from a CSV file or a
// database.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/orif/Column.h"
#include "tools/orif/Link.h"
#include "tools/orif/recording/RowSource.h"

namespace orif::tool {

/// The values of one column, one for each row; not-a-number where the row has none.
struct Series {
  Column column;
  std::string item;  // the item that chose it as one of its parts; empty if the column was named
  std::vector<double> values;
  bool isText = false;  // some value is not a number
};

struct Recording {
  std::string start;            // the time stamp of the first row
  std::vector<double> seconds;  // do not decrease
  std::vector<bool> lost;       // whether nothing is known from this row to the next
  std::vector<Series> series;
};

/// Opens a CSV file or a database, and reads the names of its columns, each of which is there once.
/// Throws a std::runtime_error if it is no recording.
std::unique_ptr<RowSource> OpenRows(const std::filesystem::path& path, Cells& names);

/// What the first columns of a row say.
struct RowStart {
  double seconds;  // not less than in the row before
  Link link;       // Up, Lost or Back
};

/// Checks the rows of a recording as they are read.
class RowCheck {
 public:
  explicit RowCheck(std::size_t columns) : columns_(columns) {}

  /// Throws a std::runtime_error that names the row unless it is whole.
  RowStart Next(const Cells& cells);

 private:
  std::size_t columns_;
  std::size_t rows_ = 0;
  double last_ = 0;
};

/// Works out a column's item, field and unit from its name.
Column ColumnNamed(const std::string& name);

/// Reads the columns in `names`: a column's name, or an item's as it was recorded, "R[1-4]" and
/// "R[1]:int" too, for all of its columns. A column that is named twice is read once. Throws an
/// Error if the file is no recording or a name is not in it.
Recording ReadRecording(const std::filesystem::path& path, const std::vector<std::string>& names);

/// The names of all columns with values. Throws like ReadRecording.
std::vector<std::string> RecordedColumns(const std::filesystem::path& path);

}  // namespace orif::tool

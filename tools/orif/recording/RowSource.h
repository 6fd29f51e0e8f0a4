// A recording as plot and simulate read it: row by row, from a CSV file or a database.
#pragma once

#include <string>
#include <vector>

namespace orif::tool {

using Cells = std::vector<std::string>;

/// The rows of a file as text, the names of the columns first.
class RowSource {
 public:
  RowSource() = default;
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource() = default;
  /// Reads the next row; false after the last one.
  virtual bool Next(Cells& cells) = 0;

  /// The controller that was recorded; empty if the file does not say.
  virtual std::string Host() { return {}; }
};

}  // namespace orif::tool

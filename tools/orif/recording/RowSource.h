// A recording as it is read back: row by row, from a CSV file or a database.
#pragma once

#include <cstddef>
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

  /// From now on the cells of other columns may be empty.
  void Want(const std::vector<std::size_t>& columns) { wanted_ = columns; }

 protected:
  std::vector<std::size_t> wanted_;  // all columns if it is empty
};

}  // namespace orif::tool

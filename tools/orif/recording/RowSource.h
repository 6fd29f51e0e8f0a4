// A recording as a plot reads it, row by row, whatever kind of file it is.
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
  virtual bool Next(Cells& cells) = 0;
};

}  // namespace orif::tool

// The rows of a CSV file (RFC 4180).
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "tools/orif/recording/RowSource.h"

namespace orif::tool {

class CsvRows : public RowSource {
 public:
  /// Throws a std::runtime_error if the file cannot be opened.
  explicit CsvRows(const std::filesystem::path& path);

  /// A last line without a line end was left by a killed writer and is no row.
  bool Next(Cells& cells) override;

  /// Where the last row that Next read ends, in bytes.
  std::uint64_t End() const { return end_; }

 private:
  bool Fill();

  std::ifstream file_;
  std::string buffer_;
  std::size_t at_ = 0;        // what of the buffer has been read
  std::uint64_t before_ = 0;  // where in the file the buffer begins
  std::uint64_t end_ = 0;
};

}  // namespace orif::tool

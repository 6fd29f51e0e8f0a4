#include "tools/orif/recording/CsvRows.h"

#include <stdexcept>

namespace orif::tool {

CsvRows::CsvRows(const std::filesystem::path& path) : file_(path, std::ios::binary) {
  if (!file_) throw std::runtime_error("it cannot be opened");
}

bool CsvRows::Fill() {
  constexpr std::size_t BufferSize = 1 << 16;
  before_ += buffer_.size();
  buffer_.resize(BufferSize);
  file_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.resize(static_cast<std::size_t>(file_.gcount()));
  at_ = 0;
  return !buffer_.empty();
}

bool CsvRows::Next(Cells& cells) {
  std::size_t count = 0;  // the strings of the row before are used again
  const auto next = [&] {
    if (count == cells.size()) cells.emplace_back();
    cells[count].clear();
    return &cells[count++];
  };
  std::string* cell = next();
  bool quoted = false;
  bool closed = false;  // the last character was a closing quote
  while (at_ < buffer_.size() || Fill()) {
    const char c = buffer_[at_++];
    if (c == '"') {
      // A doubled quote closes and opens again, and stands for one quote.
      if (!quoted && closed) *cell += '"';
      quoted = !quoted;
      closed = !quoted;
      continue;
    }
    closed = false;
    if (quoted || (c != ',' && c != '\n' && c != '\r')) {
      *cell += c;
    } else if (c == ',') {
      cell = next();
    } else if (c == '\n') {
      cells.resize(count);
      end_ = before_ + at_;
      return true;
    }
  }
  return false;
}

}  // namespace orif::tool

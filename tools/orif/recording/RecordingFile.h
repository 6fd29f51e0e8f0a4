// One file of a recording: a CSV file, an SQLite database, or standard output. Each row is in it
// when Write returns, so no row is lost if the tool is killed or the disk is full.
// docs/recording.md has the formats. A Recorder decides when which file is made.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/orif/Column.h"
#include "tools/orif/Link.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {

/// The columns in front of the values.
inline constexpr std::array RowColumns{"time", "seconds", "link"};

/// The link's word in a file: "up", "lost" or "back".
const char* ToText(Link link);

/// Milliseconds as seconds: "1.500".
std::string SecondsText(std::chrono::milliseconds time);

struct RecordedRow {
  std::chrono::sys_time<std::chrono::milliseconds> time;
  std::chrono::milliseconds sinceStart{};
  Link link = Link::Up;
  std::span<const Value> values;  // one for each column; none while the link is lost
};

/// What a database keeps about the run itself.
struct RunInfo {
  std::string host;
  std::string items;
  std::chrono::milliseconds every{};
};

/// The rows that a file has had before.
struct EarlierRows {
  std::int64_t count = 0;
  std::string lastTime;
  double lastSeconds = 0;
  bool cutOff = false;  // the last one was incomplete and is gone
};

class RecordingFile {
 public:
  RecordingFile() = default;
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;
  virtual ~RecordingFile() = default;

  /// Writes a row, or leaves the file as it was and throws a std::runtime_error with the system's
  /// reason.
  virtual void Write(const RecordedRow& row) = 0;

  /// In bytes.
  virtual std::uint64_t Size() = 0;

  const EarlierRows& Earlier() const { return earlier_; }

 protected:
  EarlierRows earlier_;
};

/// Makes a CSV file of an empty file, or goes on with one that has the same columns. Throws a
/// std::runtime_error with the reason if it cannot.
std::unique_ptr<RecordingFile> OpenCsv(platform::AppendedFile& file,
                                       const std::filesystem::path& path,
                                       const std::vector<Column>& columns);

/// CSV to standard output.
std::unique_ptr<RecordingFile> CsvToOutput(const std::vector<Column>& columns);

/// Throws a std::runtime_error if a file with the columns `has` cannot take up rows of `columns`.
void CheckSameColumns(const std::vector<std::string>& has, const std::vector<Column>& columns);

}  // namespace orif::tool

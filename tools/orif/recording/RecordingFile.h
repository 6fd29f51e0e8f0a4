// The file that `orif record` writes: a CSV file or an SQLite database, by the ending of its name.
// Each row is in the file when Add returns, so no row is lost if the tool is killed or the disk is
// full. docs/recording.md has the formats.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/orif/Link.h"
#include "tools/orif/Readout.h"

namespace orif::tool {

/// The link's word in a file: "up", "lost" or "back".
const char* ToText(Link link);

struct RecordedRow {
  std::string time;  // UTC, ISO 8601 with milliseconds
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

class RecordingFile {
 public:
  RecordingFile() = default;
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;
  virtual ~RecordingFile() = default;

  /// Adds a whole row. Throws an Error with the path, the reason and the number of rows kept.
  void Add(const RecordedRow& row);

  std::int64_t Rows() const { return rows_; }

 protected:
  /// Writes a row, or leaves the file as it was and throws a std::runtime_error with the system's
  /// reason.
  virtual void Write(const RecordedRow& row) = 0;

 private:
  friend std::unique_ptr<RecordingFile> CreateRecording(const std::filesystem::path& path,
                                                        bool replace,
                                                        const std::vector<Column>& columns,
                                                        const RunInfo& run);
  std::filesystem::path path_;
  std::int64_t rows_ = 0;
};

/// Throws an Error if `path` has neither ending, or exists and may not be replaced.
void CheckRecordingPath(const std::filesystem::path& path, bool replace);

/// Makes the file, replacing one that exists if `replace` is set. Throws an Error if it cannot.
std::unique_ptr<RecordingFile> CreateRecording(const std::filesystem::path& path, bool replace,
                                               const std::vector<Column>& columns,
                                               const RunInfo& run);

bool IsDatabase(const std::filesystem::path& path);

}  // namespace orif::tool

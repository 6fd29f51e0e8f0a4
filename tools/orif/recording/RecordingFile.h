// The file that `orif record` writes: a CSV file or an SQLite database, by the ending of its name.
// Each row is in the file for good when Add returns, so that a tool which is killed, or a disk that
// is full, costs no row that was added before. docs/recording.md has the formats.
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

/// The word for it in a file.
const char* ToText(Link link);

struct RecordedRow {
  std::string time;  // UTC, ISO 8601 with milliseconds
  std::chrono::milliseconds sinceStart{};
  Link link = Link::Up;
  std::span<const Value> values;  // one a column; none while the link is lost
};

/// What a database keeps of the run itself.
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

  /// Adds a row as a whole. Throws an Error that tells the path, the reason and the rows kept.
  void Add(const RecordedRow& row);

  std::int64_t Rows() const { return rows_; }

 protected:
  /// Writes a row or throws a std::runtime_error with the system's reason, and leaves the file
  /// whole to the row before.
  virtual void Write(const RecordedRow& row) = 0;

 private:
  friend std::unique_ptr<RecordingFile> CreateRecording(const std::filesystem::path& path,
                                                        bool replace,
                                                        const std::vector<Column>& columns,
                                                        const RunInfo& run);
  std::filesystem::path path_;
  std::int64_t rows_ = 0;
};

/// Throws an Error when `path` has neither ending, or exists and may not be replaced.
void CheckRecordingPath(const std::filesystem::path& path, bool replace);

/// Makes the file, in place of one that exists if `replace`. Throws an Error when that cannot be
/// done.
std::unique_ptr<RecordingFile> CreateRecording(const std::filesystem::path& path, bool replace,
                                               const std::vector<Column>& columns,
                                               const RunInfo& run);

bool IsDatabase(const std::filesystem::path& path);

}  // namespace orif::tool

// Where the rows of a recording go: it makes the file, replaces one or goes on with one, and begins
// the next file when one is full. Only one recorder at a time has a file.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/orif/platform/platform.h"
#include "tools/orif/recording/RecordingFile.h"

namespace orif::tool {

/// The user's options about the file.
struct RecordingTarget {
  std::filesystem::path out;  ///< ends in .csv or .db; "-" for CSV to standard output
  bool replace = false;
  bool append = false;
  /// When the next file begins: after a time, or at a size in bytes.
  std::optional<std::chrono::milliseconds> rotateAfter;
  std::optional<std::uint64_t> rotateAt;

  /// How users say `replace` and `append`.
  struct Options {
    const char* replace = "--force";
    const char* append = "--append";
  };
  Options options = {};

  bool Rotates() const { return rotateAfter || rotateAt; }
};

/// Throws an Error if nothing can be recorded to the target, as far as its name tells.
void CheckRecordingTarget(const RecordingTarget& target);

class Recorder {
 public:
  /// Hears what the user should know although it is no mistake.
  using Tell = std::function<void(const std::string& line)>;

  /// Touches no file before the first row.
  Recorder(RecordingTarget target, std::vector<Column> columns, RunInfo run, Tell tell);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder();

  /// Adds a whole row. Throws an Error with the path, the reason and, once the file is begun, the
  /// number of rows kept in it.
  void Add(RecordedRow row);

  std::int64_t Rows() const { return rows_; }

  /// "12 rows in run.csv".
  std::string Summary() const;

 private:
  void Begin(RecordedRow& row);
  void TakeUpLast();
  void Open(const std::filesystem::path& path, platform::AppendedFile::Begin begin);
  void OpenFormat(const std::filesystem::path& path);
  void Replace();
  void GoOn(RecordedRow& row);
  bool IsFull(const RecordedRow& row);
  void Close();
  std::string Name() const;

  RecordingTarget target_;
  std::vector<Column> columns_;
  RunInfo run_;
  Tell tell_;
  std::filesystem::path path_;                    // of the last file
  std::unique_ptr<platform::AppendedFile> lock_;  // the same; closed after it
  std::unique_ptr<RecordingFile> file_;
  std::chrono::milliseconds start_{};  // the time at which its seconds are 0
  std::int64_t rowsInFile_ = 0;
  std::int64_t rows_ = 0;
  std::int64_t files_ = 0;
};

/// Whether the file's name is that of a database.
bool IsDatabase(const std::filesystem::path& path);

}  // namespace orif::tool

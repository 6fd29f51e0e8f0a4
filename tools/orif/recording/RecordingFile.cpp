#include "tools/orif/recording/RecordingFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/recording/DatabaseRecording.h"

namespace orif::tool {
namespace {

constexpr std::array Endings{".csv", ".db"};

/// How many columns a database table can have besides time, seconds and link.
constexpr std::size_t MostColumns = 2000 - 3;

std::string Seconds(std::chrono::milliseconds time) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%lld.%03lld",
                static_cast<long long>(time.count() / 1000),
                static_cast<long long>(time.count() % 1000));
  return text.data();
}

class CsvFile : public RecordingFile {
 public:
  CsvFile(const std::filesystem::path& path, const std::vector<Column>& columns)
      : file_(path.string(), true), columns_(columns.size()) {
    std::vector<std::string> fields{"time", "seconds", "link"};
    for (const Column& column : columns) fields.push_back(column.name);
    file_.Append(CsvLine(fields));
  }

 private:
  void Write(const RecordedRow& row) override {
    std::vector<std::string> fields{row.time, Seconds(row.sinceStart), ToText(row.link)};
    std::ranges::transform(row.values, std::back_inserter(fields), CsvText);
    fields.resize(3 + columns_);
    file_.Append(CsvLine(fields));
  }

  platform::AppendedFile file_;
  std::size_t columns_;
};

/// Removes a file that could not be finished: without its columns it is no recording.
void RemoveBegun(const std::filesystem::path& path) {
  std::error_code ignored;
  for (const char* part : {"", "-wal", "-shm"})
    if (const std::filesystem::path file = path.string() + part; !is_symlink(file, ignored))
      std::filesystem::remove(file, ignored);
}

}  // namespace

const char* ToText(Link link) {
  constexpr std::array Texts{"up", "lost", "lost", "back"};
  return Texts[static_cast<std::size_t>(link)];
}

bool IsDatabase(const std::filesystem::path& path) { return path.extension() == ".db"; }

void RecordingFile::Add(const RecordedRow& row) {
  try {
    Write(row);
  } catch (const std::runtime_error& error) {
    throw Error(Exit::Usage, "cannot write to " + path_.string() + ": " + error.what() + "; " +
                                 Counted(rows_, "row") + " kept in it");
  }
  ++rows_;
}

void CheckRecordingPath(const std::filesystem::path& path, bool replace) {
  if (std::find(Endings.begin(), Endings.end(), path.extension()) == Endings.end())
    throw Error(Exit::Usage, "--out " + path.string() +
                                 ": the name has to end in .csv for a CSV file or in .db for an "
                                 "SQLite database");
  if (IsDatabase(path)) RequireDatabases(path);
  if (!replace && std::filesystem::exists(path))
    throw Error(Exit::Usage,
                path.string() + " exists; name another file, or replace it with --force");
}

std::unique_ptr<RecordingFile> CreateRecording(const std::filesystem::path& path, bool replace,
                                               const std::vector<Column>& columns,
                                               const RunInfo& run) {
  if (IsDatabase(path) && columns.size() > MostColumns)
    throw Error(Exit::Usage, std::to_string(columns.size()) +
                                 " columns are more than a database holds (" +
                                 std::to_string(MostColumns) + "); record fewer items or to .csv");
  bool made = false;
  try {
    // SQLite takes an empty file as a new database and drops a log that belonged to an old one.
    const platform::AppendedFile empty(path.string(), replace);
    made = true;
    std::unique_ptr<RecordingFile> file;
    if (IsDatabase(path))
      file = CreateDatabase(path, columns, run);
    else
      file = std::make_unique<CsvFile>(path, columns);
    file->path_ = path;
    return file;
  } catch (const std::runtime_error& error) {
    if (made) RemoveBegun(path);
    throw Error(Exit::Usage, "cannot make " + path.string() + ": " + error.what());
  }
}

}  // namespace orif::tool

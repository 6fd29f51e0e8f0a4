#include "tools/orif/recording/Recorder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <system_error>
#include <utility>

#include "tools/orif/Draft.h"
#include "tools/orif/Error.h"
#include "tools/orif/NameBeside.h"
#include "tools/orif/Text.h"
#include "tools/orif/recording/DatabaseRecording.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;
using Milliseconds = std::chrono::milliseconds;

constexpr std::array Endings{".csv", ".db"};
constexpr const char* StandardOutput = "-";

/// How many columns a database table can have.
constexpr std::size_t MostDatabaseColumns = 2000 - RowColumns.size();

/// "run-2026-01-01T00-00-00.000Z.csv": colons are no part of a file's name everywhere.
std::filesystem::path Dated(const std::filesystem::path& path, const RecordedRow& row) {
  std::string time = Iso8601(row.time);
  std::ranges::replace(time, ':', '-');
  return path.parent_path() / (path.stem().string() + '-' + time + path.extension().string());
}

/// The last of the dated files of `path`, if there is one.
std::optional<std::filesystem::path> LastDated(const std::filesystem::path& path) {
  const std::string first = Dated(path, {}).filename().string();
  const auto isDated = [&](const std::string& name) {
    return name.size() == first.size() && std::ranges::equal(name, first, [](char a, char b) {
             return a == b || (b >= '0' && b <= '9' && a >= '0' && a <= '9');
           });
  };
  std::filesystem::path last;
  std::error_code ignored;
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
    if (isDated(entry.path().filename().string())) last = std::max(last, entry.path().filename());
  if (last.empty()) return {};
  return path.parent_path() / last;
}

/// Removes a file that could not be finished: without its columns it is no recording.
void RemoveBegun(const std::filesystem::path& path) {
  std::error_code ignored;
  for (const char* part : {"", "-wal", "-shm"})
    std::filesystem::remove(path.string() + part, ignored);
}

/// What Iso8601 wrote, as time again; empty for anything else.
std::optional<std::chrono::sys_time<Milliseconds>> TimeIn(const std::string& text) {
  int year = 0, hours = 0, minutes = 0, seconds = 0, milliseconds = 0;
  unsigned month = 0, day = 0;
  if (std::sscanf(text.c_str(), "%4d-%2u-%2uT%2d:%2d:%2d.%3dZ", &year, &month, &day, &hours,
                  &minutes, &seconds, &milliseconds) != 7)
    return {};
  return std::chrono::sys_days{std::chrono::year{year} / std::chrono::month{month} /
                               std::chrono::day{day}} +
         std::chrono::hours{hours} + std::chrono::minutes{minutes} + std::chrono::seconds{seconds} +
         Milliseconds{milliseconds};
}

[[noreturn]] void RefuseToRecord(const std::string& what) { throw Error(Exit::Usage, what); }

[[noreturn]] void RefuseExisting(const std::filesystem::path& path,
                                 const RecordingTarget::Options& say) {
  RefuseToRecord(path.string() + " exists; name another file, replace it with " + say.replace +
                 ", or go on with it with " + say.append);
}

}  // namespace

bool IsDatabase(const std::filesystem::path& path) { return path.extension() == ".db"; }

void CheckRecordingTarget(const RecordingTarget& target) {
  if (target.out == StandardOutput) {
    if (target.replace || target.append || target.Rotates())
      RefuseToRecord(
          "--out - is standard output, where --force, --append and --rotate have no meaning");
    return;
  }
  if (std::find(Endings.begin(), Endings.end(), target.out.extension()) == Endings.end())
    RefuseToRecord(
        "--out " + target.out.string() +
        ": the name has to end in .csv for a CSV file or in .db for an SQLite database, or be - "
        "for standard output");
  if (IsDatabase(target.out)) RequireDatabases(target.out);
  if (!target.replace && !target.append && !target.Rotates() && MayExist(target.out))
    RefuseExisting(target.out, target.options);
}

Recorder::Recorder(RecordingTarget target, std::vector<Column> columns, RunInfo run, Tell tell)
    : target_(std::move(target)),
      columns_(std::move(columns)),
      run_(std::move(run)),
      tell_(std::move(tell)),
      path_(target_.out) {
  if (IsDatabase(target_.out) && columns_.size() > MostDatabaseColumns)
    RefuseToRecord(std::to_string(columns_.size()) + " columns are more than a database holds (" +
                   std::to_string(MostDatabaseColumns) + "); record fewer items or to .csv");
}

Recorder::~Recorder() { Close(); }

void Recorder::Close() {
  file_.reset();
  lock_.reset();
}

void Recorder::Add(RecordedRow row) {
  if (!file_ || IsFull(row)) Begin(row);
  row.sinceStart -= start_;
  try {
    file_->Write(row);
  } catch (const std::runtime_error& error) {
    RefuseToRecord("cannot write to " + Name() + ": " + error.what() + "; " +
                   Counted(rowsInFile_, "row") + " kept in it");
  }
  ++rowsInFile_;
  ++rows_;
}

bool Recorder::IsFull(const RecordedRow& row) {
  return rowsInFile_ > 0 &&
         ((target_.rotateAfter && row.sinceStart - start_ >= *target_.rotateAfter) ||
          (target_.rotateAt && file_->Size() >= *target_.rotateAt));
}

void Recorder::Begin(RecordedRow& row) {
  Close();
  const bool first = files_++ == 0;
  start_ = row.sinceStart;
  rowsInFile_ = 0;
  path_ = target_.out;
  if (target_.Rotates()) path_ = Dated(target_.out, row);
  try {
    if (first && target_.Rotates()) TakeUpLast();
    if (path_ == StandardOutput) {
      file_ = CsvToOutput(columns_);
    } else if (!MayExist(path_)) {
      Open(path_, platform::AppendedFile::Begin::New);
    } else if (target_.append) {
      Open(path_, platform::AppendedFile::Begin::Existing);
      GoOn(row);
    } else if (target_.replace) {
      Replace();
    } else {
      RefuseExisting(path_, target_.options);
    }
  } catch (const Error&) {
    throw;
  } catch (const std::exception& error) {
    RefuseToRecord("cannot " + std::string(target_.append ? "go on with " : "make ") + Name() +
                   ": " + error.what());
  }
}

/// Of the files of a rotation, only the last one can be in use.
void Recorder::TakeUpLast() {
  const std::optional<std::filesystem::path> last = LastDated(target_.out);
  if (!last) return;
  const std::filesystem::path next = std::exchange(path_, *last);
  if (target_.append) return;
  const platform::AppendedFile free(path_.string(), platform::AppendedFile::Begin::Existing);
  path_ = next;
}

void Recorder::Open(const std::filesystem::path& path, platform::AppendedFile::Begin begin) {
  lock_ = std::make_unique<platform::AppendedFile>(path.string(), begin);
  try {
    OpenFormat(path);
  } catch (...) {
    if (begin == platform::AppendedFile::Begin::New) RemoveBegun(path);
    throw;
  }
}

void Recorder::OpenFormat(const std::filesystem::path& path) {
  if (IsDatabase(target_.out))
    file_ = OpenDatabaseFile(path, columns_, run_);
  else
    file_ = OpenCsv(*lock_, path, columns_);
}

void Recorder::Replace() {
  std::unique_ptr<platform::AppendedFile> old;
  if (std::filesystem::is_regular_file(std::filesystem::symlink_status(path_)))
    old = std::make_unique<platform::AppendedFile>(path_.string(),
                                                   platform::AppendedFile::Begin::Existing);
  const std::filesystem::path draft = NameBeside(path_);
  Open(draft, platform::AppendedFile::Begin::New);
  try {
    file_.reset();  // a database is one file now, and its log is not named after the draft
    if (old && IsDatabase(path_)) DropDatabaseLog(path_);
    platform::PutInPlaceOf(path_.string(), draft.string(), std::move(old));
  } catch (...) {
    RemoveBegun(draft);
    throw;
  }
  OpenFormat(path_);
}

/// The time goes on as the clock says; what was missed while nothing recorded is a gap.
void Recorder::GoOn(RecordedRow& row) {
  const EarlierRows& earlier = file_->Earlier();
  if (earlier.cutOff) tell_(path_.string() + " ended with an incomplete line, which is cut off");
  if (earlier.count == 0) return;
  rowsInFile_ = earlier.count;
  const auto lastTime = TimeIn(earlier.lastTime);
  const Milliseconds missed = lastTime ? std::max(row.time - *lastTime, 0ms) : 0ms;
  start_ -= Milliseconds(std::llround(earlier.lastSeconds * 1000)) + missed;
  if (row.link == Link::Up) row.link = Link::Back;
}

std::string Recorder::Summary() const {
  const std::string rows = Counted(rows_, "row");
  if (files_ > 1) return rows + " in " + Counted(files_, "file") + ", the last one " + Name();
  return rows + (rowsInFile_ > rows_ ? " added to " : " in ") + Name();
}

std::string Recorder::Name() const {
  return path_ == StandardOutput ? "standard output" : path_.string();
}

}  // namespace orif::tool

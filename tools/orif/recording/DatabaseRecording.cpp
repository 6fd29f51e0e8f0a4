#include "tools/orif/recording/DatabaseRecording.h"

#include <deque>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>

#include "tools/orif/Text.h"
#include "tools/orif/recording/Sqlite.h"

namespace orif::tool {
namespace {

class DatabaseFile : public RecordingFile {
 public:
  DatabaseFile(const std::filesystem::path& path, const std::vector<Column>& columns,
               const RunInfo& run)
      : database_(path, SQLITE_OPEN_READWRITE) {
    const bool empty = database_.Value("SELECT count(*) FROM sqlite_master") == "0";
    if (!empty) TakeUp(columns);
    database_.Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; BEGIN IMMEDIATE");
    if (empty) MakeTables(columns);
    Statement addRun = database_.Prepare("INSERT INTO run VALUES (?, ?, ?)");
    const std::string host = Utf8(run.host);
    const std::string items = Utf8(run.items);
    addRun.Bind(0, host);
    addRun.Bind(1, items);
    addRun.Bind(2, std::int64_t{run.every.count()});
    addRun.Run();
    database_.Execute("COMMIT");
    std::string insert = "INSERT INTO row VALUES (?, ?, ?";
    for (std::size_t i = 0; i < columns.size(); ++i) insert += ", ?";
    addRow_.emplace(database_.Prepare(insert + ")"));
    size_.emplace(database_.Prepare(
        "SELECT page_count * page_size FROM pragma_page_count, pragma_page_size"));
  }
  DatabaseFile(const DatabaseFile&) = delete;
  DatabaseFile& operator=(const DatabaseFile&) = delete;

  /// A finished recording is one file, which can be read where nothing can be written. That fails
  /// while others have it open; the last of them then removes the log.
  ~DatabaseFile() override {
    addRow_.reset();
    size_.reset();
    try {
      database_.Execute("PRAGMA journal_mode = DELETE");
    } catch (const std::runtime_error&) {
      // The log stays, and whoever opens the database reads it too.
    }
  }

  std::uint64_t Size() override {
    size_->Next();
    const std::string bytes = size_->Text(0).value_or("0");
    size_->Reset();
    return std::stoull(bytes);
  }

 private:
  void MakeTables(const std::vector<Column>& columns) {
    database_.Execute(
        "CREATE TABLE run (host TEXT, items TEXT, every_ms INTEGER);"
        "CREATE TABLE column (name TEXT PRIMARY KEY, item TEXT, field TEXT, unit TEXT);");
    std::string table = "CREATE TABLE row (time TEXT, seconds REAL, link TEXT";
    Statement addColumn = database_.Prepare("INSERT INTO column VALUES (?, ?, ?, ?)");
    for (const Column& column : columns) {
      int parameter = 0;
      for (const std::string* text : {&column.name, &column.item, &column.field, &column.unit})
        addColumn.Bind(parameter++, *text);
      addColumn.Run();
      table += ", " + QuotedName(column.name);
    }
    database_.Execute(table + ")");
  }

  void TakeUp(const std::vector<Column>& columns) {
    Statement last =
        database_.Prepare("SELECT rowid AS number, * FROM row ORDER BY rowid DESC LIMIT 1");
    std::vector<std::string> names;
    for (int i = 1; i < last.Columns(); ++i) names.push_back(last.Name(i));
    CheckSameColumns(names, columns);
    if (!last.Next()) return;
    earlier_.count = std::stoll(last.Text(0).value_or("0"));
    earlier_.lastTime = last.Text(1).value_or("");
    earlier_.lastSeconds = std::stod(last.Text(2).value_or("0"));
  }

  void Write(const RecordedRow& row) override {
    const std::string time = Iso8601(row.time);
    const std::string link = ToText(row.link);
    addRow_->Bind(0, time);
    addRow_->Bind(1, static_cast<double>(row.sinceStart.count()) / 1000);
    addRow_->Bind(2, link);
    for (int column = 3; column < addRow_->Parameters(); ++column) addRow_->BindNull(column);
    int parameter = 3;
    texts_.clear();
    for (const Value& value : row.values) std::visit(Binder{*addRow_, texts_, parameter++}, value);
    addRow_->Run();
  }

  struct Binder {
    void operator()(std::monostate /*none*/) const { row.BindNull(parameter); }
    void operator()(bool value) const { row.Bind(parameter, std::int64_t{value}); }
    void operator()(std::int64_t value) const { row.Bind(parameter, value); }
    void operator()(float value) const { row.Bind(parameter, Widened(value)); }
    void operator()(const std::string& value) const {
      row.Bind(parameter, texts.emplace_back(Utf8(value)));
    }

    Statement& row;
    std::deque<std::string>& texts;
    int parameter;
  };

  Database database_;
  std::optional<Statement> addRow_;
  std::deque<std::string> texts_;  // of the row that is being added
  std::optional<Statement> size_;
};

/// The address of a file that nobody changes.
std::string ImmutableUri(const std::filesystem::path& path) {
  std::string uri = "file:";
  for (const char c : std::filesystem::absolute(path).string()) {
    if (c == '%' || c == '?' || c == '#')
      uri += c == '%' ? "%25" : c == '?' ? "%3f" : "%23";
    else
      uri += c;
  }
  return uri + "?immutable=1";
}

/// A database that was in use until its end is still in write-ahead mode. In a directory where
/// nothing can be written, SQLite reads it only if it is told that there is no log.
Database OpenToRead(const std::filesystem::path& path) {
  Database database(path, SQLITE_OPEN_READWRITE);
  try {
    database.Value("SELECT 1 FROM sqlite_master");
    return database;
  } catch (const DatabaseBusy&) {
    throw;
  } catch (const std::runtime_error&) {
    if (std::filesystem::exists(path.string() + "-wal")) throw;
  }
  return {ImmutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI};
}

class DatabaseRows : public RowSource {
 public:
  explicit DatabaseRows(const std::filesystem::path& path)
      : database_(OpenToRead(path)), rows_(database_.Prepare("SELECT * FROM row")) {}

  bool Next(Cells& cells) override {
    if (!named_) {
      named_ = true;
      cells.clear();
      for (int i = 0; i < rows_.Columns(); ++i) cells.push_back(rows_.Name(i));
      return true;
    }
    if (!rows_.Next()) return false;
    if (wanted_.empty()) {
      for (std::size_t i = 0; i < cells.size(); ++i) wanted_.push_back(i);
    }
    for (const std::size_t i : wanted_) cells[i] = rows_.Text(static_cast<int>(i)).value_or("");
    return true;
  }

  std::string Host() override {
    Statement run = database_.Prepare("SELECT host FROM run");
    return run.Next() ? run.Text(0).value_or("") : "";
  }

 private:
  Database database_;
  Statement rows_;
  bool named_ = false;
};

}  // namespace

void RequireDatabases(const std::filesystem::path& /*path*/) {}

std::unique_ptr<RecordingFile> OpenDatabaseFile(const std::filesystem::path& path,
                                                const std::vector<Column>& columns,
                                                const RunInfo& run) {
  return std::make_unique<DatabaseFile>(path, columns, run);
}

void DropDatabaseLog(const std::filesystem::path& path) {
  try {
    Database(path, SQLITE_OPEN_READWRITE).Execute("PRAGMA journal_mode = DELETE");
  } catch (const DatabaseBusy&) {
    throw std::runtime_error("another program has it open");
  } catch (const std::runtime_error&) {
    // It is no database.
  }
  for (const char* part : {"-wal", "-shm"}) std::filesystem::remove(path.string() + part);
}

std::unique_ptr<RowSource> OpenDatabase(const std::filesystem::path& path) {
  return std::make_unique<DatabaseRows>(path);
}

}  // namespace orif::tool

#include "tools/orif/recording/DatabaseRecording.h"

#include <optional>
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
    database_.Execute(
        "PRAGMA journal_mode = WAL;"
        "PRAGMA synchronous = NORMAL;"
        "BEGIN;"
        "CREATE TABLE run (host TEXT, items TEXT, every_ms INTEGER);"
        "CREATE TABLE column (name TEXT PRIMARY KEY, item TEXT, field TEXT, unit TEXT);");
    Statement addRun = database_.Prepare("INSERT INTO run VALUES (?, ?, ?)");
    addRun.Bind(0, run.host);
    addRun.Bind(1, run.items);
    addRun.Bind(2, std::int64_t{run.every.count()});
    addRun.Run();

    std::string table = "CREATE TABLE row (time TEXT, seconds REAL, link TEXT";
    std::string insert = "INSERT INTO row VALUES (?, ?, ?";
    Statement addColumn = database_.Prepare("INSERT INTO column VALUES (?, ?, ?, ?)");
    for (const Column& column : columns) {
      int parameter = 0;
      for (const std::string* text : {&column.name, &column.item, &column.field, &column.unit})
        addColumn.Bind(parameter++, *text);
      addColumn.Run();
      table += ", " + QuotedName(column.name);
      insert += ", ?";
    }
    database_.Execute(table + "); COMMIT;");
    addRow_.emplace(database_.Prepare(insert + ")"));
  }

 private:
  void Write(const RecordedRow& row) override {
    const std::string link = ToText(row.link);
    addRow_->Bind(0, row.time);
    addRow_->Bind(1, static_cast<double>(row.sinceStart.count()) / 1000);
    addRow_->Bind(2, link);
    for (int column = 3; column < addRow_->Parameters(); ++column) addRow_->BindNull(column);
    int parameter = 3;
    for (const Value& value : row.values) std::visit(Binder{*addRow_, parameter++}, value);
    addRow_->Run();
  }

  struct Binder {
    void operator()(std::monostate /*none*/) const { row.BindNull(parameter); }
    void operator()(bool value) const { row.Bind(parameter, std::int64_t{value}); }
    void operator()(std::int64_t value) const { row.Bind(parameter, value); }
    void operator()(float value) const { row.Bind(parameter, Widened(value)); }
    void operator()(const std::string& value) const { row.Bind(parameter, value); }

    Statement& row;
    int parameter;
  };

  Database database_;
  std::optional<Statement> addRow_;
};

class DatabaseRows : public RowSource {
 public:
  explicit DatabaseRows(const std::filesystem::path& path)
      : database_(path, SQLITE_OPEN_READWRITE), rows_(database_.Prepare("SELECT * FROM row")) {}

  bool Next(Cells& cells) override {
    if (!named_) {
      named_ = true;
      cells.clear();
      for (int i = 0; i < rows_.Columns(); ++i) cells.push_back(rows_.Name(i));
      return true;
    }
    if (!rows_.Next()) return false;
    for (int i = 0; i < rows_.Columns(); ++i)
      cells[static_cast<std::size_t>(i)] = rows_.Text(i).value_or("");
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

std::unique_ptr<RecordingFile> CreateDatabase(const std::filesystem::path& path,
                                              const std::vector<Column>& columns,
                                              const RunInfo& run) {
  return std::make_unique<DatabaseFile>(path, columns, run);
}

std::unique_ptr<RowSource> OpenDatabase(const std::filesystem::path& path) {
  return std::make_unique<DatabaseRows>(path);
}

}  // namespace orif::tool

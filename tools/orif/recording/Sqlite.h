// An SQLite database and its prepared statements, as far as recordings and the gateway's buffer
// need them. Every failure is a std::runtime_error with SQLite's reason and, where there is one,
// the system's. Locks of other programs are waited for.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace orif::tool {

/// Another program has locked the database.
struct DatabaseBusy : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The file is no database, or is a damaged one.
struct DatabaseBroken : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Statement;

class Database {
 public:
  /// `flags` as sqlite3_open_v2 takes them.
  Database(const std::filesystem::path& path, int flags);

  void Execute(const std::string& sql);
  /// Undoes all since BEGIN; whatever cannot be undone now is when the file is opened again.
  void RollBack();
  /// The first value of the result, empty if there is none.
  std::string Value(const std::string& sql);
  Statement Prepare(const std::string& sql);

 private:
  friend class Statement;
  [[noreturn]] void Fail() const;
  void Check(int result) const;

  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  std::unique_ptr<sqlite3, Close> handle_;
};

class Statement {
 public:
  /// Parameters and columns count from 0. Text is bound by reference and must live until Run.
  void Bind(int parameter, const std::string& text);
  void Bind(int parameter, double number);
  void Bind(int parameter, std::int64_t number);
  void BindNull(int parameter);

  /// Runs a statement that has no result, and makes it ready to run again.
  void Run();

  /// Moves to the next row of the result; false after the last one.
  bool Next();
  /// Ends the result, and makes the statement ready to run again.
  void Reset();
  /// The same after a failure.
  void Abandon() { sqlite3_reset(handle_.get()); }
  int Parameters() const { return sqlite3_bind_parameter_count(handle_.get()); }
  int Columns() const { return sqlite3_column_count(handle_.get()); }
  std::string Name(int column) const { return sqlite3_column_name(handle_.get(), column); }
  std::optional<std::string> Text(int column) const;

 private:
  friend class Database;
  Statement(Database& database, const std::string& sql);

  struct Finalize {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };
  Database* database_;
  std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

/// `name` quoted as a column name for SQL, whatever is in it.
std::string QuotedName(const std::string& name);

}  // namespace orif::tool

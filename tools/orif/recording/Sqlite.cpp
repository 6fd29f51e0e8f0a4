#include "tools/orif/recording/Sqlite.h"

#include <chrono>
#include <cstring>
#include <stdexcept>

#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;

constexpr auto BetweenTries = 5ms;
constexpr auto LongestWait = 60s;

/// SQLite asks for the `tries`-th time whether to wait for another program's lock.
int WaitForLock(void* /*unused*/, int tries) {
  if (platform::Interrupted() || tries > LongestWait / BetweenTries) return 0;
  platform::Sleep(BetweenTries);
  return 1;
}

}  // namespace

Database::Database(const std::filesystem::path& path, int flags) {
  sqlite3* handle = nullptr;
  const int result = sqlite3_open_v2(path.string().c_str(), &handle, flags, nullptr);
  handle_.reset(handle);
  Check(result);
  Check(sqlite3_busy_handler(handle, WaitForLock, nullptr));
}

void Database::Fail() const {
  std::string reason = sqlite3_errmsg(handle_.get());
  if (const int error = sqlite3_system_errno(handle_.get()); error != 0)
    reason += std::string(": ") + std::strerror(error);
  const int code = sqlite3_errcode(handle_.get());
  if (code == SQLITE_BUSY) throw DatabaseBusy(reason);
  if (code == SQLITE_NOTADB || code == SQLITE_CORRUPT) throw DatabaseBroken(reason);
  throw std::runtime_error(reason);
}

void Database::Check(int result) const {
  if (result != SQLITE_OK) Fail();
}

void Database::Execute(const std::string& sql) {
  Check(sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr));
}

void Database::RollBack() { sqlite3_exec(handle_.get(), "ROLLBACK", nullptr, nullptr, nullptr); }

std::string Database::Value(const std::string& sql) {
  Statement statement = Prepare(sql);
  return statement.Next() ? statement.Text(0).value_or("") : "";
}

Statement Database::Prepare(const std::string& sql) { return {*this, sql}; }

Statement::Statement(Database& database, const std::string& sql) : database_(&database) {
  sqlite3_stmt* handle = nullptr;
  database.Check(sqlite3_prepare_v2(database.handle_.get(), sql.c_str(), -1, &handle, nullptr));
  handle_.reset(handle);
}

void Statement::Bind(int parameter, const std::string& text) {
  database_->Check(sqlite3_bind_text(handle_.get(), parameter + 1, text.data(),
                                     static_cast<int>(text.size()), SQLITE_STATIC));
}

void Statement::Bind(int parameter, double number) {
  database_->Check(sqlite3_bind_double(handle_.get(), parameter + 1, number));
}

void Statement::Bind(int parameter, std::int64_t number) {
  database_->Check(sqlite3_bind_int64(handle_.get(), parameter + 1, number));
}

void Statement::BindNull(int parameter) {
  database_->Check(sqlite3_bind_null(handle_.get(), parameter + 1));
}

void Statement::Run() {
  const int result = sqlite3_step(handle_.get());
  if (result != SQLITE_DONE && result != SQLITE_ROW) database_->Fail();
  Reset();
}

void Statement::Reset() { database_->Check(sqlite3_reset(handle_.get())); }

bool Statement::Next() {
  const int result = sqlite3_step(handle_.get());
  if (result != SQLITE_DONE && result != SQLITE_ROW) database_->Fail();
  return result == SQLITE_ROW;
}

std::optional<std::string> Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
  if (text == nullptr) return std::nullopt;
  return std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column)));
}

std::string QuotedName(const std::string& name) {
  std::string quoted = "\"";
  for (const char c : name) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

}  // namespace orif::tool

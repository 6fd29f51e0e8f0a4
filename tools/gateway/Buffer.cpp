#include "tools/gateway/Buffer.h"

#include <algorithm>
#include <chrono>
#include <string>

#include "tools/orif/Text.h"

namespace orif::gateway {
namespace {

constexpr std::size_t ReadAtOnce = 100;        // rows
constexpr std::size_t DropAtOnce = 2000;       // rows, besides as many as come
constexpr std::int64_t ReadBytes = 2'000'000;  // at most, but for one row

// A file of another version is none of ours.
constexpr const char* FileVersion = "1";

/// A new file begins where none can have been: with the minutes since this day.
constexpr auto FirstDay = std::chrono::sys_days{std::chrono::year{2025} / 1 / 1};

std::int64_t Minutes() {
  const auto passed = std::chrono::system_clock::now() - FirstDay;
  return std::max<std::int64_t>(passed / std::chrono::minutes(1), 1);
}

std::int64_t Whole(const std::optional<std::string>& text) {
  return tool::ParsedNumber<std::int64_t>(text.value_or("")).value_or(0);
}

/// Names like ":memory:" or "file:..." mean something else to SQLite.
std::filesystem::path Plain(const std::filesystem::path& file) {
  return std::filesystem::absolute(file);
}

}  // namespace

Buffer::Buffer(const std::filesystem::path& file, std::int64_t limit) : limit_(limit) {
  try {
    Begin(Plain(file));
    return;
  } catch (const tool::DatabaseBusy&) {
    throw;
  } catch (const tool::DatabaseBroken&) {
  }
  for (auto* statement : {&insert_, &erase_, &eraseOldest_, &read_}) statement->reset();
  database_.reset();
  movedAside_ = file.string() + ".broken-" + std::to_string(Minutes());
  for (const char* part : {"", "-wal", "-shm"}) {
    std::error_code ignored;  // there may be none
    std::filesystem::rename(file.string() + part, movedAside_->string() + part, ignored);
  }
  Begin(Plain(file));
}

void Buffer::Begin(const std::filesystem::path& file) {
  database_.emplace(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  // Nobody else may write to it, and no other gateway may open it.
  database_->Execute(
      "PRAGMA busy_timeout = 2000; PRAGMA locking_mode = EXCLUSIVE; PRAGMA auto_vacuum = "
      "INCREMENTAL;"
      "PRAGMA journal_mode = WAL; PRAGMA journal_size_limit = 8000000;"
      "PRAGMA synchronous = FULL; BEGIN IMMEDIATE");
  const bool empty = database_->Value("SELECT count(*) FROM sqlite_master") == "0";
  if (empty) {
    database_->Execute(
        "CREATE TABLE gateway (version TEXT, session INTEGER);"
        "CREATE TABLE row (id INTEGER PRIMARY KEY, cell TEXT, number INTEGER, time TEXT,"
        " is_full INTEGER, size INTEGER, tags TEXT);"
        "INSERT INTO gateway VALUES (" +
        std::string(FileVersion) + ", 0)");
  }
  if (database_->Value("SELECT version FROM gateway") != FileVersion) {
    throw tool::DatabaseBroken("it is not a buffer of this version");
  }
  session_ = Whole(database_->Value("SELECT session FROM gateway"));
  session_ = session_ == 0 ? Minutes() : session_ + 1;
  database_->Execute("UPDATE gateway SET session = " + std::to_string(session_));
  insert_.emplace(database_->Prepare("INSERT INTO row VALUES (?, ?, ?, ?, ?, ?, ?)"));
  erase_.emplace(database_->Prepare("DELETE FROM row WHERE id = ? RETURNING size"));
  eraseOldest_.emplace(
      database_->Prepare("DELETE FROM row WHERE id = (SELECT min(id) FROM row) RETURNING size"));
  read_.emplace(
      database_->Prepare("SELECT id, cell, number, time, is_full, tags FROM row"
                         " WHERE id > ? ORDER BY id LIMIT " +
                         std::to_string(ReadAtOnce)));
  Count();
  lastId_ = Whole(database_->Value("SELECT max(id) FROM row"));
  // From here on a crash of the machine may take the last moments, a kill of the gateway nothing.
  database_->Execute("COMMIT; PRAGMA synchronous = NORMAL");
}

void Buffer::Count() {
  rows_ = Whole(database_->Value("SELECT count(*) FROM row"));
  bytes_ = Whole(database_->Value("SELECT coalesce(sum(size), 0) FROM row"));
}

bool Buffer::Erase(tool::Statement& statement) {
  const bool found = statement.Next();
  if (found) {
    --rows_;
    bytes_ -= Whole(statement.Text(0));
  }
  statement.Reset();
  return found;
}

std::int64_t Buffer::DropOldest(std::size_t most) {
  std::size_t dropped = 0;
  while (IsOverLimit() && dropped < most && Erase(*eraseOldest_)) ++dropped;
  return static_cast<std::int64_t>(dropped);
}

std::int64_t Buffer::Write(std::span<const ParcelPtr> insert, std::span<const std::int64_t> erase) {
  std::int64_t dropped = 0;
  database_->Execute("BEGIN IMMEDIATE");
  try {
    for (const ParcelPtr& parcel : insert) {
      const Row& row = parcel->Row();
      const auto size = static_cast<std::int64_t>(row.Size());
      insert_->Bind(0, row.id);
      insert_->Bind(1, row.cell);
      insert_->Bind(2, row.number);
      insert_->Bind(3, row.time);
      insert_->Bind(4, std::int64_t{row.full});
      insert_->Bind(5, size);
      insert_->Bind(6, row.values);
      insert_->Run();
      ++rows_;
      bytes_ += size;
    }
    for (const std::int64_t id : erase) {
      erase_->Bind(0, id);
      Erase(*erase_);
    }
    dropped = DropOldest(insert.size() + DropAtOnce);
    database_->Execute("COMMIT");
  } catch (...) {
    for (auto* statement : {&insert_, &erase_, &eraseOldest_}) (*statement)->Abandon();
    database_->RollBack();
    Count();
    throw;
  }
  tidy_ = tidy_ && rows_ != 0;
  return dropped;
}

std::vector<Row> Buffer::Read(std::int64_t id, bool& end) {
  std::vector<Row> rows;
  std::int64_t bytes = 0;
  try {
    read_->Bind(0, id);
    while (read_->Next()) {
      Row row{.id = Whole(read_->Text(0)),
              .cell = read_->Text(1).value_or(""),
              .number = Whole(read_->Text(2)),
              .time = read_->Text(3).value_or(""),
              .full = Whole(read_->Text(4)) != 0,
              .values = read_->Text(5).value_or("")};
      bytes += static_cast<std::int64_t>(row.Size());
      rows.push_back(std::move(row));
      if (bytes > ReadBytes) break;
    }
    end = bytes <= ReadBytes && rows.size() < ReadAtOnce;
    read_->Reset();
  } catch (...) {
    read_->Abandon();
    throw;
  }
  return rows;
}

void Buffer::Tidy() {
  if (tidy_ || rows_ != 0) return;
  database_->Execute("PRAGMA incremental_vacuum(5000)");
  tidy_ = database_->Value("PRAGMA freelist_count") == "0";
}

}  // namespace orif::gateway

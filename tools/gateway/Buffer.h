// The file that keeps rows until the broker has them: an SQLite database. It belongs to one gateway
// and one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/gateway/Outbox.h"
#include "tools/gateway/Row.h"
#include "tools/orif/recording/Sqlite.h"

namespace orif::gateway {

/// Every failure is a std::runtime_error with the reason.
class Buffer {
 public:
  /// Opens the file or makes it, and begins a session. A file that is no buffer or is broken is
  /// moved aside, which MovedAside tells. Throws tool::DatabaseBusy if another gateway has it.
  Buffer(const std::filesystem::path& file, std::int64_t limit);

  /// Counts the starts of the gateway. With a new file it begins at the minutes since 2025, which
  /// is higher than it ever was unless the clock was set back, or the gateway has been started more
  /// than once for each minute.
  std::int64_t Session() const { return session_; }
  std::int64_t LastId() const { return lastId_; }
  const std::optional<std::filesystem::path>& MovedAside() const { return movedAside_; }

  /// Stores and erases in one step. What is then over the limit is dropped, oldest first, so many
  /// rows at a time that it is soon done; answers how many. Rows over the limit may be left.
  std::int64_t Write(std::span<const ParcelPtr> insert, std::span<const std::int64_t> erase);
  /// The next rows behind `id`, in order; `end` tells whether those were the last.
  std::vector<Row> Read(std::int64_t id, bool& end);

  /// Gives the system back what an empty buffer no longer needs, a piece at a time.
  void Tidy();

  std::int64_t Rows() const { return rows_; }
  std::int64_t Bytes() const { return bytes_; }
  bool IsOverLimit() const { return bytes_ > limit_; }
  std::int64_t Limit() const { return limit_; }

 private:
  void Begin(const std::filesystem::path& file);
  std::int64_t DropOldest(std::size_t most);
  bool Erase(tool::Statement& statement);
  void Count();

  std::int64_t limit_;
  std::optional<tool::Database> database_;
  std::optional<tool::Statement> insert_;
  std::optional<tool::Statement> erase_;
  std::optional<tool::Statement> eraseOldest_;
  std::optional<tool::Statement> read_;
  std::optional<std::filesystem::path> movedAside_;
  std::int64_t session_ = 0;
  std::int64_t lastId_ = 0;
  std::int64_t rows_ = 0;
  std::int64_t bytes_ = 0;
  bool tidy_ = false;
};

}  // namespace orif::gateway

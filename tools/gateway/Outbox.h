// The rows on their way: which are to be published now, which are waited for, and which have to go
// to the buffer or come back from it. It only decides; the publisher and the storage do.
//
// A row is live until its connection to the broker ends. Live rows that the broker acknowledges
// soon never see the buffer. All others are stored, and come back late, in order.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/gateway/Row.h"

namespace orif::gateway {

/// A row on its way, and what the Outbox knows of it.
class Parcel {
 public:
  Parcel(gateway::Row row, std::chrono::steady_clock::time_point came, bool live)
      : row_(std::move(row)), came_(came), live_(live) {}

  const gateway::Row& Row() const { return row_; }
  /// For the publisher, once it has it: whether it comes from the buffer.
  bool IsLate() const { return !live_; }

 private:
  friend class Outbox;

  const gateway::Row row_;
  const std::chrono::steady_clock::time_point came_;
  bool live_;             // of this connection
  bool begun_ = false;    // handed to the publisher
  bool queued_ = false;   // late and ready for the publisher
  bool stored_ = false;   // in the buffer
  bool storing_ = false;  // the storage is at it
  bool gone_ = false;     // acknowledged, or given up
};
using ParcelPtr = std::shared_ptr<Parcel>;

class Outbox {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  /// Rows are numbered from `firstId` on. `memoryLimit` is in bytes, for rows that are not stored.
  Outbox(std::int64_t firstId, std::int64_t memoryLimit)
      : nextId_(firstId), memoryLimit_(memoryLimit) {}

  /// Called whenever the publisher has something new to do; must not wait.
  void OnNews(std::function<void()> news) { news_ = std::move(news); }

  // Any thread.
  void Add(Row row, Instant now);
  /// How many rows were given up since memory was full.
  std::int64_t Dropped() const;

  // The publisher.
  void Connected();
  void Disconnected();
  /// The next live row to publish, or the next late one; null if there is none. It is under way
  /// until Acknowledge or Disconnected.
  ParcelPtr NextLive(Instant now);
  ParcelPtr NextLate();
  /// The broker has the row, or will never take it.
  void Acknowledge(const ParcelPtr& parcel);
  /// The row has to wait in the buffer, with all late ones of its cell, until Release.
  void PutBack(const ParcelPtr& parcel);
  void Release(const std::string& cell);
  /// The cells whose live values the broker has not been told, now that it could be.
  std::set<std::string> TakeOwed();

  // The storage.
  struct Work {
    std::vector<ParcelPtr> insert;
    std::vector<std::int64_t> erase;
    std::optional<std::int64_t> readAfter;  ///< read rows from behind this one
    bool Empty() const { return insert.empty() && erase.empty() && !readAfter; }
  };
  struct Done {
    bool written = false;                  ///< whether `insert` and `erase` were carried out
    std::optional<std::vector<Row>> read;  ///< in order; none if reading failed
    bool end = false;                      ///< whether those were the last
  };
  /// Waits for work, `longest` at most. With `all` every row that is not acknowledged is to be
  /// stored, how young it may be.
  Work WaitForWork(std::chrono::milliseconds longest, bool all = false);
  void Finish(const Work& work, Done done, Instant now);
  /// Whether rows are in memory alone.
  bool HasUnstored() const;
  void Wake() { changed_.notify_all(); }

 private:
  Work TakeWork(Instant now, bool all);
  void Divert(Instant now);
  void BackTo(std::int64_t id);
  void GiveUp(const ParcelPtr& parcel);
  void NoLongerUnstored(const ParcelPtr& parcel);
  void LimitMemory();
  void Read(std::vector<Row> rows, bool end, Instant now);

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> news_;
  std::int64_t nextId_;
  std::int64_t memoryLimit_;
  bool connected_ = false;
  // By id, which is the order in which they came.
  std::map<std::int64_t, ParcelPtr> known_;     // in memory and not gone
  std::map<std::int64_t, ParcelPtr> unstored_;  // of these, in memory alone
  std::map<std::int64_t, ParcelPtr> late_;      // to begin
  std::deque<ParcelPtr> live_;                  // to begin; may have some that are gone
  std::set<std::int64_t> erase_;                // gone, and perhaps still in the buffer
  std::map<std::string, std::int64_t> held_;    // cells, with the first of their rows that waits
  std::set<std::string> owed_;
  std::int64_t readTo_ = 0;  // what the backlog has been read to
  bool mayHaveMore_ = false;
  std::int64_t bytes_ = 0;  // of unstored_
  std::int64_t dropped_ = 0;
};

}  // namespace orif::gateway

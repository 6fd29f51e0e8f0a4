#include "tools/gateway/Outbox.h"

#include <algorithm>
#include <utility>

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

/// A row that the broker has not acknowledged for so long is stored.
constexpr auto StoreAfter = 50ms;
/// A live row that could not be begun for so long comes late.
constexpr auto LiveAtMost = 1s;
/// How often the storage looks while rows wait for it.
constexpr auto StorageRound = 20ms;

constexpr std::size_t LateAhead = 100;      // rows read back in advance
constexpr std::size_t LargestInsert = 500;  // rows
constexpr std::size_t LargestErase = 2000;  // rows

std::int64_t SizeOf(const ParcelPtr& parcel) {
  return static_cast<std::int64_t>(parcel->Row().Size());
}

}  // namespace

void Outbox::Add(Row row, Instant now) {
  bool first = false;
  {
    const std::lock_guard lock(mutex_);
    row.id = nextId_++;
    const std::int64_t id = row.id;
    auto parcel = std::make_shared<Parcel>(std::move(row), now, connected_);
    first = unstored_.empty() || !connected_;
    bytes_ += SizeOf(parcel);
    known_.emplace(id, parcel);
    unstored_.emplace(id, parcel);
    if (connected_) live_.push_back(std::move(parcel));
    LimitMemory();
  }
  if (first) changed_.notify_all();
  if (news_) news_();
}

std::int64_t Outbox::Dropped() const {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

void Outbox::Connected() {
  {
    const std::lock_guard lock(mutex_);
    connected_ = true;
    readTo_ = 0;
    mayHaveMore_ = true;
  }
  changed_.notify_all();
}

void Outbox::Disconnected() {
  {
    const std::lock_guard lock(mutex_);
    connected_ = false;
    live_.clear();
    late_.clear();
    held_.clear();
    owed_.clear();  // the next connection begins with everything
    for (auto& [id, parcel] : known_) parcel->live_ = parcel->begun_ = parcel->queued_ = false;
    std::erase_if(known_, [](const auto& known) { return known.second->stored_; });
  }
  changed_.notify_all();
}

ParcelPtr Outbox::NextLive(Instant now) {
  const std::lock_guard lock(mutex_);
  Divert(now);
  while (!live_.empty()) {
    ParcelPtr next = std::move(live_.front());
    live_.pop_front();
    if (next->gone_) continue;
    next->begun_ = true;
    return next;
  }
  return nullptr;
}

ParcelPtr Outbox::NextLate() {
  const std::lock_guard lock(mutex_);
  if (mayHaveMore_ && late_.size() <= LateAhead / 2) changed_.notify_all();
  if (late_.empty()) return nullptr;
  ParcelPtr next = std::move(late_.begin()->second);
  late_.erase(late_.begin());
  next->begun_ = true;
  return next;
}

void Outbox::Acknowledge(const ParcelPtr& parcel) {
  const std::lock_guard lock(mutex_);
  if (!parcel->gone_) GiveUp(parcel);
}

// The row is gone. If the storage has it, or is at it, it is to be erased there.
void Outbox::GiveUp(const ParcelPtr& parcel) {
  const std::int64_t id = parcel->Row().id;
  parcel->gone_ = true;
  if (parcel->stored_ || parcel->storing_) erase_.insert(id);
  NoLongerUnstored(parcel);
  late_.erase(id);
  known_.erase(id);
}

void Outbox::NoLongerUnstored(const ParcelPtr& parcel) {
  if (unstored_.erase(parcel->Row().id) != 0) bytes_ -= SizeOf(parcel);
}

// What is stored from behind `id` on is to be read once more.
void Outbox::BackTo(std::int64_t id) {
  readTo_ = std::min(readTo_, id - 1);
  mayHaveMore_ = true;
}

void Outbox::PutBack(const ParcelPtr& parcel) {
  const std::lock_guard lock(mutex_);
  const auto putBack = [this](const ParcelPtr& each) {
    each->live_ = each->begun_ = each->queued_ = false;
    if (each->stored_) known_.erase(each->Row().id);
  };
  const std::string& cell = parcel->Row().cell;
  auto& first = held_.emplace(cell, parcel->Row().id).first->second;
  first = std::min(first, parcel->Row().id);
  putBack(parcel);
  std::erase_if(late_, [&](const auto& late) {
    if (late.second->Row().cell != cell) return false;
    first = std::min(first, late.first);
    putBack(late.second);
    return true;
  });
}

void Outbox::Release(const std::string& cell) {
  {
    const std::lock_guard lock(mutex_);
    const auto held = held_.find(cell);
    if (held == held_.end()) return;
    BackTo(held->second);
    held_.erase(held);
  }
  changed_.notify_all();
}

std::set<std::string> Outbox::TakeOwed() {
  const std::lock_guard lock(mutex_);
  return connected_ && live_.empty() ? std::exchange(owed_, {}) : std::set<std::string>();
}

// Rows that the broker cannot take in time come late. Its last values are then older ones, so the
// cells owe it a full picture.
void Outbox::Divert(Instant now) {
  while (!live_.empty() && now - live_.front()->came_ > LiveAtMost) {
    const ParcelPtr parcel = std::move(live_.front());
    live_.pop_front();
    if (parcel->gone_) continue;
    owed_.insert(parcel->Row().cell);
    parcel->live_ = false;
    if (parcel->stored_) known_.erase(parcel->Row().id);
    BackTo(parcel->Row().id);
  }
}

void Outbox::LimitMemory() {
  for (auto next = unstored_.begin(); next != unstored_.end() && bytes_ > memoryLimit_;) {
    const ParcelPtr parcel = (next++)->second;
    if (parcel->begun_ || parcel->storing_) continue;
    ++dropped_;
    GiveUp(parcel);
  }
}

Outbox::Work Outbox::WaitForWork(std::chrono::milliseconds longest, bool all) {
  std::unique_lock lock(mutex_);
  Work work = TakeWork(std::chrono::steady_clock::now(), all);
  if (!work.Empty()) return work;
  const bool soon = !unstored_.empty();
  changed_.wait_for(lock,
                    soon ? std::min<std::chrono::milliseconds>(longest, StorageRound) : longest);
  return TakeWork(std::chrono::steady_clock::now(), all);
}

Outbox::Work Outbox::TakeWork(Instant now, bool all) {
  Divert(now);
  Work work;
  for (const auto& [id, parcel] : unstored_) {
    if (connected_ && !all && now - parcel->came_ < StoreAfter) break;
    if (work.insert.size() == LargestInsert) break;
    parcel->storing_ = true;
    work.insert.push_back(parcel);
  }
  for (const std::int64_t id : erase_) {
    if (work.erase.size() == LargestErase) break;
    work.erase.push_back(id);
  }
  if (connected_ && mayHaveMore_ && late_.size() <= LateAhead / 2) work.readAfter = readTo_;
  return work;
}

void Outbox::Finish(const Work& work, Done done, Instant now) {
  {
    const std::lock_guard lock(mutex_);
    for (const ParcelPtr& parcel : work.insert) {
      parcel->storing_ = false;
      if (!done.written) continue;
      parcel->stored_ = true;
      NoLongerUnstored(parcel);
      const bool waits = !parcel->live_ && !parcel->begun_ && !parcel->queued_;
      if (waits) known_.erase(parcel->Row().id);
    }
    if (done.read && work.readAfter == readTo_ && connected_) {
      Read(std::move(*done.read), done.end, now);
    }
    if (done.written) {
      for (const std::int64_t id : work.erase) erase_.erase(id);
    }
  }
  if (done.read && news_) news_();
}

// Rows come back from the buffer. Behind its last one follow those that it could not take.
void Outbox::Read(std::vector<Row> rows, bool end, Instant now) {
  for (Row& row : rows) {
    const std::int64_t id = readTo_ = row.id;
    if (known_.contains(id) || erase_.contains(id)) continue;
    if (const auto held = held_.find(row.cell); held != held_.end()) {
      held->second = std::min(held->second, id);
      continue;
    }
    auto parcel = std::make_shared<Parcel>(std::move(row), now, false);
    parcel->stored_ = parcel->queued_ = true;
    known_.emplace(id, parcel);
    late_.emplace(id, std::move(parcel));
  }
  if (!end) return;
  mayHaveMore_ = false;
  for (const auto& [id, parcel] : unstored_) {
    if (parcel->live_ || parcel->begun_ || parcel->queued_ || held_.contains(parcel->Row().cell)) {
      continue;
    }
    parcel->queued_ = true;
    late_.emplace(id, parcel);
  }
}

bool Outbox::HasUnstored() const {
  const std::lock_guard lock(mutex_);
  return !unstored_.empty();
}

}  // namespace orif::gateway

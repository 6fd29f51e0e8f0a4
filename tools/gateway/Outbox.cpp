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

}  // namespace

void Outbox::Add(Row row, Instant now) {
  bool first = false;
  {
    const std::lock_guard lock(mutex_);
    row.id = nextId_++;
    auto parcel = std::make_shared<Parcel>(std::move(row), now, connected_);
    first = unstored_.empty() || !connected_;
    bytes_ += static_cast<std::int64_t>(parcel->Row().Size());
    known_.emplace(parcel->Row().id, parcel);
    if (connected_) live_.push_back(parcel);
    unstored_.push_back(std::move(parcel));
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
    owed_.clear();  // the next connection begins with everything
    held_.clear();
    std::vector<ParcelPtr> known;
    for (const auto& [id, parcel] : known_) known.push_back(parcel);
    for (const ParcelPtr& parcel : known) {
      parcel->live_ = parcel->begun_ = parcel->queued_ = false;
      if (parcel->stored_) Forget(parcel);
    }
  }
  changed_.notify_all();
}

ParcelPtr Outbox::NextLive(Instant now) {
  const std::lock_guard lock(mutex_);
  Divert(now);
  return Begin(live_);
}

ParcelPtr Outbox::NextLate() {
  const std::lock_guard lock(mutex_);
  ParcelPtr next = Begin(late_);
  if (mayHaveMore_ && late_.size() < LateAhead / 2) changed_.notify_all();
  return next;
}

ParcelPtr Outbox::Begin(std::deque<ParcelPtr>& queue) {
  while (!queue.empty()) {
    ParcelPtr next = std::move(queue.front());
    queue.pop_front();
    if (next->gone_) continue;
    next->begun_ = true;
    return next;
  }
  return nullptr;
}

void Outbox::Acknowledge(const ParcelPtr& parcel) {
  const std::lock_guard lock(mutex_);
  if (parcel->gone_) return;
  parcel->gone_ = true;
  if (parcel->stored_) erase_.push_back(parcel->Row().id);
  Forget(parcel);
}

void Outbox::PutBack(const ParcelPtr& parcel) {
  const std::lock_guard lock(mutex_);
  held_.insert(parcel->Row().cell);
  parcel->live_ = parcel->begun_ = parcel->queued_ = false;
  if (parcel->stored_) Forget(parcel);
}

void Outbox::Release(const std::string& cell) {
  {
    const std::lock_guard lock(mutex_);
    if (held_.erase(cell) == 0) return;
    readTo_ = 0;
    mayHaveMore_ = true;
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
    if (parcel->stored_) Forget(parcel);
    readTo_ = 0;
    mayHaveMore_ = true;
  }
}

void Outbox::Forget(const ParcelPtr& parcel) {
  if (known_.erase(parcel->Row().id) != 0)
    bytes_ -= static_cast<std::int64_t>(parcel->Row().Size());
}

void Outbox::LimitMemory() {
  if (bytes_ <= memoryLimit_) return;
  DropGone();
  for (const ParcelPtr& parcel : unstored_) {
    if (bytes_ <= memoryLimit_) return;
    if (parcel->gone_ || parcel->begun_ || parcel->storing_ || parcel->stored_) continue;
    parcel->gone_ = true;
    ++dropped_;
    Forget(parcel);
  }
}

Outbox::Work Outbox::WaitForWork(std::chrono::milliseconds longest, bool all) {
  std::unique_lock lock(mutex_);
  Work work = TakeWork(std::chrono::steady_clock::now(), all);
  if (!work.Empty()) return work;
  const bool soon = !unstored_.empty() || !erase_.empty();
  changed_.wait_for(lock,
                    soon ? std::min<std::chrono::milliseconds>(longest, StorageRound) : longest);
  return TakeWork(std::chrono::steady_clock::now(), all);
}

void Outbox::DropGone() {
  while (!unstored_.empty() && (unstored_.front()->gone_ || unstored_.front()->stored_)) {
    unstored_.pop_front();
  }
}

Outbox::Work Outbox::TakeWork(Instant now, bool all) {
  Divert(now);
  Work work;
  DropGone();
  for (const ParcelPtr& parcel : unstored_) {
    if (parcel->gone_) continue;
    if (connected_ && !all && now - parcel->came_ < StoreAfter) break;
    if (work.insert.size() == LargestInsert) break;
    parcel->storing_ = true;
    work.insert.push_back(parcel);
  }
  work.erase.swap(erase_);
  if (connected_ && mayHaveMore_ && late_.size() < LateAhead / 2) work.readAfter = readTo_;
  return work;
}

void Outbox::Finish(const Work& work, Done done, Instant now) {
  {
    const std::lock_guard lock(mutex_);
    for (const ParcelPtr& parcel : work.insert) {
      parcel->storing_ = false;
      if (!done.written) continue;
      parcel->stored_ = true;
      if (parcel->gone_) {
        erase_.push_back(parcel->Row().id);
      } else if (!parcel->live_ && !parcel->begun_ && !parcel->queued_) {
        Forget(parcel);
      }
    }
    if (!done.written) erase_.insert(erase_.end(), work.erase.begin(), work.erase.end());
    if (done.read && work.readAfter == readTo_ && connected_) {
      Read(std::move(*done.read), done.end, now);
    }
  }
  if (done.read && news_) news_();
}

// Rows come back from the buffer. Behind its last one follow those that it could not take.
void Outbox::Read(std::vector<Row> rows, bool end, Instant now) {
  for (Row& row : rows) {
    readTo_ = row.id;
    if (known_.contains(row.id) || held_.contains(row.cell)) continue;
    auto parcel = std::make_shared<Parcel>(std::move(row), now, false);
    parcel->stored_ = parcel->queued_ = true;
    bytes_ += static_cast<std::int64_t>(parcel->Row().Size());
    known_.emplace(parcel->Row().id, parcel);
    late_.push_back(std::move(parcel));
  }
  if (!end) return;
  mayHaveMore_ = false;
  for (const ParcelPtr& parcel : unstored_) {
    if (parcel->gone_ || parcel->stored_ || parcel->storing_ || parcel->live_ || parcel->begun_ ||
        parcel->queued_ || held_.contains(parcel->Row().cell))
      continue;
    parcel->queued_ = true;
    late_.push_back(parcel);
  }
}

bool Outbox::HasUnstored() const {
  const std::lock_guard lock(mutex_);
  return std::ranges::any_of(
      unstored_, [](const ParcelPtr& parcel) { return !parcel->gone_ && !parcel->stored_; });
}

}  // namespace orif::gateway

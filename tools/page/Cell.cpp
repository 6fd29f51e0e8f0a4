#include "tools/page/Cell.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orif::page {
namespace {

// An entry of the list of active alarms; of the others it is no news that something is there.
bool IsActiveAlarm(const live::Item& item) {
  constexpr std::string_view List = "ALM[";
  return item.name.size() > List.size() && item.name.starts_with(List) &&
         item.name[List.size()] >= '0' && item.name[List.size()] <= '9';
}

}  // namespace

void Cell::Begin(const live::Controller& controller) {
  for (const live::Tag& tag : controller.Tags()) names_.push_back({tag.name, tag.unit});
  tags_.resize(names_.size());
  for (const live::Item& item : controller.Items()) {
    if (!IsActiveAlarm(item)) continue;
    std::size_t message = item.first;
    for (std::size_t tag = item.first; tag < item.first + item.count; ++tag) {
      if (controller.Tags()[tag].field == "message") message = tag;
    }
    alarms_.push_back({item.first, item.count, message});
  }
  ++summaryVersion_;
}

void Cell::Refreshed(const live::Controller& controller, std::span<const std::size_t> changed,
                     bool good, Instant now) {
  const live::Time wall = controller.Settings().clock->Wall();
  const std::int64_t step = History::StepAt(now);
  const auto tags = controller.Tags();
  const std::lock_guard lock(mutex_);
  const bool first = version_ == 0;
  if (first) Begin(controller);
  ++version_;
  if (first) {
    for (std::size_t index = 0; index < tags.size(); ++index) Take(index, tags[index], wall, step);
  } else {
    for (const std::size_t index : changed) Take(index, tags[index], wall, step);
  }
  CountAlarms();
  if (!good) return;
  lastGood_ = now;
  MarkRead(step);
}

void Cell::Take(std::size_t index, const live::Tag& tag, live::Time now, std::int64_t step) {
  const bool good = tag.quality == live::Quality::Good;
  Tag& mine = tags_[index];
  mine.reading = static_cast<const live::Reading&>(tag);
  if (!good) mine.reading.time = now;
  mine.version = version_;
  const auto number = good ? tag.value.Number() : std::nullopt;
  mine.history.Add(step, number ? static_cast<float>(*number) : History::None);
}

void Cell::MarkRead(std::int64_t step) {
  const std::int64_t passed = std::clamp<std::int64_t>(step - lastStep_, 0, History::Steps);
  read_ <<= static_cast<std::size_t>(passed);
  read_.set(0);
  lastStep_ = std::max(step, lastStep_);
}

void Cell::CountAlarms() {
  std::size_t count = 0;
  std::string text;
  for (const Alarm& alarm : alarms_) {
    const auto begin = tags_.begin() + static_cast<std::ptrdiff_t>(alarm.first);
    const bool there =
        std::any_of(begin, begin + static_cast<std::ptrdiff_t>(alarm.count), [](const Tag& tag) {
          return tag.reading.quality == live::Quality::Good && !tag.reading.value.IsEmpty();
        });
    if (there && count++ == 0) text = tags_[alarm.message].reading.value.Text();
  }
  if (count == alarmCount_ && text == alarmText_) return;
  alarmCount_ = count;
  alarmText_ = std::move(text);
  ++summaryVersion_;
}

void Cell::SetState(std::string_view state, std::string_view reason) {
  const std::lock_guard lock(mutex_);
  if (state == state_ && reason == reason_) return;
  state_ = state;
  reason_ = reason;
  ++summaryVersion_;
}

Cell::Summary Cell::Summarize() const {
  const std::lock_guard lock(mutex_);
  return {host_, state_, reason_, tags_.size(), alarmCount_, alarmText_};
}

std::optional<std::chrono::milliseconds> Cell::Age(Instant now) const {
  const std::lock_guard lock(mutex_);
  if (!lastGood_) return {};
  return std::chrono::floor<std::chrono::milliseconds>(now - *lastGood_);
}

std::vector<Cell::TagName> Cell::Tags() const {
  const std::lock_guard lock(mutex_);
  return names_;
}

std::vector<Cell::Change> Cell::ChangesSince(std::uint64_t& version) const {
  std::vector<Change> changes;
  const std::lock_guard lock(mutex_);
  for (std::size_t tag = 0; tag < tags_.size(); ++tag) {
    if (tags_[tag].version > version) changes.push_back({tag, tags_[tag].reading});
  }
  version = version_;
  return changes;
}

std::optional<std::array<History::Step, History::Steps>> Cell::HistoryOf(std::string_view tag,
                                                                         Instant now) const {
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find(names_, tag, &TagName::name);
  if (found == names_.end()) return {};
  const auto index = static_cast<std::size_t>(found - names_.begin());
  const std::int64_t step = std::max(History::StepAt(now), lastStep_);
  auto steps = tags_[index].history.Read(step);
  // In a step without a good refresh nobody knows whether the value was still the same.
  for (std::size_t i = 0; i < History::Steps; ++i) {
    const std::int64_t back =
        static_cast<std::int64_t>(History::Steps - 1 - i) - (step - lastStep_);
    if (back < 0 || !read_[static_cast<std::size_t>(back)]) steps[i] = {};
  }
  return steps;
}

}  // namespace orif::page

#include "tools/page/History.h"

#include <algorithm>
#include <cmath>

namespace orif::page {

void History::Add(std::int64_t step, float value) {
  if (ring_.empty()) {
    if (std::isnan(value)) return;
    newest_ = step;
    Append(value);
    return;
  }
  constexpr auto All = static_cast<std::int64_t>(Steps);
  newest_ = std::max(newest_, step - All);  // what is older is overwritten anyway
  const float before = Newest().last;
  for (; newest_ < step; ++newest_) Append(before);
  Step& now = Newest();
  now = {std::fmin(now.least, value), std::fmax(now.greatest, value), value};
}

std::array<History::Step, History::Steps> History::Read(std::int64_t step) const {
  std::array<Step, Steps> all;
  if (ring_.empty()) return all;
  const auto size = static_cast<std::int64_t>(ring_.size());
  const float last = ring_[(begin_ + ring_.size() - 1) % ring_.size()].last;
  std::int64_t number = step - static_cast<std::int64_t>(Steps) + 1;
  for (Step& each : all) {
    const std::int64_t place = number++ - (newest_ - size + 1);
    if (place >= size) {
      each = {last, last, last};
    } else if (place >= 0) {
      each = ring_[(begin_ + static_cast<std::size_t>(place)) % ring_.size()];
    }
  }
  return all;
}

void History::Append(float value) {
  if (ring_.size() == Steps) {
    ring_[begin_] = {value, value, value};
    begin_ = (begin_ + 1) % Steps;
    return;
  }
  // No more memory than it takes in the end.
  if (ring_.size() == ring_.capacity()) ring_.reserve(std::min(2 * ring_.size() + 1, Steps));
  ring_.push_back({value, value, value});
}

}  // namespace orif::page

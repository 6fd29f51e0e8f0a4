#include "tools/gateway/Health.h"

#include <utility>

namespace orif::gateway {

Heartbeat& Health::Watch(std::string name) {
  const std::lock_guard lock(mutex_);
  return beats_.emplace_back(std::move(name));
}

std::vector<std::string> Health::Stuck(Heartbeat::Clock::time_point now) const {
  std::vector<std::string> stuck;
  const std::lock_guard lock(mutex_);
  for (const Heartbeat& beat : beats_) {
    if (now - beat.last_.load() > limit_) stuck.push_back(beat.name_);
  }
  return stuck;
}

}  // namespace orif::gateway

#include "tools/gateway/Sampler.h"

#include <cmath>
#include <limits>

#include "tools/gateway/Row.h"

namespace orif::gateway {
namespace {

constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

}  // namespace

void Sampler::Begin(const live::Controller& controller) {
  begun_ = true;
  std::vector<std::size_t> groupOfName;
  for (std::size_t group = 0; group < groups_.size(); ++group) {
    groupOfName.insert(groupOfName.end(), groups_[group].names.size(), group);
  }
  dueAt_.resize(groups_.size());
  heldOfTag_.assign(controller.Tags().size(), None);
  for (const live::Item& item : controller.Items()) {
    const std::size_t group = groupOfName[item.named];
    if (groups_[group].every.count() == 0 && groups_[group].deadBand == 0) continue;
    for (std::size_t tag = item.first; tag < item.first + item.count; ++tag) {
      heldOfTag_[tag] = held_.size();
      held_.push_back({tag, group, {}, live::Quality::Stale, false});
    }
  }
}

bool Sampler::IsToTell(const Held& held, const live::Tag& tag, bool due) const {
  if (tag.quality != held.quality) return true;
  if (!due) return false;
  const auto number = tag.value.Number();
  const auto told = held.told.Number();
  const bool within = number && told && !tag.value.IsEmpty() &&
                      std::abs(*number - *told) <= groups_[held.group].deadBand;
  return !within && tag.value != held.told;
}

std::string Sampler::Take(const live::Controller& controller, std::span<const std::size_t> changed,
                          Instant now, std::string_view time, bool& all) {
  if (!begun_) Begin(controller);
  const auto tags = controller.Tags();
  all = all || now >= fullAt_;
  if (all) fullAt_ = now + full_;
  std::string values;
  if (!all) {
    for (const std::size_t tag : changed) {
      if (heldOfTag_[tag] == None) {
        AddValue(values, tags[tag], time);
      } else {
        held_[heldOfTag_[tag]].changed = true;
      }
    }
  } else {
    for (const live::Tag& tag : tags) AddValue(values, tag, time);
  }
  std::vector<bool> due;
  for (std::size_t group = 0; group < groups_.size(); ++group) {
    due.push_back(all || now >= dueAt_[group]);
    if (due.back()) dueAt_[group] = now + groups_[group].every;
  }
  for (Held& held : held_) {
    const live::Tag& tag = tags[held.tag];
    if (!all) {
      if (!held.changed || !IsToTell(held, tag, due[held.group])) continue;
      AddValue(values, tag, time);
    }
    held.told = tag.value;
    held.quality = tag.quality;
    held.changed = false;
  }
  return values;
}

}  // namespace orif::gateway

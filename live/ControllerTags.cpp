#include <algorithm>
#include <limits>

#include "live/ControllerSelf.h"
#include "live/UsageError.h"
#include "orif/items/DataArea.h"

namespace orif::live {
namespace {

std::string FieldTag(const std::string& item, std::string_view field) {
  return field.empty() ? item : item + "." + std::string(field);
}

void CheckWords(std::int64_t words) {
  if (words <= DataArea::LastWord) return;
  throw UsageError("these items take " + std::to_string(words) +
                   " words of the controller's data area, which has " +
                   std::to_string(DataArea::LastWord) + "; name fewer at a time");
}

}  // namespace

Controller::Self::Self(live::Settings given) : settings(std::move(given)), backoff(settings.retry) {
  CheckSettings();
  if (!settings.clock) settings.clock = std::make_shared<Clock>();
  if (!settings.tellsLostLink) settings.tellsLostLink = TellsLostLink;
  for (const std::string& text : settings.tags) names.push_back(ParseName(text));
  MakeTags();
}

void Controller::Self::CheckSettings() const {
  if (settings.host.empty()) throw UsageError("no controller is named; say its host");
  if (settings.timeOut && (settings.timeOut->count() < 100 ||
                           settings.timeOut->count() > std::numeric_limits<std::int32_t>::max())) {
    throw UsageError("a time-out is 100 ms or more");
  }
  if (settings.port && (*settings.port < 1 || *settings.port > 65535)) {
    throw UsageError("a port is a number from 1 to 65535");
  }
  const Retry& retry = settings.retry;
  if (retry.first.count() <= 0 || retry.most < retry.first || retry.most > LongestWait ||
      !(retry.shortened >= 0 && retry.shortened <= 1)) {
    throw UsageError(
        "the first wait before a lost link is tried again is more than 0 ms, the longest no "
        "shorter and at most a day, and each is shortened by a part from 0 to 1");
  }
  if (!settings.component.empty() && settings.factory) {
    throw UsageError("a component and a factory exclude each other");
  }
}

void Controller::Self::MakeTags() {
  for (std::size_t i = 0; i < names.size(); ++i) MakeItems(i);
  std::int64_t words = 0;
  for (const auto& source : sources) words += WordsOf(source->name);
  CheckWords(words);
  // Tags have their places now; sources and signals may point at them.
  for (std::size_t i = 0; i < tags.size(); ++i) {
    Tag& tag = tags[i];
    if (!indices.emplace(tag.name, i).second) {
      throw UsageError(tag.name + " is named more than once");
    }
    Place& place = places[i];
    if (place.name->IsSignal() && tag.field != CommentField) {
      signals.Add(*place.name, place.index, tag);
      continue;
    }
    place.source->slots.push_back({place.index, place.field, &tag});
  }
  for (const auto& source : sources) {
    std::ranges::sort(source->slots, {},
                      [](const Slot& slot) { return std::make_pair(slot.index, slot.field); });
  }
  sink.emplace(tags, settings.fromController);
}

void Controller::Self::MakeItems(std::size_t named) {
  const Name& name = names[named];
  if (name.IsSignal() && name.last > LastSignal) {
    throw UsageError("'" + name.text + "': signals end at " + std::to_string(LastSignal));
  }
  CheckWords(WordsOf(name));  // before there is a tag for each
  const auto add = [&](const Place& place, std::string_view field, std::string_view unit) {
    const std::string item = name.Item(place.index);
    tags.push_back({{}, FieldTag(item, field), item, std::string(field), std::string(unit)});
    places.push_back(place);
  };
  Name comments = name;
  comments.field = CommentField;
  for (std::int64_t number = name.first; number <= name.last; ++number) {
    const auto index = static_cast<std::int32_t>(number);
    const std::size_t first = tags.size();
    if (!name.IsComment()) {
      Source* source = name.IsSignal() ? nullptr : &SourceOf(name, index);
      const auto fields = name.Fields();
      for (std::size_t field = 0; field < fields.size(); ++field) {
        if (!name.field.empty() && name.field != fields[field].name) continue;
        add({&name, source, index, field}, fields[field].name, fields[field].unit);
      }
    }
    if (name.IsComment() || (settings.comments && name.field.empty() && name.symbol->comment)) {
      add({&name, &SourceOf(comments, index), index, 0}, CommentField, "");
    }
    items.push_back({name.Item(index), named, first, tags.size() - first});
  }
}

// The source that a name's item is registered with: one for each name, and one for each item where
// the controller is asked for each. Fields of the same items share theirs.
Source& Controller::Self::SourceOf(const Name& name, std::int32_t index) {
  Name served = name;
  if (!name.IsComment()) served.field.clear();
  if (StandsAlone(name)) served.first = served.last = index;
  Source*& source = sourcesByName[served.Canonical()];
  if (source == nullptr) {
    sources.push_back(MakeSource(served));
    source = sources.back().get();
  }
  return *source;
}

std::size_t Controller::Self::IndexOf(std::string_view name) const {
  if (const auto found = indices.find(name); found != indices.end()) return found->second;
  const Name parsed = ParseName(name);
  if (parsed.first == parsed.last) {
    const std::string item = parsed.Item(parsed.first);
    if (const auto found = indices.find(FieldTag(item, parsed.field)); found != indices.end()) {
      return found->second;
    }
    const auto same = std::ranges::find(items, item, &Item::name);
    if (same != items.end() && parsed.field.empty()) {
      throw UsageError(
          "'" + std::string(name) + "' has fields; name one of them: " + tags[same->first].name,
          tags[same->first].name);
    }
  }
  throw UsageError("'" + std::string(name) + "' is none of the tags of " + settings.host);
}

}  // namespace orif::live

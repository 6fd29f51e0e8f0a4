#include "tools/page/Events.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <string_view>

#include <nlohmann/json.hpp>

#include "orif/version.h"

namespace orif::page {
namespace {

using Json = nlohmann::ordered_json;

// What of a text is no UTF-8 is shown as what it is, no character.
std::string Line(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string_view KindOf(const live::Value& value) {
  static constexpr auto Kinds =
      std::to_array<std::string_view>({"none", "bit", "number", "number", "text"});
  return Kinds.at(value.index());
}

}  // namespace

std::string CellsText(const std::string& plant, std::span<const CellPtr> cells) {
  Json all = Json::array();
  for (const CellPtr& cell : cells) {
    const Cell::Summary now = cell->Summarize();
    all.push_back({{"name", cell->Name()},
                   {"host", now.host},
                   {"state", now.state},
                   {"reason", now.reason},
                   {"tags", now.tags},
                   {"alarms", now.alarms},
                   {"alarm", now.alarm}});
  }
  return Line({{"plant", plant}, {"version", VersionText}, {"cells", std::move(all)}});
}

std::string AgesText(std::span<const CellPtr> cells, Cell::Instant now) {
  Json ages = Json::array();
  for (const CellPtr& cell : cells) {
    const auto age = cell->Age(now);
    ages.push_back(age ? Json(age->count()) : Json());
  }
  return Line(ages);
}

std::string TagsText(const std::string& name, const Cell* cell) {
  Json tags;
  if (cell != nullptr) {
    tags = Json::array();
    for (const Cell::TagName& tag : cell->Tags()) tags.push_back(Json::array({tag.name, tag.unit}));
  }
  return Line({{"cell", name}, {"tags", std::move(tags)}});
}

std::string ValuesText(std::span<const Cell::Change> changes) {
  Json values = Json::array();
  for (const auto& [tag, reading] : changes) {
    const auto since = std::chrono::floor<std::chrono::milliseconds>(reading.time);
    values.push_back(Json::array({tag, reading.value.Text(), KindOf(reading.value),
                                  live::ToText(reading.quality), since.time_since_epoch().count(),
                                  reading.reason ? reading.reason->ToText() : std::string()}));
  }
  return Line(values);
}

std::string HistoryText(std::span<const History::Step> steps) {
  const auto column = [&](float History::Step::*member) {
    Json all = Json::array();
    for (const History::Step& step : steps) {
      all.push_back(std::isfinite(step.*member) ? Json(step.*member) : Json());
    }
    return all;
  };
  return Line({{"step", History::StepLength.count()},
               {"least", column(&History::Step::least)},
               {"greatest", column(&History::Step::greatest)},
               {"last", column(&History::Step::last)}});
}

std::string Event(std::string_view name, std::string_view data) {
  return std::string("event: ").append(name).append("\ndata: ").append(data).append("\n\n");
}

}  // namespace orif::page

#include "tools/orif/Json.h"

#include <cmath>
#include <sstream>

#include "tools/orif/Text.h"

namespace orif::tool {

Json ToJson(const Value& value) {
  if (const bool* on = std::get_if<bool>(&value)) return *on;
  if (const auto* number = std::get_if<std::int64_t>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  const auto* real = std::get_if<float>(&value);
  return real != nullptr && std::isfinite(*real) ? Json(Widened(*real)) : Json();
}

Json ToJson(const live::Tag& tag) {
  const auto* text = std::get_if<std::string>(&tag.value);
  if (tag.field != "config" || text == nullptr) return ToJson(tag.value);
  Json numbers = Json::array();
  std::istringstream words(*text);
  for (int number = 0; words >> number;) numbers.push_back(number);
  return numbers;
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace orif::tool

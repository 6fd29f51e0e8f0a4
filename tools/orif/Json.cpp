#include "tools/orif/Json.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "tools/orif/Text.h"

namespace orif::tool {
namespace {

// JSON's own rules let some control characters stand in a text, and only there: DEL, and U+0080 to
// U+009F, whose first byte in UTF-8 is always the same.
std::string Escaped(const std::string& json) {
  constexpr char Del = '\x7F';
  constexpr char FirstByte = '\xC2';
  constexpr unsigned Last = 0x9F;
  std::string escaped;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const auto next = i + 1 < json.size() ? static_cast<unsigned char>(json[i + 1]) : 0U;
    const bool pair = json[i] == FirstByte && next <= Last;
    if (!pair && json[i] != Del) {
      escaped += json[i];
      continue;
    }
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\u%04x", pair ? next : unsigned{Del});
    escaped += code.data();
    if (pair) ++i;
  }
  return escaped;
}

}  // namespace

Json ToJson(const Value& value) {
  if (const bool* on = std::get_if<bool>(&value)) return *on;
  if (const auto* number = std::get_if<std::int64_t>(&value)) return *number;
  if (const auto* text = std::get_if<std::string>(&value)) return Utf8(*text);
  const auto* real = std::get_if<float>(&value);
  return real != nullptr && std::isfinite(*real) ? Json(Widened(*real)) : Json();
}

Json ToJson(const live::Tag& tag) {
  const Value& value = GoodValue(tag);
  const auto* text = std::get_if<std::string>(&value);
  if (tag.field != "config" || text == nullptr) return ToJson(value);
  Json numbers = Json::array();
  std::istringstream words(*text);
  for (int number = 0; words >> number;) numbers.push_back(number);
  return numbers;
}

Json FieldsToJson(std::span<const live::Tag> tags) {
  Json fields = Json::object();
  for (const live::Tag& tag : tags) {
    fields[tag.field.empty() ? "value" : tag.field] = ToJson(tag);
    if (tag.field != "state") continue;
    const Value& state = GoodValue(tag);
    fields["state_text"] = state.IsEmpty() ? Json() : Json(TaskStateText(state));
  }
  return fields;
}

Json ToJson(const live::Controller& controller) {
  Json items = Json::object();
  for (const live::Item& item : controller.Items()) {
    const auto tags = controller.Tags().subspan(item.first, item.count);
    if (tags.size() == 1) {
      items[tags.front().name] = ToJson(tags.front());
    } else {
      items[item.name] = FieldsToJson(tags);
    }
  }
  return items;
}

std::string JsonText(const Json& json) { return Escaped(json.dump(2)) + "\n"; }

std::string JsonLine(const Json& json) { return Escaped(json.dump()); }

}  // namespace orif::tool

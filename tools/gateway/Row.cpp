#include "tools/gateway/Row.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <variant>

#include "tools/orif/Text.h"

namespace orif::gateway {
namespace {

template <class Number>
void AppendNumber(std::string& json, Number number) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
  json.append(text.data(), end);
}

struct AppendValue {
  void operator()(std::monostate /*none*/) const { json += "null"; }
  void operator()(bool value) const { json += value ? "true" : "false"; }
  void operator()(std::int64_t value) const { AppendNumber(json, value); }
  void operator()(float value) const {
    if (std::isfinite(value)) {
      AppendNumber(json, value);
    } else {
      json += "null";
    }
  }
  void operator()(const std::string& value) const { AppendText(json, value); }

  std::string& json;
};

void AppendEscaped(std::string& json, unsigned char c) {
  constexpr std::string_view Digits = "0123456789abcdef";
  json += "\\u00";
  json += Digits[c >> 4U];
  json += Digits[c & 0xFU];
}

bool IsPlain(char c) { return c >= ' ' && c < 0x7F && c != '"' && c != '\\'; }

}  // namespace

std::string TimeText(live::Time time) {
  return tool::Iso8601(std::chrono::floor<std::chrono::milliseconds>(time));
}

void AppendText(std::string& json, std::string_view text) {
  json += '"';
  if (std::ranges::all_of(text, IsPlain)) {
    json += text;
  } else {
    const std::string whole = tool::Utf8(text);
    for (std::size_t i = 0; i < whole.size(); ++i) {
      const auto c = static_cast<unsigned char>(whole[i]);
      const auto next = i + 1 < whole.size() ? static_cast<unsigned char>(whole[i + 1]) : 0U;
      if (c == '"' || c == '\\') {
        (json += '\\') += whole[i];
      } else if (c < ' ' || c == 0x7F) {
        AppendEscaped(json, c);
      } else if (c == 0xC2 && next < 0xA0) {  // U+0080 to U+009F
        AppendEscaped(json, static_cast<unsigned char>(next));
        ++i;
      } else {
        json += whole[i];
      }
    }
  }
  json += '"';
}

void AddValue(std::string& values, const live::Tag& tag, std::string_view time) {
  // Tags are read together, few at another time than the one before.
  thread_local live::Time lastTime;
  thread_local std::string lastText = TimeText(lastTime);
  const bool good = tag.quality == live::Quality::Good;
  if (good && tag.time != lastTime) {
    lastTime = tag.time;
    lastText = TimeText(lastTime);
  }
  values.append(tag.name).append("\t\"value\":");
  std::visit(AppendValue{values}, static_cast<const live::Value&>(tag.value));
  values.append(R"(,"unit":")").append(tag.unit);
  values.append(R"(","quality":")").append(live::ToText(tag.quality));
  values.append(R"(","time":")").append(good ? std::string_view(lastText) : time).append("\"");
  if (tag.reason != nullptr) {
    values += ",\"reason\":";
    AppendText(values, tag.reason->ToText());
  }
  values += '\n';
}

RowValue TakeValue(std::string_view& values) {
  const std::string_view line = values.substr(0, values.find('\n'));
  values.remove_prefix(std::min(line.size() + 1, values.size()));
  const std::size_t tab = std::min(line.find('\t'), line.size());
  return {line.substr(0, tab), line.substr(std::min(tab + 1, line.size()))};
}

}  // namespace orif::gateway

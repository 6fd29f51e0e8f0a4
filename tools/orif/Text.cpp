#include "tools/orif/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace orif::tool {
namespace {

template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

}  // namespace

std::string Printable(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, '?');
  return text;
}

std::string Shortened(const std::string& text) {
  constexpr std::size_t Most = 60;
  if (text.size() <= Most) return Printable(text);
  std::size_t end = Most;
  while (end > 0 && (text[end] & 0xC0) == 0x80) --end;  // no half of a character
  return Printable(text.substr(0, end)) + "...";
}

std::string RealText(float value) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

double Widened(float value) {
  const std::string text = RealText(value);
  double wide = 0;
  std::from_chars(text.data(), text.data() + text.size(), wide);
  return wide;
}

std::string TableText(const Value& value) {
  return std::visit(Overloaded{[](std::monostate) { return std::string("-"); },
                               [](bool on) { return std::string(on ? "on" : "off"); },
                               [](std::int64_t number) { return std::to_string(number); },
                               [](float real) { return RealText(real); },
                               [](const std::string& text) { return Printable(text); }},
                    value);
}

std::string Joined(std::span<const std::string> texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : "; ") + text;
  return joined;
}

std::string Counted(std::int64_t count, std::string_view word) {
  return std::to_string(count) + ' ' + std::string(word) + (count == 1 ? "" : "s");
}

std::string Right(std::string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

// Counts characters, not bytes, so that columns after a name with accents line up.
std::string Left(std::string text, std::size_t width) {
  const auto shown = static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
  if (shown < width) text.append(width - shown, ' ');
  return text;
}

std::string WithoutBlanks(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string TaskStateText(const Value& value) {
  static constexpr auto States = std::to_array<const char*>({"aborted", "paused", "running"});
  const auto* state = std::get_if<std::int64_t>(&value);
  if (state == nullptr || *state < 0 || *state >= std::ssize(States)) {
    return "state " + TableText(value);
  }
  return States[static_cast<std::size_t>(*state)];
}

std::string CsvText(const Value& value) {
  if (std::holds_alternative<std::monostate>(value)) return {};
  if (const bool* on = std::get_if<bool>(&value)) return *on ? "1" : "0";
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return TableText(value);
}

std::string CsvLine(std::span<const std::string> fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (!line.empty() || &field != fields.data()) line += ',';
    if (field.find_first_of(",\"\r\n") == std::string::npos) {
      line += field;
      continue;
    }
    line += '"';
    for (const char c : field) line.append(c == '"' ? 2 : 1, c);
    line += '"';
  }
  return line + "\r\n";
}

}  // namespace orif::tool

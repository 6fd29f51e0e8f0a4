#include "tools/orif/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace orif::tool {
namespace {

struct Character {
  char32_t code;
  std::size_t length;  // in bytes
};

constexpr char32_t NoCharacter = 0xFFFD;
constexpr std::string_view NoCharacterText = "\xEF\xBF\xBD";

unsigned Byte(char c) { return static_cast<unsigned char>(c); }
bool Continues(char c) { return (Byte(c) & 0xC0) == 0x80; }

// The first character of a text that is not empty. A byte that begins none is NoCharacter.
Character First(std::string_view text) {
  constexpr Character None{NoCharacter, 1};
  constexpr auto Least = std::to_array<char32_t>({0, 0, 0x80, 0x800, 0x10000});  // by length
  const unsigned lead = Byte(text.front());
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF8 ? 0 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC0 || length == 0 || text.size() < length) return None;
  char32_t code = lead & (0x7FU >> length);
  for (const char c : text.substr(1, length - 1)) {
    if (!Continues(c)) return None;
    code = code << 6U | (Byte(c) & 0x3FU);
  }
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < Least[length] || code > 0x10FFFF || surrogate) return None;
  return {code, length};
}

bool IsControlCode(char32_t code) { return code < ' ' || (code >= 0x7F && code <= 0x9F); }

bool IsWide(char32_t code) {
  struct Range {
    char32_t first;
    char32_t last;
  };
  static constexpr auto Wide = std::to_array<Range>({{0x1100, 0x115F},
                                                     {0x2E80, 0x303E},
                                                     {0x3041, 0xA4CF},
                                                     {0xAC00, 0xD7A3},
                                                     {0xF900, 0xFAFF},
                                                     {0xFE30, 0xFE6F},
                                                     {0xFF00, 0xFF60},
                                                     {0xFFE0, 0xFFE6},
                                                     {0x1F300, 0x1FAFF},
                                                     {0x20000, 0x3FFFD}});
  return std::ranges::any_of(
      Wide, [&](const Range& each) { return code >= each.first && code <= each.last; });
}

}  // namespace

std::string Utf8(std::string_view text) {
  std::string utf8;
  for (; !text.empty();) {
    const Character first = First(text);
    utf8 += first.code == NoCharacter ? NoCharacterText : text.substr(0, first.length);
    text.remove_prefix(first.length);
  }
  return utf8;
}

std::string Printable(std::string_view text) {
  std::string printable;
  for (; !text.empty();) {
    const Character first = First(text);
    if (IsControlCode(first.code)) {
      printable += '?';
    } else {
      printable += first.code == NoCharacter ? NoCharacterText : text.substr(0, first.length);
    }
    text.remove_prefix(first.length);
  }
  return printable;
}

std::string PrintableLines(std::string_view text) {
  std::string lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines += Printable(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    lines += '\n';
    text.remove_prefix(end + 1);
  }
}

std::size_t Width(std::string_view text) {
  std::size_t most = std::string::npos;
  Cut(text, most);
  return std::string::npos - most;
}

std::string Cut(std::string_view text, std::size_t& width) {
  std::size_t end = 0;
  while (end < text.size()) {
    const Character next = First(text.substr(end));
    const std::size_t places = IsWide(next.code) ? 2 : 1;
    if (places > width) {
      width = 0;
      break;
    }
    width -= places;
    end += next.length;
  }
  return std::string(text.substr(0, end));
}

std::string Shortened(const std::string& text) {
  constexpr std::size_t Most = 60;
  if (text.size() <= Most) return Printable(text);
  std::size_t end = Most;
  while (end > 0 && Continues(text[end])) --end;  // no half of a character
  return Printable(text.substr(0, end)) + "...";
}

std::string RealText(float value) { return Value(value).Text(); }

double Widened(float value) {
  // Most values have few decimals. The rounded one is right if it gives the same real; a greater
  // number of digits is beyond what 32 bits tell apart.
  constexpr double MostDigits = 1 << 22;
  constexpr double Rounding = 0x1.8p52;  // adding it leaves no bits behind the point
  for (const double decimals : {1.0, 10.0, 100.0, 1000.0}) {
    const double digits = (value * decimals + Rounding) - Rounding;
    if (!(std::abs(digits) < MostDigits)) break;
    if (static_cast<float>(digits / decimals) == value) return digits / decimals;
  }
  const std::string text = RealText(value);
  double wide = 0;
  std::from_chars(text.data(), text.data() + text.size(), wide);
  return wide;
}

std::string TableText(const Value& value) { return Printable(value.Text()); }

std::string Joined(std::span<const std::string> texts, std::string_view between) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += between;
    joined += text;
  }
  return joined;
}

std::string Counted(std::int64_t count, std::string_view word) {
  return std::to_string(count) + ' ' + std::string(word) + (count == 1 ? "" : "s");
}

std::string Right(std::string text, std::size_t width) {
  if (const std::size_t shown = Width(text); shown < width) text.insert(0, width - shown, ' ');
  return text;
}

std::string Left(std::string text, std::size_t width) {
  if (const std::size_t shown = Width(text); shown < width) text.append(width - shown, ' ');
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

std::string Iso8601(std::chrono::sys_time<std::chrono::milliseconds> time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss clock{time - day};
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()),
                static_cast<int>(clock.subseconds().count()));
  return text.data();
}

std::string CsvText(const Value& value) {
  if (value.IsEmpty()) return {};
  if (const bool* on = std::get_if<bool>(&value)) return *on ? "1" : "0";
  return value.Text();
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

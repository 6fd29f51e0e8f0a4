#include "tools/orif/WriteRequest.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <type_traits>

#include "orif/items/DataArea.h"
#include "spelling/UpperCase.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"

namespace orif::tool {
namespace {

bool Has(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

// The number that the whole text is; none if it is anything else or does not fit.
template <class T>
std::optional<T> Parsed(std::string_view text) {
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  if constexpr (std::is_floating_point_v<T>) {
    if (!std::isfinite(number)) return {};
  }
  return number;
}

template <class T>
T NumberIn(const WriteRequest& request, std::string_view text, const std::string& wanted) {
  const auto number = Parsed<T>(text);
  if (!number) request.Refuse("'" + std::string(text) + "' is not " + wanted);
  return *number;
}

constexpr const char* WholeNumber = "a whole number of 32 bits";
constexpr const char* RealNumber = "a number";

// The written value decides the type of a register, unless the user names one.
Value RegisterValue(WriteRequest& request, const std::string& text) {
  const bool digits = text.find_first_not_of("+-0123456789") == std::string::npos;
  if (!request.item.type) request.item.type = digits ? NUMREG_INT : NUMREG_REAL;
  if (request.item.type == NUMREG_REAL) return NumberIn<float>(request, text, RealNumber);
  return std::int64_t{NumberIn<std::int32_t>(request, text, WholeNumber)};
}

Value TextValue(const WriteRequest& request, const std::string& text) {
  if (text.size() > DataArea::TextBytes) {
    request.Refuse("the text has " + std::to_string(text.size()) + " bytes; " +
                   std::to_string(DataArea::TextBytes) + " is the most");
  }
  return text;
}

Value BitValue(const WriteRequest& request, const std::string& text) {
  static const std::map<std::string, bool> words{
      {"ON", true}, {"1", true}, {"OFF", false}, {"0", false}};
  const auto word = words.find(spelling::UpperCase(text));
  if (word == words.end()) request.Refuse("a bit signal is on, off, 1 or 0");
  return word->second;
}

Value GroupValue(const WriteRequest& request, const std::string& text) {
  const auto number = NumberIn<std::int32_t>(request, text, WholeNumber);
  if (number < 0) request.Refuse("a group signal has no negative values");
  return std::int64_t{number};
}

void ParsePosition(WriteRequest& request, const std::string& text) {
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    const auto colon = part.find(':');
    const std::string value = colon == std::string::npos ? "" : part.substr(colon + 1);
    std::string name = spelling::UpperCase(part.substr(0, colon));
    Value parsed;
    if (name == spelling::UpperCase(PositionFields::Config)) {
      name = PositionFields::Config;
      ConfigNumbers(request, value);
      parsed = value;
    } else if (Has(PositionFields::Cartesian, name) || Has(PositionFields::Joint, name)) {
      parsed = NumberIn<float>(request, value, RealNumber);
    } else if (Has(PositionFields::Frames, name)) {
      parsed = std::int64_t{NumberIn<std::int16_t>(request, value, "a frame's number")};
    } else {
      request.Refuse(
          "a position has the parts x y z w p r e1 e2 e3 config, or j1 to j9, and uf ut; "
          "not '" +
          part + "'");
    }
    if (!request.parts.emplace(name, parsed).second) request.Refuse(name + " is named twice");
  }
  if (request.parts.empty()) {
    request.Refuse("name the parts of the position: x:400,y:0 or j1:10");
  }
  if (request.NamesAny(PositionFields::Joint) &&
      (request.NamesAny(PositionFields::Cartesian) || request.Names(PositionFields::Config))) {
    request.Refuse("a position is written in cartesian or in joint form, not in both");
  }
}

Value PlainValue(WriteRequest& request, const std::string& text) {
  switch (request.item.Is()) {
    case Kind::NumReg:
      return RegisterValue(request, text);
    case Kind::StringReg:
      return TextValue(request, text);
    case Kind::Bit:
      return BitValue(request, text);
    case Kind::Group:
      return GroupValue(request, text);
    case Kind::SysVar:
      if (request.item.type == SYSVAR_STRING) return TextValue(request, text);
      if (request.item.type == SYSVAR_REAL) return NumberIn<float>(request, text, RealNumber);
      return std::int64_t{NumberIn<std::int32_t>(request, text, WholeNumber)};
    default:
      request.Refuse(std::string(request.item.symbol->name) + " is read only");
  }
}

}  // namespace

void WriteRequest::Refuse(const std::string& reason) const {
  throw Error(Exit::Usage, "'" + text + "': " + reason);
}

bool WriteRequest::NamesAny(std::span<const std::string_view> fields) const {
  return std::ranges::any_of(fields, [&](std::string_view field) { return Names(field); });
}

std::vector<std::int16_t> ConfigNumbers(const WriteRequest& request, const std::string& text) {
  std::vector<std::int16_t> numbers;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    numbers.push_back(NumberIn<std::int16_t>(request, word, "a configuration number"));
  }
  if (numbers.size() != PositionRecord::ConfigCount) {
    request.Refuse("a configuration has seven numbers: config:1 0 1 0 0 0 0");
  }
  return numbers;
}

WriteRequest ParseWriteRequest(const std::string& text) {
  WriteRequest request;
  request.text = text;
  const auto equals = text.find('=');
  request.item = ParseDesignation(text.substr(0, equals));
  if (equals == std::string::npos) request.Refuse("an assignment has a value: " + text + "=5");
  if (request.item.first != request.item.last) {
    request.Refuse("one item at a time: " + request.Name() + text.substr(equals));
  }
  const std::string value = text.substr(equals + 1);
  if (request.IsPosition()) {
    ParsePosition(request, value);
  } else {
    request.parts[""] = PlainValue(request, value);
  }
  return request;
}

}  // namespace orif::tool

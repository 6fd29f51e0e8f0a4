#include "tools/orif/Assignment.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <type_traits>

#include "orif/items/DataArea.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"
#include "tools/orif/UpperCase.h"

namespace orif::tool {
namespace {

bool Has(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

// The number that is the whole text; none for anything else, and for what does not fit.
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
T NumberIn(const Assignment& assignment, std::string_view text, const std::string& wanted) {
  const auto number = Parsed<T>(text);
  if (!number) assignment.Refuse("'" + std::string(text) + "' is not " + wanted);
  return *number;
}

constexpr const char* WholeNumber = "a whole number of 32 bits";
constexpr const char* RealNumber = "a number";

// A register takes the type in which its value is written, unless a type is asked for.
Value RegisterValue(Assignment& assignment, const std::string& text) {
  const bool digits = text.find_first_not_of("+-0123456789") == std::string::npos;
  if (!assignment.item.type) assignment.item.type = digits ? NUMREG_INT : NUMREG_REAL;
  if (assignment.item.type == NUMREG_REAL) return NumberIn<float>(assignment, text, RealNumber);
  return std::int64_t{NumberIn<std::int32_t>(assignment, text, WholeNumber)};
}

Value TextValue(const Assignment& assignment, const std::string& text) {
  if (text.size() > DataArea::TextBytes) {
    assignment.Refuse("the text has " + std::to_string(text.size()) + " bytes; " +
                      std::to_string(DataArea::TextBytes) + " is the most");
  }
  return text;
}

Value BitValue(const Assignment& assignment, const std::string& text) {
  static const std::map<std::string, bool> words{
      {"ON", true}, {"1", true}, {"OFF", false}, {"0", false}};
  const auto word = words.find(UpperCase(text));
  if (word == words.end()) assignment.Refuse("a bit signal is on, off, 1 or 0");
  return word->second;
}

Value GroupValue(const Assignment& assignment, const std::string& text) {
  const auto number = NumberIn<std::int32_t>(assignment, text, WholeNumber);
  if (number < 0) assignment.Refuse("a group signal has no negative values");
  return std::int64_t{number};
}

void ParsePosition(Assignment& assignment, const std::string& text) {
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    const auto colon = part.find(':');
    const std::string value = colon == std::string::npos ? "" : part.substr(colon + 1);
    std::string name = UpperCase(part.substr(0, colon));
    Value parsed;
    if (name == UpperCase(PositionFields::Config)) {
      name = PositionFields::Config;
      ConfigNumbers(assignment, value);
      parsed = value;
    } else if (Has(PositionFields::Cartesian, name) || Has(PositionFields::Joint, name)) {
      parsed = NumberIn<float>(assignment, value, RealNumber);
    } else if (Has(PositionFields::Frames, name)) {
      parsed = std::int64_t{NumberIn<std::int16_t>(assignment, value, "a frame's number")};
    } else {
      assignment.Refuse(
          "a position has the parts x y z w p r e1 e2 e3 config, or j1 to j9, and uf ut; "
          "not '" +
          part + "'");
    }
    if (!assignment.parts.emplace(name, parsed).second) assignment.Refuse(name + " is named twice");
  }
  if (assignment.parts.empty()) {
    assignment.Refuse("name the parts of the position: x:400,y:0 or j1:10");
  }
  if (assignment.NamesAny(PositionFields::Joint) &&
      (assignment.NamesAny(PositionFields::Cartesian) ||
       assignment.Names(PositionFields::Config))) {
    assignment.Refuse("a position is written in cartesian or in joint form, not in both");
  }
}

Value PlainValue(Assignment& assignment, const std::string& text) {
  switch (assignment.item.Is()) {
    case Kind::NumReg:
      return RegisterValue(assignment, text);
    case Kind::StringReg:
      return TextValue(assignment, text);
    case Kind::Bit:
      return BitValue(assignment, text);
    case Kind::Group:
      return GroupValue(assignment, text);
    case Kind::SysVar:
      if (assignment.item.type == SYSVAR_STRING) return TextValue(assignment, text);
      if (assignment.item.type == SYSVAR_REAL) return NumberIn<float>(assignment, text, RealNumber);
      return std::int64_t{NumberIn<std::int32_t>(assignment, text, WholeNumber)};
    default:
      assignment.Refuse(std::string(assignment.item.symbol->name) + " is read only");
  }
}

}  // namespace

void Assignment::Refuse(const std::string& reason) const {
  throw Error(Exit::Usage, "'" + text + "': " + reason);
}

bool Assignment::NamesAny(std::span<const std::string_view> fields) const {
  return std::ranges::any_of(fields, [&](std::string_view field) { return Names(field); });
}

std::vector<std::int16_t> ConfigNumbers(const Assignment& assignment, const std::string& text) {
  std::vector<std::int16_t> numbers;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    numbers.push_back(NumberIn<std::int16_t>(assignment, word, "a configuration number"));
  }
  if (numbers.size() != PositionRecord::ConfigCount) {
    assignment.Refuse("a configuration has seven numbers: config:1 0 1 0 0 0 0");
  }
  return numbers;
}

Assignment ParseAssignment(const std::string& text) {
  Assignment assignment;
  assignment.text = text;
  const auto equals = text.find('=');
  assignment.item = ParseDesignation(text.substr(0, equals));
  if (equals == std::string::npos) assignment.Refuse("an assignment has a value: " + text + "=5");
  if (assignment.item.first != assignment.item.last) {
    assignment.Refuse("one item at a time: " + assignment.Name() + text.substr(equals));
  }
  const std::string value = text.substr(equals + 1);
  if (assignment.IsPosition()) {
    ParsePosition(assignment, value);
  } else {
    assignment.parts[""] = PlainValue(assignment, value);
  }
  return assignment;
}

}  // namespace orif::tool

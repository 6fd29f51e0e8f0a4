#include "tools/gateway/sparkplug/Metric.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "live/Name.h"
#include "tools/orif/Text.h"

namespace orif::gateway {
namespace {

// Fields of tasks and alarms that are numbers, and of positions that are no reals.
constexpr auto WholeFields = std::to_array<std::string_view>(
    {"line", "state", "id", "number", "severity", "cause_id", "cause_number", "UF", "UT"});

Datatype VariableType(const live::Name& name) {
  switch (name.type.value_or(SYSVAR_STRING)) {
    case SYSVAR_INT:
      return Datatype::Int32;
    case SYSVAR_REAL:
      return Datatype::Float;
    default:
      return Datatype::String;
  }
}

/// The text behind `key`, up to the next sign that ends it; `rest` goes on behind that.
std::string_view TakeUpTo(std::string_view& rest, std::string_view key, char end) {
  const std::size_t found = rest.find(key);
  if (found == std::string_view::npos) return {};
  rest.remove_prefix(found + key.size());
  const std::string_view text = rest.substr(0, rest.find(end));
  rest.remove_prefix(text.size());
  return text;
}

/// The first JSON value of `rest`, as text.
std::string_view TakeToken(std::string_view& rest) {
  std::size_t end = 0;
  if (rest.starts_with('"')) {
    for (end = 1; end < rest.size() && rest[end] != '"'; ++end) {
      if (rest[end] == '\\') ++end;
    }
    end = std::min(end + 1, rest.size());
  } else {
    end = std::min(rest.find(','), rest.size());
  }
  const std::string_view token = rest.substr(0, end);
  rest.remove_prefix(end);
  return token;
}

live::Value ParseToken(std::string_view token) {
  if (token.starts_with('"')) {
    const auto text = nlohmann::json::parse(token, nullptr, false);  // the file may be damaged
    return text.is_string() ? live::Value(text.get<std::string>()) : live::Value();
  }
  if (token == "true" || token == "false") return token == "true";
  if (const auto whole = tool::ParsedNumber<std::int64_t>(token)) return *whole;
  if (const auto real = tool::ParsedNumber<float>(token)) return *real;
  return {};
}

// "2026-11-22T00:31:58.123Z"
std::uint64_t ParseTime(std::string_view text) {
  const auto number = [text](std::size_t at, std::size_t length) {
    int value = 0;
    if (at + length <= text.size()) {
      std::from_chars(text.data() + at, text.data() + at + length, value);
    }
    return value;
  };
  namespace chrono = std::chrono;
  const chrono::sys_days day = chrono::year(number(0, 4)) /
                               chrono::month(static_cast<unsigned>(number(5, 2))) /
                               chrono::day(static_cast<unsigned>(number(8, 2)));
  const chrono::milliseconds time =
      day.time_since_epoch() + chrono::hours(number(11, 2)) + chrono::minutes(number(14, 2)) +
      chrono::seconds(number(17, 2)) + chrono::milliseconds(number(20, 3));
  return static_cast<std::uint64_t>(std::max<std::int64_t>(time.count(), 0));
}

// Texts and infinities fit into no number.
bool Fits(const std::optional<double>& number, Datatype type) {
  using Whole = std::numeric_limits<std::int32_t>;
  return number && std::isfinite(*number) &&
         (type != Datatype::Int32 || (*number >= Whole::min() && *number <= Whole::max()));
}

sparkplug::PropertyValue& AddProperty(sparkplug::Metric& metric, const char* key, Datatype type) {
  metric.mutable_properties()->add_keys(key);
  auto& value = *metric.mutable_properties()->add_values();
  value.set_type(static_cast<std::uint32_t>(type));
  return value;
}

}  // namespace

Datatype DatatypeOf(std::string_view tag) {
  const live::Name name = live::ParseName(tag);
  if (name.IsComment()) return Datatype::String;
  const bool whole = std::ranges::find(WholeFields, name.field) != WholeFields.end();
  if (name.IsPosition()) {
    if (name.field == "config") return Datatype::String;
    return whole ? Datatype::Int32 : Datatype::Float;
  }
  switch (name.Is()) {
    case live::Kind::Bit:
      return Datatype::Boolean;
    case live::Kind::Group:
      return Datatype::Int32;
    case live::Kind::NumReg:
      if (!name.type) return Datatype::Double;  // holds integers and reals
      return name.type == NUMREG_INT ? Datatype::Int32 : Datatype::Float;
    case live::Kind::SysVar:
      return VariableType(name);
    default:
      return whole ? Datatype::Int32 : Datatype::String;
  }
}

void SetValue(sparkplug::Metric& metric, Datatype type, const live::Value& value) {
  const auto number = value.Number();
  if (type == Datatype::String && !value.IsEmpty()) {
    const auto* text = std::get_if<std::string>(&value);
    metric.set_string_value(text != nullptr ? tool::Utf8(*text) : value.Text());
  } else if (!Fits(number, type)) {
    metric.set_is_null(true);
  } else if (type == Datatype::Boolean) {
    metric.set_boolean_value(*number != 0);
  } else if (type == Datatype::Float) {
    metric.set_float_value(static_cast<float>(*number));
  } else if (type == Datatype::Double) {
    const auto* real = std::get_if<float>(&value);
    metric.set_double_value(real != nullptr ? tool::Widened(*real) : *number);
  } else {
    metric.set_int_value(static_cast<std::uint32_t>(static_cast<std::int32_t>(*number)));
  }
}

void AddUnit(sparkplug::Metric& metric, std::string_view unit) {
  AddProperty(metric, "engUnit", Datatype::String).set_string_value(std::string(unit));
}

void AddQuality(sparkplug::Metric& metric, live::Quality quality) {
  constexpr std::uint32_t Good = 192;
  constexpr std::uint32_t Stale = 500;
  constexpr std::uint32_t Bad = 0;
  const bool stale = quality == live::Quality::Stale;
  AddProperty(metric, "Quality", Datatype::Int32)
      .set_int_value(quality == live::Quality::Good ? Good
                     : stale                        ? Stale
                                                    : Bad);
}

ReadValue ReadMembers(std::string_view members) {
  constexpr std::string_view Begin = "\"value\":";
  ReadValue read;
  std::string_view rest = members.substr(std::min(Begin.size(), members.size()));
  read.value = ParseToken(TakeToken(rest));
  const std::string_view quality = TakeUpTo(rest, R"("quality":")", '"');
  read.quality = quality == "good"    ? live::Quality::Good
                 : quality == "stale" ? live::Quality::Stale
                                      : live::Quality::Refused;
  // Neighbours mostly have the same time.
  thread_local std::string lastText;
  thread_local std::uint64_t lastTime = 0;
  const std::string_view time = TakeUpTo(rest, R"("time":")", '"');
  if (time != lastText) {
    lastText = time;
    lastTime = ParseTime(time);
  }
  read.time = lastTime;
  return read;
}

}  // namespace orif::gateway

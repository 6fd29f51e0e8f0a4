#include "live/PositionWrite.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace orif::live {
namespace {

constexpr std::size_t CartesianParts = 6;  // X to R, without E1 to E3
constexpr std::size_t ArmAxes = 6;         // a new joint form needs them all: no axis moves unnamed

}  // namespace

void PositionValues::Put(std::size_t field, Tag& tag, Sink& sink) {
  namespace Fields = PositionField;
  if (field >= Fields::UF) {
    sink.Put(tag, std::int64_t{field == Fields::UF ? UF : UT});
  } else if ((field < Fields::Joint ? validC : validJ) == 0) {
    sink.PutNothing(tag);
  } else if (field < Fields::Config) {
    sink.Put(tag, xyzwpr[field]);
  } else if (field >= Fields::Joint) {
    sink.Put(tag, joint[field - Fields::Joint]);
  } else {
    configText_.clear();
    for (const std::int16_t number : config) {
      std::array<char, 8> digits{};
      const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
      if (!configText_.empty()) configText_ += ' ';
      configText_.append(digits.data(), end);
    }
    sink.Put(tag, configText_);
  }
}

std::vector<std::int16_t> ConfigNumbers(const std::string& text) {
  std::vector<std::int16_t> numbers;
  std::string_view rest = text;
  while (true) {
    const auto begin = rest.find_first_not_of(' ');
    if (begin == std::string_view::npos) break;
    rest.remove_prefix(begin);
    std::int16_t number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    const auto length = static_cast<std::size_t>(end - rest.data());
    if (error != std::errc() || (length < rest.size() && rest[length] != ' ')) return {};
    numbers.push_back(number);
    rest.remove_prefix(length);
  }
  if (numbers.size() != PositionRecord::ConfigCount) return {};
  return numbers;
}

PositionWrite::PositionWrite(const PositionValues& before, std::span<const FieldValue> values,
                             std::string& complaint)
    : UF(before.UF), UT(before.UT) {
  namespace Fields = PositionField;
  std::array<float, PositionRecord::FloatCount> cartesian = before.xyzwpr;
  std::array<float, PositionRecord::FloatCount> axes = before.joint;
  config.assign(before.config.begin(), before.config.end());
  if (before.validC == 0) {
    cartesian.fill(0);
    config.assign(config.size(), 0);
  }
  if (before.validJ == 0) axes.fill(0);

  std::array<bool, PositionRecord::FloatCount> named{};  // of the form that is written
  std::size_t namedParts = 0;                            // up to the last one
  bool configNamed = false;
  bool jointNamed = false;
  for (const FieldValue& each : values) {
    const auto number = static_cast<float>(each.value->Number().value_or(0));
    if (each.field == Fields::UF) {
      UF = static_cast<std::int16_t>(number);
    } else if (each.field == Fields::UT) {
      UT = static_cast<std::int16_t>(number);
    } else if (each.field == Fields::Config) {
      config = ConfigNumbers(std::get<std::string>(*each.value));
      configNamed = true;
    } else {
      jointNamed = each.field >= Fields::Joint;
      const std::size_t part = jointNamed ? each.field - Fields::Joint : each.field;
      (jointNamed ? axes : cartesian)[part] = number;
      named[part] = true;
      namedParts = std::max(namedParts, part + 1);
    }
  }

  const bool framesOnly = namedParts == 0 && !configNamed;
  const bool asJoint = jointNamed || (framesOnly && before.validC == 0 && before.validJ != 0);
  const bool hasForm = (asJoint ? before.validJ : before.validC) != 0;
  const std::size_t required = asJoint ? ArmAxes : CartesianParts;
  if (!hasForm) {
    const auto missing = std::find(named.begin(), named.begin() + required, false);
    if (missing != named.begin() + required) {
      complaint = asJoint ? "the position has no joint form yet; name all parts from J1 to J6"
                          : "the position has no cartesian form yet; name all parts from X to R";
      return;
    }
  }
  if (asJoint) {
    const std::size_t count = std::max(namedParts, hasForm ? std::size_t{1} : ArmAxes);
    joint.assign(axes.begin(), axes.begin() + static_cast<std::ptrdiff_t>(count));
  } else {
    const std::size_t count = namedParts > CartesianParts ? cartesian.size() : CartesianParts;
    xyzwpr.assign(cartesian.begin(), cartesian.begin() + static_cast<std::ptrdiff_t>(count));
  }
}

}  // namespace orif::live

#include "simulator/scenario/Fields.h"

#include <charconv>
#include <cmath>

namespace orif::sim {

std::int64_t ReadWhole(const Node& node, std::int64_t least, std::int64_t most) {
  const bool whole = node.value.is_number_integer();
  const bool fits = whole && !(node.value.is_number_unsigned() &&
                               std::cmp_greater(node.value.get<std::uint64_t>(), most));
  const std::int64_t number = fits ? node.value.get<std::int64_t>() : 0;
  if (fits && number >= least && number <= most) return number;
  const std::string right =
      "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
  if (!node.value.is_number()) node.FailType(right);
  node.Fail("must be " + right + ", not " + node.value.dump());
}

float ReadReal(const Node& node) {
  if (!node.value.is_number()) node.FailType("a number");
  const auto number = node.value.get<double>();
  if (std::abs(number) > std::numeric_limits<float>::max()) {
    node.Fail("must be a number that a 32-bit real can hold, not " + node.value.dump());
  }
  return static_cast<float>(number);
}

Time ReadTime(const Node& node, Time longest) {
  struct Unit {
    std::string_view name;
    double milliseconds;
  };
  static constexpr auto Units =
      std::to_array<Unit>({{"ms", 1}, {"s", 1000}, {"min", 60000}, {"h", 3600000}});
  const auto most = static_cast<double>(longest.count());
  const std::string& text = node.Text();
  double number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::string_view rest(end, text.data() + text.size());
  for (const Unit& unit : Units) {
    const double milliseconds = number * unit.milliseconds;
    if (error == std::errc() && rest == unit.name && milliseconds >= 0 && milliseconds <= most) {
      return Time(std::llround(milliseconds));
    }
  }
  node.Fail("must be a time up to " + std::to_string(longest / std::chrono::hours(1)) +
            "h like \"250ms\", \"20s\", \"1.5min\" or \"2h\", not \"" + text + '"');
}

std::string ReadText(const Node& node, std::size_t most) {
  const std::string& text = node.Text();
  if (text.size() > most) {
    node.Fail("must have at most " + std::to_string(most) + " bytes, not " +
              std::to_string(text.size()));
  }
  if (text.find('\0') != text.npos) node.Fail("must not have a zero character");
  return text;
}

void Read(bool& value, const Node& node) {
  if (!node.value.is_boolean()) node.FailType("true or false");
  value = node.value.get<bool>();
}

void Read(const Node*& value, const Node& node) { value = &node; }

}  // namespace orif::sim

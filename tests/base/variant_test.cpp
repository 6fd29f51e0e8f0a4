#include "orif/base/Variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "orif/base/Checked.h"

namespace orif {
namespace {

template <class T, class Convert>
std::string Outcome(const Convert& convert) {
  try {
    const T value = convert();
    if constexpr (std::is_same_v<T, std::string>)
      return value;
    else
      return Variant(value).ToText();
  } catch (const Fault& fault) {
    return fault.what();
  }
}

struct Conversion {
  Variant value;
  std::string toInt32;
  std::string toFloat;
  std::string toBoolean;
  std::string toText;
};

TEST(Variant, ConvertsByTheRulesOfAutomation) {
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  const Conversion conversions[] = {
      {{}, "0", "0", "False", ""},
      {true, "-1", "-1", "True", "True"},
      {false, "0", "0", "False", "False"},
      {std::int16_t{-7}, "-7", "-7", "True", "-7"},
      {2147483647, "2147483647", "2.147484E+09", "True", "2147483647"},
      {0.5, "0", "0.5", "True", "0.5"},
      {1.5, "2", "1.5", "True", "1.5"},
      {2.5, "2", "2.5", "True", "2.5"},
      {-2.5, "-2", "-2.5", "True", "-2.5"},
      {2147483647.5, "Overflow", "2.147484E+09", "True", "2147483647.5"},
      {-2147483648.5, "-2147483648", "-2.147484E+09", "True", "-2147483648.5"},
      {1e300, "Overflow", "Overflow", "True", "1E+300"},
      {-Infinity, "Overflow", "Overflow", "True", "-inf"},
      {0.1, "0", "0.1", "True", "0.1"},
      {0.1F, "0", "0.1", "True", "0.1"},
      {1.0F / 3.0F, "0", "0.3333333", "True", "0.3333333"},
      {1.0 / 3.0, "0", "0.3333333", "True", "0.333333333333333"},
      {" +12 ", "12", "12", "True", " +12 "},
      {"-1.5e1", "-15", "-15", "True", "-1.5e1"},
      {"0", "0", "0", "False", "0"},
      {"trUE", "Type mismatch", "Type mismatch", "True", "trUE"},
      {"false", "Type mismatch", "Type mismatch", "False", "false"},
      {"", "Type mismatch", "Type mismatch", "Type mismatch", ""},
      {"5 apples", "Type mismatch", "Type mismatch", "Type mismatch", "5 apples"},
      {"+-5", "Type mismatch", "Type mismatch", "Type mismatch", "+-5"},
      {"inf", "Type mismatch", "Type mismatch", "Type mismatch", "inf"},
      {"1e999", "Overflow", "Overflow", "Overflow", "1e999"},
      {std::vector<float>{1}, "Type mismatch", "Type mismatch", "Type mismatch", "Type mismatch"},
  };
  for (const Conversion& c : conversions) {
    SCOPED_TRACE(c.toText + " as number " + c.toInt32);
    EXPECT_EQ(Outcome<std::int32_t>([&] { return c.value.ToInt32(); }), c.toInt32);
    EXPECT_EQ(Outcome<float>([&] { return c.value.ToFloat(); }), c.toFloat);
    EXPECT_EQ(Outcome<bool>([&] { return c.value.ToBoolean(); }), c.toBoolean);
    EXPECT_EQ(Outcome<std::string>([&] { return c.value.ToText(); }), c.toText);
  }
  EXPECT_EQ(Outcome<std::int32_t>([] { return Variant(std::nan("")).ToInt32(); }), "Overflow");
}

TEST(Variant, ArraysKeepTheirTypeAndBounds) {
  const Variant longs(std::vector<std::int32_t>{10, 20, 30}, -1);
  const ArrayView<const std::int32_t> view = longs.ToArray<std::int32_t>();
  EXPECT_EQ(view.LowerBound(), -1);
  EXPECT_EQ(view.UpperBound(), 1);
  EXPECT_EQ(view(1), 30);
  EXPECT_THROW(longs.ToArray<float>(), Fault);
  EXPECT_THROW(Variant(5).ToArray<std::int32_t>(), Fault);
  EXPECT_EQ(Variant(std::vector<float>()).ToArray<float>().Count(), 0);
  EXPECT_EQ(Variant(std::vector<float>{1}).ToArray<float>().LowerBound(), 0);
  EXPECT_EQ(Variant(std::vector<std::int32_t>{1}).ToArray<std::int32_t>().LowerBound(), 0);
  constexpr std::int32_t Top = std::numeric_limits<std::int32_t>::max();
  EXPECT_THROW(Variant(std::vector<float>{1, 2}, Top).ToArray<float>(), Fault);
}

TEST(ArrayView, ChecksEveryIndexInItsOwnBounds) {
  std::array<float, 4> values{1, 2, 3, 4};
  const ArrayView<float> view(values.data(), 3, 6);
  EXPECT_EQ(view(3), 1);
  EXPECT_EQ(view(6), 4);
  for (const std::int32_t outside : {2, 7, 0, -1, std::numeric_limits<std::int32_t>::max(),
                                     std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_THROW(view(outside), Fault) << outside;
  }
  const ArrayView<const float> constant = view;
  EXPECT_EQ(constant.LowerBound(), 3);
  EXPECT_EQ(ArrayView<float>(values).UpperBound(), 3);
  EXPECT_EQ(ArrayView<float>().Count(), 0);
  EXPECT_THROW(ArrayView<float>(values.data(), 3, 1), Fault);
  EXPECT_THROW(ArrayView<float>(nullptr, 0, 0), Fault);
}

TEST(Checked, OverflowIsAFault) {
  constexpr std::int32_t Top = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t Bottom = std::numeric_limits<std::int32_t>::min();
  EXPECT_THROW(Add(Top, 1), Fault);
  EXPECT_THROW(Subtract(Bottom, 1), Fault);
  EXPECT_THROW(Multiply(Top, 2), Fault);
  EXPECT_THROW(RangeLength(Bottom, Top), Fault);
  EXPECT_THROW(Narrow<std::int16_t>(32768), Fault);
  EXPECT_EQ(Narrow<std::int16_t>(-32768), -32768);
  EXPECT_EQ(ElementAddress(21, 7, 5, 2), 25);
}

}  // namespace
}  // namespace orif

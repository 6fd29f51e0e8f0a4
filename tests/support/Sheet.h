// A test that is a list of calls. RUN makes one after the other and writes down each and what came
// of it; what that is, the fixture tells in its Run. The sheet is compared with the file of the
// test's name in tests/transcripts/, which is read and checked by people; ORIF_WRITE_TRANSCRIPTS=1
// writes it.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Boundary.h"
#include "orif/base/Convert.h"

#define SHOW(value) (sheet_ << "    " << #value << " = " << Show(value) << '\n')
#define RUN(...) ORIF_SCAN(ORIF_SCAN(ORIF_SCAN(ORIF_RUN_FIRST(__VA_ARGS__))))
#define ORIF_RUN_FIRST(call, ...)                      \
  Run(#call, [&]() -> decltype(auto) { return call; }) \
      __VA_OPT__(, ORIF_RUN_REST ORIF_NONE(__VA_ARGS__))
// The calls behind the first one come up with every further scan.
#define ORIF_RUN_REST() ORIF_RUN_FIRST
#define ORIF_NONE ()
#define ORIF_SCAN(...) ORIF_SCAN3(ORIF_SCAN3(ORIF_SCAN3(__VA_ARGS__)))
#define ORIF_SCAN3(...) ORIF_SCAN2(ORIF_SCAN2(ORIF_SCAN2(__VA_ARGS__)))
#define ORIF_SCAN2(...) ORIF_SCAN1(ORIF_SCAN1(ORIF_SCAN1(__VA_ARGS__)))
#define ORIF_SCAN1(...) __VA_ARGS__

namespace orif::test {

/// `Fixture` is what the test has besides its sheet.
template <class Fixture>
class Sheet : public Fixture {
 protected:
  void Say(const char* text) { sheet_ << "\n-- " << text << '\n'; }

  void TearDown() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string path =
        std::string(ORIF_TRANSCRIPTS "/") + test.test_suite_name() + "." + test.name() + ".txt";
    if (std::getenv("ORIF_WRITE_TRANSCRIPTS") != nullptr) std::ofstream(path) << sheet_.str();
    std::stringstream expected;
    expected << std::ifstream(path).rdbuf();
    EXPECT_EQ(Comparable(sheet_.str()), Comparable(expected.str())) << path;
  }

  static std::string Show(bool value) { return value ? "true" : "false"; }
  static std::string Show(std::int16_t value) { return std::to_string(value); }
  static std::string Show(std::int32_t value) { return std::to_string(value); }
  static std::string Show(float value) { return convert::ToText(value); }
  static std::string Show(const std::string& value) {
    std::string text = "\"";
    for (const char c : value) {
      const auto byte = static_cast<unsigned char>(c);
      text += byte < 127 ? std::string(1, c) : '<' + std::to_string(byte) + '>';
    }
    return text + '"';
  }
  // Neighbours that are equal are shown once.
  template <class T>
  static std::string Show(const std::vector<T>& values) {
    std::string text;
    for (std::size_t i = 0, run = 0; i < values.size(); i += run) {
      for (run = 1; i + run < values.size() && values[i + run] == values[i];) ++run;
      text += Show(values[i]) + (run > 1 ? "(x" + std::to_string(run) + ") " : " ");
    }
    return text;
  }

  std::ostringstream sheet_;
};

}  // namespace orif::test

// A test that is a list of calls. RUN makes one and writes down the call and what came of it; what
// that is, the fixture tells in its Run. A call that the same line makes again says which turn it
// is. A short sheet is compared with the text in the test's Expect, a long one with the file of the
// test's name in tests/transcripts/. People read and check both. ORIF_WRITE_TRANSCRIPTS=1 writes
// the files; a text is copied from the diff of the failing test.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "Boundary.h"
#include "orif/base/Convert.h"
#include "tests/support/Difference.h"

#define RUN(call) (Begin(#call), Run([&]() -> decltype(auto) { return call; }))
#define SHOW(value) (At() << "    " << #value << " = " << Show(value) << '\n')

namespace orif::test {

/// `Fixture` is what the test has besides its sheet.
template <class Fixture>
class Sheet : public Fixture {
 protected:
  // A line is the one that asks: clang 14 has no std::source_location.
  void Begin(const char* call, int line = __builtin_LINE()) {
    At(line) << call;
    if (const int turn = ++turns_[line]; turn > 1) sheet_ << " (turn " << turn << ')';
  }
  void Say(const char* text, int line = __builtin_LINE()) { At(line) << "\n-- " << text << '\n'; }
  /// The sheet, whose next words come from a line of the test.
  std::ostream& At(int line = __builtin_LINE()) {
    sources_[std::ranges::count(sheet_.view(), '\n')] = line;
    return sheet_;
  }

  /// The whole sheet, from the line behind its opening quote on.
  void Expect(const char* sheet) { expected_ = sheet + 1; }

  void TearDown() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    std::string path = test.file();
    if (!expected_) {
      path =
          std::string(ORIF_TRANSCRIPTS "/") + test.test_suite_name() + "." + test.name() + ".txt";
      if (std::getenv("ORIF_WRITE_TRANSCRIPTS") != nullptr) std::ofstream(path) << sheet_.str();
      std::stringstream file;
      file << std::ifstream(path).rdbuf();
      expected_ = file.str();
    }
    const auto [diff, at] = Compare(Comparable(*expected_), Comparable(sheet_.str()));
    if (diff.empty()) return;
    const auto next = sources_.upper_bound(at);
    ADD_FAILURE_AT(test.file(), next == sources_.begin() ? test.line() : std::prev(next)->second)
        << "--- " << path << "\n+++ this run\n"
        << diff;
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

 private:
  std::map<std::ptrdiff_t, int> sources_;  // lines of the sheet, and of the test
  std::map<int, int> turns_;               // how often a line of the test has made its call
  std::optional<std::string> expected_;
};

}  // namespace orif::test

// A test that is a list of calls. RUN makes one and writes down the call, its result, what reached
// the lower layer and every trail line, whole and in order, between bars that show the blanks. The
// sheet is compared with the file of the test's name in tests/transcripts/, which is read and
// checked by people; ORIF_WRITE_TRANSCRIPTS=1 writes it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/RecordedCore.h"

#define RUN(...) Run(#__VA_ARGS__, [&]() -> decltype(auto) { return __VA_ARGS__; })
#define SHOW(value) (sheet_ << "    " << #value << " = " << Show(value) << '\n')

namespace orif::test {

class Transcript : public RecordedCore {
 protected:
  template <class Call>
  void Run(const char* text, const Call& call) {
    lower->Calls();
    sheet_ << text;
    const Lines lines = Trail([&] {
      if constexpr (std::is_void_v<decltype(call())>)
        call();
      else
        sheet_ << " -> " << Show(call());
    });
    sheet_ << '\n';
    const char* separator = "    calls ";
    const Calls calls = lower->Calls();
    for (const std::string& made : calls) {
      sheet_ << separator << made;
      separator = "; ";
    }
    if (!calls.empty()) sheet_ << '\n';
    for (const std::string& line : lines) sheet_ << "    |" << line << "|\n";
  }

  void Say(const char* text) { sheet_ << "\n-- " << text << '\n'; }

  void TearDown() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    const std::string path =
        std::string(ORIF_TRANSCRIPTS "/") + test.test_suite_name() + "." + test.name() + ".txt";
    if (std::getenv("ORIF_WRITE_TRANSCRIPTS") != nullptr) std::ofstream(path) << sheet_.str();
    std::stringstream expected;
    expected << std::ifstream(path).rdbuf();
    EXPECT_EQ(sheet_.str(), expected.str()) << path;
  }

  static std::string Show(bool value) { return value ? "true" : "false"; }
  static std::string Show(std::int16_t value) { return std::to_string(value); }
  static std::string Show(std::int32_t value) { return std::to_string(value); }
  static std::string Show(float value) { return convert::ToText(value); }
  static std::string Show(const std::string& value) {
    std::string text = "\"";
    for (const char c : value) {
      const auto byte = static_cast<unsigned char>(c);
      text += byte < 127 ? std::string(1, c) : "<" + std::to_string(byte) + ">";
    }
    return text + '"';
  }
  static std::string Show(const Variant& value) {
    const char* type = value.Is<std::string>() ? "text " : value.Is<float>() ? "real " : "integer ";
    return type + value.ToText();
  }
  template <class T>
  static std::string Show(const std::shared_ptr<T>& object) {
    return object ? "object" : "empty";
  }
  template <class T, std::size_t N>
  static std::string Show(const std::array<T, N>& values) {
    std::string text;
    for (const T& value : values) text += Show(value) + " ";
    return text;
  }

  std::ostringstream sheet_;
};

}  // namespace orif::test

// A sheet of calls to a Core over a recording lower layer: RUN writes down the call, its result,
// what reached the lower layer and every trail line, whole and in order, between bars that show the
// blanks.
#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>

#include "tests/support/RecordedCore.h"
#include "tests/support/Sheet.h"

/// RUN while the Core's own DebugLog is on.
#define TRACED(call) (core.DebugLog(true), RUN(call), core.DebugLog(false))

namespace orif::test {

constexpr std::int32_t Max = std::numeric_limits<std::int32_t>::max();

class Transcript : public Sheet<RecordedCore> {
 protected:
  template <class Call>
  void Run(const Call& call) {
    lower->Calls();
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

  using Sheet::Show;
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
};

/// A transcript of the first table of a connected Core.
class TableTranscript : public Transcript {
 protected:
  TableTranscript() {
    core.Connect("robot");
    table = core.DataTable();
  }

  std::shared_ptr<DataTable> table;  // ID 3
};

}  // namespace orif::test

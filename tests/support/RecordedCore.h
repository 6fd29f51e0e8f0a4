// The fixture of most tests: a Core over a recording lower core object, and the trail that its
// members leave. A second Core keeps the trail on, so that the first one's own DebugLog may be off.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <regex>

#include "Boundary.h"
#include "orif/orif.h"
#include "tests/support/RecordingDispatch.h"

namespace orif::test {

using Lines = std::vector<std::string>;
using Calls = std::vector<std::string>;

class RecordedCore : public testing::Test {
 protected:
  /// The messages that `action` writes, without time and thread; milliseconds are shown as "#ms".
  template <class Action>
  Lines Trail(const Action& action) {
    watcher_.DebugLog(true);  // the trail is on from here, so the next line of this kind is kept
    watcher_.DebugLog(true);
    action();
    return MessagesSince("[Core.Let DebugLog] ID=1, NewValue=True");
  }

  /// A number as the trail of this test shows it.
  static std::string Id(const auto& object) { return std::to_string(object->ObjectID()); }

  static constexpr auto NoLowerCore = [] { return std::shared_ptr<Dispatch>(); };

  std::shared_ptr<RecordingDispatch> lower = std::make_shared<RecordingDispatch>();

 private:
  Lines MessagesSince(const std::string& mark) {
    const std::string text = watcher_.GetDebugMessages();
    const std::regex stamp(R"(\d\d:\d\d:\d\d \d+ (?=\[))");
    std::optional<Lines> lines;  // of the last mark
    std::sregex_token_iterator message(text.begin(), text.end(), stamp, -1);
    for (; message != std::sregex_token_iterator(); ++message) {
      std::string line = *message;
      while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
      if (lines) lines->push_back(std::regex_replace(line, std::regex(R"(\d+ms$)"), "#ms"));
      if (line == mark) lines.emplace();
    }
    EXPECT_TRUE(lines) << "more lines than the trail keeps";
    return lines.value_or(Lines());
  }

  Core watcher_{NoLowerCore};

 protected:
  Core core{[this] { return Boundary(lower); }};
};

}  // namespace orif::test

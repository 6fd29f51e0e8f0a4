#include <gtest/gtest.h>

#include "orif/diag/modOrif.h"
#include "tests/support/RecordedCore.h"

namespace orif::test {
namespace {

const DispatchFactory NoCoreObject = [] { return std::shared_ptr<Dispatch>(); };

// The messages of the trail with time and thread taken off, line ends and all.
std::string Kept() {
  return std::regex_replace(modOrif::AllMessages(), std::regex(R"(\d\d:\d\d:\d\d \d+ )"), "");
}

TEST(DebugTrail, JoinsTheFirstTwoLinesWithoutALineEnd) {
  modOrif::TrailFlag(true);
  EXPECT_EQ(Kept(), "");
  modOrif::DebugOut("A");
  EXPECT_EQ(Kept(), "A");
  modOrif::DebugOut("B");
  EXPECT_EQ(Kept(), "AB\r\n");
  modOrif::DebugOut("C");
  EXPECT_EQ(Kept(), "AB\r\nC\r\n");
  modOrif::TrailFlag(false);
  modOrif::DebugOut("D");
  EXPECT_EQ(Kept(), "AB\r\nC\r\n");
  EXPECT_TRUE(modOrif::LastMessage().ends_with(" D"));
}

TEST(DebugTrail, KeepsTheLast100Lines) {
  modOrif::TrailFlag(true);
  std::string expected;
  for (int i = 1; i <= 150; ++i) {
    modOrif::DebugOut("<" + std::to_string(i) + ">");
    if (i > 50) expected += "<" + std::to_string(i) + ">" + (i > 51 ? "\r\n" : "");
  }
  EXPECT_EQ(Kept(), expected);
}

TEST(DebugTrail, FollowsTheLastDebugLogOfAnyCore) {
  Core one(NoCoreObject);
  Core two(NoCoreObject);
  EXPECT_EQ(one.ObjectID() + 1, two.ObjectID());
  one.DebugLog(true);
  two.AddUserMessage("kept");
  two.DebugLog(false);
  EXPECT_TRUE(one.DebugLog());
  one.IsConnected();  // traced, but the trail is off
  EXPECT_EQ(Kept(), "[Core.AddUserMessage] ID=2, kept[Core.Let DebugLog] ID=2, NewValue=False\r\n");
  EXPECT_TRUE(two.DebugMessage().ends_with("[Core.IsConnected] ID=1, Return False"));
}

TEST(DebugTrail, ALineHasTimeThreadAndMessage) {
  modOrif::DebugOut("message");
  EXPECT_TRUE(std::regex_match(modOrif::LastMessage(), std::regex(R"(\d\d:\d\d:\d\d \d+ message)")))
      << modOrif::LastMessage();
}

}  // namespace
}  // namespace orif::test

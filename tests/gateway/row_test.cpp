// What a refresh becomes: chosen values, in messages that hostile texts cannot break.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <vector>

#include "simulator/Network.h"
#include "tests/gateway/TagOf.h"
#include "tools/gateway/JsonForm.h"
#include "tools/gateway/Row.h"
#include "tools/gateway/Sampler.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

class Sampled : public testing::Test {
 protected:
  live::Settings Settings() {
    live::Settings settings{.host = "cell", .factory = network_.Factory()};
    for (const TagGroup& group : cell_.tags) {
      settings.tags.insert(settings.tags.end(), group.names.begin(), group.names.end());
    }
    return settings;
  }

  // The names that a refresh tells after so long.
  std::vector<std::string> After(std::chrono::milliseconds time, bool all = false) {
    now_ += time;
    controller_.Refresh();
    bool full = all;
    const std::string values =
        sampler_.Take(controller_, controller_.Changed(), now_, "2026-01-01T00:00:00.000Z", full);
    std::vector<std::string> names;
    for (std::string_view rest = values; !rest.empty();) names.emplace_back(TakeValue(rest).name);
    if (full) names.emplace_back("full");
    return names;
  }

  sim::Network network_;
  sim::Controller& robot_ = network_.AddController("cell");
  CellSettings cell_{.full = 1min,
                     .tags = {{.names = {"R[1]"}},
                              {.names = {"R[2]"}, .deadBand = 5},
                              {.names = {"R[3]"}, .every = 10s}}};
  live::Controller controller_{Settings()};
  Sampler sampler_{cell_};
  Sampler::Instant now_ = Sampler::Instant(1h);
};

TEST_F(Sampled, TellsWhatChangedWithinBandsAndPace) {
  EXPECT_THAT(After(0s), ElementsAre("R[1]", "R[2]", "R[3]", "full"));
  EXPECT_THAT(After(1s), IsEmpty());
  robot_.NumericRegister(1) = 1;
  robot_.NumericRegister(2) = 5;
  robot_.NumericRegister(3) = 1;
  EXPECT_THAT(After(1s), ElementsAre("R[1]"));
  robot_.NumericRegister(2) = 6;  // a drift that no single step shows
  EXPECT_THAT(After(1s), ElementsAre("R[2]"));
  EXPECT_THAT(After(7s), ElementsAre("R[3]"));  // changed long ago, due now
  robot_.NumericRegister(2) = 1;
  EXPECT_THAT(After(1s), IsEmpty());
  EXPECT_THAT(After(1s, true), ElementsAre("R[1]", "R[2]", "R[3]", "full"));
  EXPECT_THAT(After(1min), ElementsAre("R[1]", "R[2]", "R[3]", "full"));
  robot_.FaultInjection().CutLink();  // whatever the band and the pace
  EXPECT_THAT(After(1s), ElementsAre("R[1]", "R[2]", "R[3]"));
}

// A form says much to the wire; these tests are about rows.
class NoWire final : public Wire {
 public:
  bool Publish(const Message& /*message*/) override { return true; }
  int Room() const override { return 1; }
  int Subscribe(const std::string& /*topic*/) override { return 1; }
  void Ready() override {}
  void Release(const std::string& /*cell*/) override {}
  void Leave(const std::string& /*reason*/) override {}
};

TEST(Messages, KeepHostileTextsApart) {
  const std::string hostile = "\"},\n\t\x01\x7f\xC2\x85\xff\\ \xE2\x82\xAC";
  Row row{.cell = "press", .number = 3'000'000'001, .time = "T"};
  AddValue(row.values, TagOf("$A/B+#%:string", hostile), row.time);
  AddValue(row.values, TagOf("R[1]", 0.1F), row.time);
  live::Tag refused = TagOf("R[2]", {});
  refused.quality = live::Quality::Refused;
  refused.reason = std::make_shared<live::Reason>(live::Reason{"R[2]", "x", 1, hostile});
  AddValue(row.values, refused, row.time);

  std::vector<json> payloads;
  std::vector<std::string> topics;
  NoWire wire;
  JsonForm tags({.prefix = "orif"}, "hall", {});
  Message message;
  for (const auto opened = tags.Open(wire, row, false); opened.messages->Next(message);) {
    EXPECT_TRUE(message.retain);
    topics.push_back(message.topic);
    payloads.push_back(json::parse(message.payload));
  }
  EXPECT_THAT(topics, ElementsAre("orif/hall/press/$A%2FB%2B%23%25:string", "orif/hall/press/R[1]",
                                  "orif/hall/press/R[2]"));
  EXPECT_EQ(payloads[0]["value"], "\"},\n\t\x01\x7f\xC2\x85\xEF\xBF\xBD\\ \xE2\x82\xAC");
  EXPECT_EQ(payloads[1], json::parse(R"({"value": 0.1, "unit": "", "quality": "good",
      "time": "2023-11-14T22:13:20.123Z", "number": 3000000001})"));
  EXPECT_EQ(payloads[2]["value"], nullptr);
  EXPECT_EQ(payloads[2]["time"], "T");  // of the refresh that found it so
  EXPECT_EQ(payloads[2]["reason"], refused.reason->ToText().replace(
                                       refused.reason->ToText().find('\xff'), 1, "\xEF\xBF\xBD"));

  JsonForm rows({.prefix = "orif", .form = TopicSettings::Form::Rows}, "hall", {});
  const auto late = rows.Open(wire, row, true).messages;
  ASSERT_TRUE(late->Next(message));
  EXPECT_FALSE(message.retain);
  const json whole = json::parse(message.payload);
  EXPECT_EQ(whole["late"], true);
  EXPECT_EQ(whole["values"].size(), 3);
  EXPECT_EQ(whole["values"]["$A/B+#%:string"]["value"], payloads[0]["value"]);
  EXPECT_FALSE(late->Next(message));
}

}  // namespace
}  // namespace orif::gateway

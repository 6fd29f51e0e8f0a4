#include "tools/gateway/Configuration.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tools/orif/Secret.h"

namespace orif::gateway {
namespace {

using std::filesystem::path;
using testing::EndsWith;
using testing::HasSubstr;

class ConfigurationFile : public testing::Test {
 protected:
  ConfigurationFile() { std::filesystem::create_directories(directory_); }
  ~ConfigurationFile() override { std::filesystem::remove_all(directory_); }

  path Write(const std::string& name, const std::string& text) const {
    std::ofstream(directory_ / name) << text;
    return directory_ / name;
  }

  Configuration Load(const std::string& text) const {
    return LoadConfiguration(Write("cells.json", text));
  }

  // A good file but for what stands in the place of one part.
  std::string Mistake(const std::string& part, const std::string& instead) const {
    std::string text = Good;
    const auto at = text.find(part);
    if (at == text.npos) return "the test names no part of the file: " + part;
    try {
      Load(text.replace(at, part.size(), instead));
    } catch (const ConfigurationError& error) {
      return std::string(error.what()).substr((directory_ / "cells.json").string().size());
    }
    return "no mistake";
  }

  static constexpr const char* Good = R"({
  // The broker of hall 1.
  "gateway": "hall1",
  "broker": {"host": "broker.plant"},
  "buffer": {"file": "buffer.db", "limit": "2GB"},
  "defaults": {"period": "500ms", "tags": ["R[1-3]"]},
  "cells": [
    {"name": "press1", "host": "10.0.0.1"},
    {"name": "press2", "simulate": "demo", "period": "2s",
     "tags": [{"names": ["POS[0].X"], "dead_band": 0.5}, {"names": ["DO[1-2]"], "every": "10s"}]}
  ]
})";
  const path directory_ = path(testing::TempDir()) / ("configuration" + std::to_string(getpid()));
};

TEST_F(ConfigurationFile, GivesCellsWhatTheyLeaveOut) {
  const Configuration all = Load(Good);
  EXPECT_EQ(all.broker.client, "orif-hall1");
  EXPECT_EQ(all.broker.port, 1883);
  EXPECT_EQ(all.buffer.file, (directory_ / "buffer.db").string());
  EXPECT_EQ(all.buffer.limit, 2'000'000'000);
  EXPECT_FALSE(all.metrics);
  ASSERT_EQ(all.cells.size(), 2);
  EXPECT_EQ(all.cells[0].period, Milliseconds(500));
  EXPECT_EQ(all.cells[0].tags, (std::vector<TagGroup>{{.names = {"R[1-3]"}}}));
  EXPECT_EQ(all.cells[1].period, Milliseconds(2000));
  EXPECT_EQ(all.cells[1].tags[0].deadBand, 0.5F);
  EXPECT_EQ(all.cells[1].tags[1].every, Milliseconds(10000));
}

TEST_F(ConfigurationFile, IsRefusedWithLineAndRemedy) {
  const struct {
    const char *part, *instead, *says;
  } mistakes[] = {
      {R"("period": "2s")", R"("perod": "2s")",
       R"(:9: cells[1].perod: is not known here, did you mean "period"?)"},
      {R"("period": "2s")", R"("period": "0s")",
       ":9: cells[1].period: must be at least 20 ms, not \"0s\""},
      {R"("2GB")", R"("2TB")",
       R"(:5: buffer.limit: must be a size from "100KB" on like "500MB" or "1GB", not "2TB")"},
      {R"("press2")", R"("press1")", ":9: cells[1].name: is the name of two cells"},
      {R"("press2")", R"("a/b")",
       ":9: cells[1].name: must be a text without control characters and / + #"},
      {R"("press2")", R"("press2 ")", "with no blank at either end"},
      {R"("press2")", R"("a\u0007b")", "must be a text without control characters and / + #"},
      {R"("hall1")", R"("")", ":3: gateway: must be a text without control characters and / + #"},
      {R"("host": "10.0.0.1")", R"("port": 1)", R"(:8: cells[0]: must have "host" or "simulate")"},
      {R"("simulate": "demo")", R"("simulate": "none.json")", "none.json"},
      {R"("POS[0].X")", R"("POS[0].Q")", ":10: cells[1].tags[0].names[0]: "},
      {R"("R[1-3]")", R"("R[1-3]", "R[2]")", "R[2]"},
      {R"("broker.plant")", R"("broker.plant", "password_file": "p")",
       R"(must have "user" where it has "password_file")"},
      {R"("broker.plant")", R"("broker.plant", "tls": {"ca": "none.pem"})",
       "none.pem cannot be read"},
      {R"("broker.plant")", R"("user:password@broker")", ":4: broker.host: must be a name"},
      {R"("broker.plant")", R"("broker.plant", "user": "\u001b[31m")", ":4: broker.user: must be "},
      {R"("hall1")", R"("hall1", "topics": {"form": "sparkplug", "group": "g", "prefix": "p"})",
       ":3: topics.prefix: is not for the form sparkplug"},
      {R"("broker.plant")", R"("broker.plant", "protocol": "4")",
       "is not known; known are 3.1.1, 5"},
      {R"("hall1")", R"("hall1", "page": {"address": "10.0.0.5"})",
       R"(:3: page: must have a "token_file", since other computers reach 10.0.0.5)"},
      {R"("hall1")", R"("hall1", "page": {"token_file": "cells.json"})", "the token in "},
      {R"("press1",)", R"("press1")", ":8:"},
  };
  for (const auto& mistake : mistakes) {
    EXPECT_THAT(Mistake(mistake.part, mistake.instead), HasSubstr(mistake.says));
  }
  EXPECT_THROW(LoadConfiguration(directory_ / "none.json"), ConfigurationError);
  EXPECT_THROW(LoadConfiguration(directory_), ConfigurationError);
  EXPECT_THROW(Load(R"({"gateway": "g", "broker": {"host": "b"}, "buffer": {"file": "b.db"},
                        "cells": []})"),
               ConfigurationError);
}

TEST_F(ConfigurationFile, SecretsAreFirstLines) {
  EXPECT_EQ(tool::Secret(Write("password", "a b \r\nmore")), "a b ");
  EXPECT_THROW(tool::Secret(Write("empty", "")), std::runtime_error);
}

}  // namespace
}  // namespace orif::gateway

// The log file and the settings, seen from outside: a program with the library in it runs in a
// directory and with settings of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;

enum class Linkage { Static, Shared };

class LogFile : public testing::TestWithParam<Linkage> {
 protected:
  void SetUp() override {
    const testing::TestInfo& info = *testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info.name();
    std::ranges::replace(name, '/', '-');
    root = fs::temp_directory_path() / ("orif-" + name);
    fs::remove_all(root);
    fs::create_directories(root / "program");
    fs::create_directories(root / "library");
    const bool isStatic = GetParam() == Linkage::Static;
    fs::copy_file(isStatic ? LOG_PROBE_STATIC : LOG_PROBE_SHARED, root / "program/probe");
    fs::copy_file(ORIF_SHARED, root / "library" / fs::path(ORIF_SHARED_SONAME));
    module = root / (isStatic ? "program" : "library");
  }
  void TearDown() override { fs::remove_all(root); }

  void Settings(const std::string& text) {
    fs::create_directories(root / "ORVEX");
    std::ofstream(root / "ORVEX/Setting.ini") << text;
  }

  // What the program writes, standard error included.
  std::string Run(const std::string& command = "", const std::string& before = "") {
    const std::string line = "cd / && " + before + " XDG_CONFIG_HOME=" + root.string() +
                             " LD_LIBRARY_PATH=" + (root / "library").string() + " " +
                             (root / "program/probe").string() +
                             (command.empty() ? "" : " '" + command + "'") + " 2>&1";
    std::FILE* pipe = popen(line.c_str(), "r");
    std::string output;
    std::array<char, 256> buffer;
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr) output += buffer.data();
    EXPECT_EQ(pclose(pipe), 0) << output;
    return output;
  }

  std::vector<fs::path> Logs() const {
    std::vector<fs::path> logs;
    for (const auto& entry : fs::directory_iterator(module)) {
      if (entry.path().extension() == ".txt") logs.push_back(entry.path());
    }
    return logs;
  }

  static std::vector<std::string> Lines(const fs::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  fs::path root;
  fs::path module;
};

TEST_P(LogFile, StandsBesideTheModuleThatContainsTheLibrary) {
  Settings("PortNumber=1\n DebugOut = True \n");
  const std::string output = Run();
  ASSERT_EQ(Logs().size(), 1U);
  EXPECT_TRUE(std::regex_match(Logs()[0].filename().string(), std::regex(R"(log\d{12}\.txt)")))
      << Logs()[0];
  EXPECT_THAT(Lines(Logs()[0]),
              ElementsAre("ORVEX Debug Out V" ORIF_VERSION,
                          EndsWith("[Core.Class_initialize] ID=1, Err Object variable not set"),
                          EndsWith("[Core.AddUserMessage] ID=1, before"),
                          EndsWith("[Core.AddUserMessage] ID=1, after")));
  EXPECT_THAT(output, EndsWith("[Core.AddUserMessage] ID=1, after\n"));
}

TEST_P(LogFile, IsNotMadeUnlessTheSettingSaysSo) {
  Run();
  for (const char* settings : {"", "DebugOut=False", "DebugOut=", "DebugOut=0", "DebugOut=perhaps",
                               "debugout=True", "[DebugOut]\nTrue", "=\n==\nDebugOut"}) {
    Settings(settings);
    Run();
    EXPECT_TRUE(Logs().empty()) << settings;
  }
  fs::remove(root / "ORVEX/Setting.ini");
  fs::create_directory(root / "ORVEX/Setting.ini");  // unreadable
  Run();
  EXPECT_TRUE(Logs().empty());
  fs::remove(root / "ORVEX/Setting.ini");
  Settings("DebugOut=-1");
  Run();
  EXPECT_EQ(Logs().size(), 1U);
}

TEST_P(LogFile, AStartUpErrorIsShownOnceAndDisturbsNothing) {
  Settings("DebugOut=True");
  // No file may grow: creating the log file fails at its first line, and so does every later one.
  const std::string output = Run("", "trap '' XFSZ; ulimit -f 0;");
  EXPECT_TRUE(std::regex_match(
      output,
      std::regex(R"(\[Main\] Make debug out File too large\n\S+ \d+ \[.*\] ID=1, after\n)")))
      << output;
}

TEST_P(LogFile, LaterLinesTryAgain) {
  Settings("DebugOut=True");
  Run("rm " + (module / "log*.txt").string());
  ASSERT_EQ(Logs().size(), 1U);
  EXPECT_THAT(Lines(Logs()[0]), ElementsAre(EndsWith("[Core.AddUserMessage] ID=1, after")));
  fs::remove(Logs()[0]);
  const std::string logs = (module / "log*.txt").string();
  EXPECT_THAT(Run("f=$(echo " + logs + "); rm $f; mkdir $f"), EndsWith("ID=1, after\n"));
}

INSTANTIATE_TEST_SUITE_P(Linkage, LogFile, testing::Values(Linkage::Static, Linkage::Shared),
                         [](const auto& test) {
                           return test.param == Linkage::Static ? "Static" : "Shared";
                         });

}  // namespace

// The log file and the settings, seen from outside: a program with the library in it runs in a
// directory and with settings of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "orif/orif.h"

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
  std::string Run(const std::string& command = "", const std::string& before = "",
                  const std::string& threads = "") {
    const std::string line = "cd / && " + before + " XDG_CONFIG_HOME=" + root.string() +
                             " LD_LIBRARY_PATH=" + (root / "library").string() + " " +
                             (root / "program/probe").string() +
                             (command.empty() ? "" : " '" + command + "' " + threads) + " 2>&1";
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
  fs::remove(root / "ORVEX/Setting.ini");
  ASSERT_EQ(mkfifo((root / "ORVEX/Setting.ini").c_str(), 0600), 0);
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
  const std::string output = Run("", "ulimit -f 0;");
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

TEST_P(LogFile, TakesThePlaceOfLinksAndPipes) {
  Settings("DebugOut=True");
  const auto put = [this](std::time_t second) {
    std::array<char, 32> name{};
    std::strftime(name.data(), name.size(), "log%y%m%d%H%M%S.txt", std::gmtime(&second));
    const fs::path path = module / name.data();
    if (second % 2 == 0)
      mkfifo(path.c_str(), 0600);
    else
      fs::create_symlink(root / "elsewhere", path);
  };
  for (int second = 0; second < 20; ++second) put(std::time(nullptr) + second);
  Run();
  std::vector<fs::path> logs = Logs();
  std::erase_if(logs, [](const fs::path& log) {
    return fs::symlink_status(log).type() != fs::file_type::regular;
  });
  ASSERT_EQ(logs.size(), 1U);
  EXPECT_EQ(Lines(logs[0]).size(), 4U);
  // What comes there later is neither followed nor waited for.
  for (const char* intruder : {"ln -s ", "mkfifo "}) {
    for (const auto& log : Logs()) fs::remove(log);
    const std::string target = *intruder == 'l' ? (root / "elsewhere").string() + " " : "";
    Run("f=$(echo " + (module / "log*.txt").string() + "); rm $f; " + intruder + target + "$f");
  }
  EXPECT_FALSE(fs::exists(root / "elsewhere"));
}

TEST_P(LogFile, TakesWholeLinesFromAllThreads) {
  Settings("DebugOut=True");
  Run("true", "", "4");
  const std::vector<std::string> lines = Lines(Logs().at(0));
  EXPECT_EQ(lines.size(), 4U + 4 * 201);
  const std::regex whole(
      R"(\d\d:\d\d:\d\d \d+ \[Core\.\w+\] ID=\d, .*(before|on and on and on|set|after))");
  for (std::size_t i = 1; i < lines.size(); ++i) {
    EXPECT_TRUE(std::regex_match(lines[i], whole)) << lines[i];
  }
}

// The loader ignores where such a program wants its libraries from, so only the static one starts.
TEST_P(LogFile, AProgramWithMoreRightsThanItsCallerTakesNoSettingsFromIt) {
  std::stringstream status;
  status << std::ifstream("/proc/self/status").rdbuf();
  if (GetParam() == Linkage::Shared || geteuid() != 0 ||
      status.str().find("NoNewPrivs:\t0") == std::string::npos) {
    GTEST_SKIP() << "such a program cannot be made here";
  }
  Settings("DebugOut=True");
  fs::permissions(module, fs::perms::all);
  const std::string caller = "ASAN_OPTIONS=detect_leaks=0 setpriv --reuid=65534 --clear-groups env";
  Run("", caller);
  EXPECT_EQ(Logs().size(), 1U);
  for (const auto& log : Logs()) fs::remove(log);
  fs::permissions(root / "program/probe", fs::perms::set_uid, fs::perm_options::add);
  Run("", caller);
  EXPECT_TRUE(Logs().empty());
}

TEST(DebugTrail, AForkedChildShowsItsOwnThread) {
  const orif::Core core([] { return std::shared_ptr<orif::Dispatch>(); });
  core.AddUserMessage("parent");
  const pid_t child = fork();
  if (child == 0) {
    core.AddUserMessage("child");
    _exit(core.DebugMessage().find(" " + std::to_string(getpid()) + " [") == std::string::npos);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(Linkage, LogFile, testing::Values(Linkage::Static, Linkage::Shared),
                         [](const auto& test) {
                           return test.param == Linkage::Static ? "Static" : "Shared";
                         });

}  // namespace

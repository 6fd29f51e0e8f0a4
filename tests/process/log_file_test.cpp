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
#include <cstdlib>
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
    environment = "XDG_CONFIG_HOME=" + root.string();
  }
  void TearDown() override { fs::remove_all(root); }

  void Settings(const std::string& text, const fs::path& directory = "ORVEX") {
    fs::create_directories(root / directory);
    std::ofstream(root / directory / "Setting.ini") << text;
  }

  // What the program writes, standard error included.
  std::string Run(const std::string& command = "", const std::string& before = "",
                  const std::string& threads = "") {
    const std::string line = "cd / && " + before + " env -u XDG_CONFIG_HOME -u HOME " +
                             environment + " LD_LIBRARY_PATH=" + (root / "library").string() + " " +
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

  void RemoveLogs() const {
    for (const fs::path& log : Logs()) fs::remove(log);
  }

  // What a log file is called that is made at this moment.
  static std::string NameNow() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 64> name{};
    std::strftime(name.data(), name.size(), "log%y%m%d%H%M%S.txt", std::localtime(&now));
    return name.data();
  }

  static std::vector<std::string> Lines(const fs::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  fs::path root;
  fs::path module;
  std::string environment;  // where the settings are, among other things
};

TEST_P(LogFile, StandsBesideTheModuleThatContainsTheLibrary) {
  Settings("PortNumber=1\n DebugOut = True \n");
  setenv("TZ", "EAST-9", 1);  // the local time is not the world's
  const std::string before = NameNow();
  const std::string output = Run();
  ASSERT_EQ(Logs().size(), 1U);
  const std::string name = Logs()[0].filename();
  EXPECT_LE(before, name);
  EXPECT_LE(name, NameNow());
  EXPECT_THAT(Lines(Logs()[0]),
              ElementsAre(std::string("ORVEX Debug Out V") + orif::VersionText,
                          EndsWith("[Core.Class_initialize] ID=1, Err Object variable not set"),
                          EndsWith("[Core.AddUserMessage] ID=1, before"),
                          EndsWith("[Core.AddUserMessage] ID=1, after")));
  EXPECT_THAT(output, EndsWith("[Core.AddUserMessage] ID=1, after\n"));
  RemoveLogs();
  environment += " PROBE_TIME=1117553462";  // 15:31:02 on 31 May 2005, UTC
  Run();
  EXPECT_THAT(Logs(), ElementsAre(module / "log050601003102.txt"));
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

TEST_P(LogFile, SettingsStandBelowHomeUnlessAnotherDirectoryIsNamed) {
  Settings("DebugOut=True", "home/.config/ORVEX");
  const std::string home = " HOME=" + (root / "home").string();
  for (const auto& [variables, logs] : {std::pair(home, 1U),
                                        {"XDG_CONFIG_HOME=" + home, 1U},
                                        {"XDG_CONFIG_HOME=." + root.string() + home, 1U},
                                        {"XDG_CONFIG_HOME=" + root.string() + home, 0U},
                                        {"", 0U}}) {
    environment = variables;
    Run();
    EXPECT_EQ(Logs().size(), logs) << variables;
    RemoveLogs();
  }
}

// No file may grow beyond a limit. The header that does not fit is an error of the start, which is
// shown once; a later line is cut or dropped.
TEST_P(LogFile, ALineThatDoesNotFitDisturbsNothing) {
  Settings("DebugOut=True");
  const std::string header = std::string("ORVEX Debug Out V") + orif::VersionText + "\n";
  for (const std::size_t limit :
       {std::size_t{0}, std::size_t{9}, header.size() - 1, header.size(), header.size() + 9}) {
    const bool fits = limit >= header.size();
    const std::string output = Run("", "prlimit --fsize=" + std::to_string(limit));
    const std::string error = fits ? "" : R"(\[Main\] Make debug out File too large\n)";
    EXPECT_TRUE(std::regex_match(output, std::regex(error + R"(\S+ \d+ \[.*\] ID=1, after\n)")))
        << limit << ": " << output;
    if (fits) {
      ASSERT_EQ(Logs().size(), 1U);
      EXPECT_EQ(Lines(Logs()[0])[0] + '\n', header);
    }
    RemoveLogs();
  }
}

TEST_P(LogFile, LaterLinesTryAgain) {
  Settings("DebugOut=True");
  Run("rm " + (module / "log*.txt").string());
  ASSERT_EQ(Logs().size(), 1U);
  EXPECT_THAT(Lines(Logs()[0]), ElementsAre(EndsWith("[Core.AddUserMessage] ID=1, after")));
  fs::remove(Logs()[0]);
  const std::string logs = (module / "log*.txt").string();
  EXPECT_THAT(Run("f=$(echo " + logs + "); rm $f; mkdir $f"), EndsWith("ID=1, after\n"));
  RemoveLogs();
  // Neither the header nor the first line can be written.
  Run("prlimit --pid $PPID --fsize=unlimited:", "prlimit --fsize=0:");
  ASSERT_EQ(Logs().size(), 1U);
  EXPECT_THAT(Lines(Logs()[0]), ElementsAre(EndsWith("[Core.AddUserMessage] ID=1, after")));
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
    RemoveLogs();
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
  RemoveLogs();
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

// Where the installed component is looked for: in a root directory of the test's own, so that it
// does not matter what the machine has.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sched.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "orif/orif.h"
#include "tests/support/System.h"

namespace orif::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

// The place of the component in each directory, the first one first.
constexpr std::array Places{
    "/usr/local/lib/" ORIF_LIBRARY_ARCHITECTURE "/libOrvexCommLib.so",
    "/usr/local/lib/libOrvexCommLib.so",
    "/usr/lib/" ORIF_LIBRARY_ARCHITECTURE "/libOrvexCommLib.so",
    "/usr/lib/libOrvexCommLib.so",
    "/lib/" ORIF_LIBRARY_ARCHITECTURE "/libOrvexCommLib.so",
    "/lib/libOrvexCommLib.so",
};

// Makes a directory the root of this process. Who has no right to may do so in a user namespace of
// his own; where a container or the kernel's settings forbid that too, nothing can be shown.
bool ChangeRoot(const fs::path& root) {
  return chroot(root.c_str()) == 0 || (unshare(CLONE_NEWUSER) == 0 && chroot(root.c_str()) == 0);
}

TEST(InstalledComponent, IsTheFirstThatTheLibraryDirectoriesHave) {
  const fs::path root = fs::temp_directory_path() / "orif-root";
  for (const fs::path place : Places) {
    const fs::path file = root / place.relative_path();
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "no component";
  }
  SetEnvironment("ORVEX_COMMLIB", "");
  const int outside = open("/", O_PATH);
  if (!ChangeRoot(root)) {
    fs::remove_all(root);
    GTEST_SKIP() << "no right to change the root directory";
  }
  for (const char* place : Places) {
    EXPECT_THAT(Core().DebugMessage(), HasSubstr(std::string(", Err ") + place + ": "));
    fs::remove(place);
  }
  EXPECT_THAT(Core().DebugMessage(), HasSubstr("is not installed"));
  ASSERT_EQ(fchdir(outside), 0);
  ASSERT_EQ(chroot("."), 0);
  close(outside);
  fs::remove_all(root);
}

}  // namespace
}  // namespace orif::test

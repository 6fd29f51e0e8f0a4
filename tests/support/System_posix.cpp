#include "tests/support/System.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace orif::test {

void SetEnvironment(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

void StoreSetting(const std::string& key, const std::string& value) {
  namespace fs = std::filesystem;
  const fs::path directory = fs::temp_directory_path() / "orif-settings";
  fs::create_directories(directory / "ORVEX");
  SetEnvironment("XDG_CONFIG_HOME", directory);
  std::ofstream(directory / "ORVEX/Setting.ini") << key << '=' << value << '\n';
}

Refusals UnusableComponents(const std::string& directory) {
  using testing::EndsWith;
  const std::string pipe = std::filesystem::temp_directory_path() / "orif-pipe.so";
  mkfifo(pipe.c_str(), 0600);
  return {{"", EndsWith("[Core.Class_initialize] ID=1, Err OrvexCommLib is not installed and "
                        "ORVEX_COMMLIB is not set")},
          {"lib.so", EndsWith("Err ORVEX_COMMLIB is not an absolute path: lib.so")},
          {"/no/such.so", EndsWith(", Err /no/such.so: cannot open shared object file: No such "
                                   "file or directory")},
          {directory, EndsWith(", Err " + directory + ": not a file")},
          {pipe, EndsWith(", Err " + pipe + ": not a file")},
          {directory + "no_entry.so", EndsWith("undefined symbol: OrvexCommLibEntry")}};
}

}  // namespace orif::test

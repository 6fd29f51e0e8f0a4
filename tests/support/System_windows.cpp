#include "tests/support/System.h"

#include <cstdlib>

namespace orif::test {

void SetEnvironment(const char* name, const std::string& value) { _putenv_s(name, value.c_str()); }

void StoreSetting(const std::string& key, const std::string& value) {
  const std::string command = "reg add HKCU\\Software\\ORVEX\\Setting /f >NUL /v ";
  std::system((command + key + " /d \"" + value + "\"").c_str());
}

Refusals UnusableComponents(const std::string& directory) {
  using testing::EndsWith;
  using testing::HasSubstr;
  return {{"", EndsWith("[Core.Class_initialize] ID=1, Err OrvexCommLib.Core is not registered; "
                        "register it, or name another component in ORVEX_COMMLIB")},
          {"{no class}", EndsWith("Err {no class} is not a class identifier")},
          // The system's words follow.
          {"{00000000-1111-2222-3333-444444444444}",
           HasSubstr("Err {00000000-1111-2222-3333-444444444444}: ")},
          {"C:/no/such.dll", HasSubstr("Err C:/no/such.dll: ")},
          {directory + "no_entry.so", HasSubstr("Err OrvexCommLibEntry: ")}};
}

}  // namespace orif::test

// The component is found and loaded, or refused with a reason that reaches the trail.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "orif/orif.h"
#include "tests/support/System.h"

namespace orif::test {
namespace {

using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;

// What a new Core's trail tells of the component that is named.
std::string Refusal(const std::string& named) {
  SetEnvironment("ORVEX_COMMLIB", named);
  Core core;
  EXPECT_EQ(core.GetLib(), nullptr);
  EXPECT_FALSE(core.Connect("demo"));
  EXPECT_EQ(core.ConnectState(), 0);
  return core.DebugMessage();
}

TEST(Component, IsRefusedWithAReason) {
  const std::string directory = BAD_COMPONENT_DIRECTORY "/";
  auto unusable = UnusableComponents(directory);
  const auto add = [&](const std::string& file, const char* reason) {
    unusable.emplace_back(directory + file, EndsWith(reason));
  };
  add("other_version.so", "does not serve interface version 2");
  add("no_interface.so", "does not serve interface version 2");
  for (const std::string function : {"create", "release", "lookup", "invoke"}) {
    add("missing_" + function + ".so", "offers an incomplete interface");
  }
  add("no_object.so", ", Err out of licences");
  for (const auto& [named, reason] : unusable) EXPECT_THAT(Refusal(named), reason);
}

TEST(Component, IsNeverLookedUpInTheCurrentDirectory) {
  const auto directory = std::filesystem::temp_directory_path() / "orif-current-directory";
  std::filesystem::create_directories(directory);
  std::filesystem::copy_file(ORIF_SIMULATOR_COMPONENT, directory / "libOrvexCommLib.so",
                             std::filesystem::copy_options::overwrite_existing);
  std::filesystem::current_path(directory);
  EXPECT_THAT(Refusal(""), AnyOf(HasSubstr("is not installed"), HasSubstr("is not registered")));
  std::filesystem::current_path("/");
  std::filesystem::remove_all(directory);
}

TEST(Component, IsRefusedWhenTheFileIsDamaged) {
  const auto path = (std::filesystem::temp_directory_path() / "orif-damaged.so").string();
  for (const std::uintmax_t size : {0U, 10U, 300U}) {
    std::filesystem::copy_file(ORIF_SIMULATOR_COMPONENT, path,
                               std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(path, size);
    EXPECT_THAT(Refusal(path), HasSubstr(", Err " + path)) << size;
  }
  std::ofstream(path) << "just a text";
  EXPECT_THAT(Refusal(path), HasSubstr(", Err " + path));
  std::filesystem::remove(path);
}

TEST(Component, TheLoadedSimulatorServesACore) {
  SetEnvironment("ORVEX_COMMLIB", ORIF_SIMULATOR_COMPONENT);
  Core core;
  ASSERT_NE(core.GetLib(), nullptr);
  ASSERT_TRUE(core.Connect("demo"));
  const auto table = core.DataTable();
  const auto longs = table->AddNumReg(NUMREG_INT, 1, 10);
  EXPECT_TRUE(longs->SetValue(3, 123456));
  EXPECT_FALSE(longs->SetValue(3, "many"));
  ASSERT_TRUE(table->Refresh());
  Variant value;
  EXPECT_TRUE(longs->GetValue(3, value));
  EXPECT_EQ(value, Variant(123456));
  EXPECT_EQ(table->AddNumReg(NUMREG_INT, 1, 8190), nullptr);  // no room in the area
  EXPECT_EQ(table->AddNumReg(NUMREG_INT, 2000000, 2000000), nullptr);
  EXPECT_THAT(core.DebugMessage(), EndsWith(", Err assign"));
  EXPECT_THROW(core.GetLib()->Invoke(4711, ORVEX_METHOD, {}), Fault);
  EXPECT_THROW(core.GetLib()->Lookup("WriteXX"), Fault);
  EXPECT_TRUE(core.Disconnect());
  Core second;  // one core object each
  EXPECT_FALSE(second.Connect("nowhere"));
}

}  // namespace
}  // namespace orif::test

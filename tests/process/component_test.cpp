// The component is found and loaded, or refused with a reason that reaches the trail.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "orif/orif.h"

namespace orif {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

// What a new Core's trail tells of the component at `path`.
std::string Refusal(const std::string& path) {
  setenv("ORVEX_COMMLIB", path.c_str(), 1);
  Core core;
  EXPECT_EQ(core.GetLib(), nullptr);
  EXPECT_FALSE(core.Connect("demo"));
  EXPECT_EQ(core.ConnectState(), 0);
  return core.DebugMessage();
}

TEST(Component, IsRefusedWithAReason) {
  const std::string directory = BAD_COMPONENT_DIRECTORY "/";
  EXPECT_THAT(Refusal(""),
              EndsWith("[Core.Class_initialize] ID=1, Err OrvexCommLib is not installed and "
                       "ORVEX_COMMLIB is not set"));
  EXPECT_THAT(Refusal("libOrvexCommLib.so"),
              EndsWith("Err ORVEX_COMMLIB is not an absolute path: libOrvexCommLib.so"));
  EXPECT_THAT(Refusal("/no/such/libOrvexCommLib.so"),
              AllOf(HasSubstr(", Err /no/such/libOrvexCommLib.so"), HasSubstr("No such file")));
  EXPECT_THAT(Refusal(directory + "no_entry.so"), HasSubstr("undefined symbol: OrvexCommLibEntry"));
  EXPECT_THAT(Refusal(directory + "other_version.so"),
              EndsWith("does not serve interface version 1"));
  EXPECT_THAT(Refusal(directory + "no_interface.so"),
              EndsWith("does not serve interface version 1"));
  EXPECT_THAT(Refusal(directory + "incomplete.so"), EndsWith("offers an incomplete interface"));
  EXPECT_THAT(Refusal(directory + "no_object.so"), EndsWith(", Err out of licences"));
}

TEST(Component, IsNeverLookedUpInTheCurrentDirectory) {
  const auto directory = std::filesystem::temp_directory_path() / "orif-current-directory";
  std::filesystem::create_directories(directory);
  std::filesystem::copy_file(ORIF_SIMULATOR_COMPONENT, directory / "libOrvexCommLib.so",
                             std::filesystem::copy_options::overwrite_existing);
  std::filesystem::current_path(directory);
  EXPECT_THAT(Refusal(""), HasSubstr("is not installed"));
  std::filesystem::current_path("/");
  std::filesystem::remove_all(directory);
}

TEST(Component, IsRefusedWhenTheFileIsDamaged) {
  const std::string path = std::filesystem::temp_directory_path() / "orif-damaged.so";
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
  setenv("ORVEX_COMMLIB", ORIF_SIMULATOR_COMPONENT, 1);
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
}  // namespace orif

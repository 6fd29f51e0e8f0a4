#include <dlfcn.h>

#include <algorithm>
#include <cstdio>

#include "tests/simulator/Client.h"

namespace orif::sim::test {
namespace {

TEST(ComponentTest, OffersTheDemonstrationCellThroughThePlainInterface) {
  void* library = dlopen(ORIF_SIMULATOR_COMPONENT, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto entry =
      reinterpret_cast<OrvexCommLibEntryFunction>(dlsym(library, ORVEX_COMMLIB_ENTRY));
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry(ORVEX_COMMLIB_VERSION + 1), nullptr);
  const OrvexCommLib& component = *entry(ORVEX_COMMLIB_VERSION);
  EXPECT_EQ(component.version, ORVEX_COMMLIB_VERSION);
  OrvexValue result{};
  void* object = component.create(&result);
  ASSERT_NE(object, nullptr);
  const auto invoke = [&](std::int32_t id, std::uint16_t call, std::vector<OrvexValue> arguments) {
    return component.invoke(object, id, call, arguments.data(), static_cast<int>(arguments.size()),
                            &result);
  };
  const auto text = [&result] {
    return std::string(result.as.text, static_cast<unsigned>(result.count));
  };

  EXPECT_EQ(invoke(13, ORVEX_METHOD, {Ref("SETASG 1 2 R[1] 1.0")}), 0);
  EXPECT_EQ(result.as.i4, Number(Status::NotConnected)) << "a refusal is no failure";
  EXPECT_EQ(invoke(64, ORVEX_GET, {}), 0);
  EXPECT_EQ(text(), StatusText(Status::NotConnected));
  EXPECT_EQ(invoke(1, ORVEX_PUT, {Of("demo")}), 0);
  EXPECT_EQ(result.kind, ORVEX_EMPTY);
  EXPECT_EQ(invoke(11, ORVEX_METHOD, {}), 0);
  EXPECT_EQ(invoke(13, ORVEX_METHOD, {Ref("SETASG 1 2 R[1] 1.0")}), 0);
  Words words(2);
  EXPECT_EQ(invoke(56, ORVEX_METHOD, {Of(Short(1)), Ref(words), Of(Short(2))}), 0);
  EXPECT_EQ(words, (Words{120, 0}));

  EXPECT_NE(invoke(999, ORVEX_METHOD, {}), 0);
  EXPECT_EQ(text(), "Unknown operation");
  EXPECT_NE(invoke(11, 0xFFFF, {}), 0);
  EXPECT_EQ(text(), "Unknown kind of call");
  EXPECT_NE(component.invoke(object, 11, ORVEX_METHOD, nullptr, 3, &result), 0);
  EXPECT_EQ(text(), "Wrong number of arguments");
  std::int32_t id = 0;
  EXPECT_EQ(component.lookup(object, "ReadSDO", &id), 0);
  EXPECT_NE(component.lookup(object, "Nothing", &id), 0);
  EXPECT_EQ(id, 27);
  component.release(object);
}

TEST(ComponentTest, ExportsItsEntryPointAndNothingElse) {
  FILE* listing = popen("nm -D --defined-only '" ORIF_SIMULATOR_COMPONENT "'", "r");
  ASSERT_NE(listing, nullptr);
  std::string symbols(4096, '\0');
  symbols.resize(fread(symbols.data(), 1, symbols.size(), listing));
  ASSERT_EQ(pclose(listing), 0);
  EXPECT_EQ(std::ranges::count(symbols, '\n'), 1) << symbols;
  EXPECT_TRUE(symbols.ends_with(" T " ORVEX_COMMLIB_ENTRY "\n")) << symbols;
}

}  // namespace
}  // namespace orif::sim::test

#include <dlfcn.h>

#include "tests/simulator/Client.h"

namespace orif::sim::test {
namespace {

class ComponentTest : public testing::Test {
 protected:
  void SetUp() override {
    void* library = dlopen(ORIF_SIMULATOR_COMPONENT, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    entry_ = reinterpret_cast<OrvexCommLibEntryFunction>(dlsym(library, ORVEX_COMMLIB_ENTRY));
    ASSERT_NE(entry_, nullptr);
    component = entry_(ORVEX_COMMLIB_VERSION);
    ASSERT_NE(component, nullptr);
    object = component->create(&result);
    ASSERT_NE(object, nullptr);
  }
  void TearDown() override {
    if (object != nullptr) component->release(object);
  }

  std::int32_t Invoke(std::int32_t id, std::uint16_t call, std::vector<OrvexValue> arguments = {}) {
    return component->invoke(object, id, call, arguments.data(),
                             static_cast<std::int32_t>(arguments.size()), &result);
  }
  std::string Text() const {
    EXPECT_EQ(result.kind, ORVEX_TEXT);
    return {result.as.text, static_cast<std::size_t>(result.count)};
  }

  OrvexCommLibEntryFunction entry_ = nullptr;
  const OrvexCommLib* component = nullptr;
  void* object = nullptr;
  OrvexValue result{};
};

TEST_F(ComponentTest, ServesTheDemonstrationCell) {
  EXPECT_EQ(entry_(ORVEX_COMMLIB_VERSION + 1), nullptr);
  EXPECT_EQ(component->version, ORVEX_COMMLIB_VERSION);
  ASSERT_EQ(Invoke(1, ORVEX_PUT, {Of("demo")}), 0);
  EXPECT_EQ(result.kind, ORVEX_EMPTY);
  ASSERT_EQ(Invoke(11, ORVEX_METHOD), 0);
  EXPECT_EQ(result.as.i4, 0);
  ASSERT_EQ(Invoke(13, ORVEX_METHOD, {Ref("SETASG 1 2 R[1] 1.0")}), 0);
  Words words(2);
  ASSERT_EQ(Invoke(56, ORVEX_METHOD, {Of(Short(1)), Ref(words), Of(Short(2))}), 0);
  EXPECT_EQ(result.as.i4, 2);
  EXPECT_EQ(words, (Words{120, 0}));

  // A refusal is a status, and another object reaches the same controller with a map of its own.
  void* other = component->create(&result);
  std::swap(object, other);
  ASSERT_EQ(Invoke(13, ORVEX_METHOD, {Ref("SETASG 1 2 R[1] 1.0")}), 0);
  EXPECT_EQ(result.as.i4, Number(Status::NotConnected));
  ASSERT_EQ(Invoke(64, ORVEX_GET), 0);
  EXPECT_EQ(Text(), StatusText(Status::NotConnected));
  std::swap(object, other);
  component->release(other);
}

TEST_F(ComponentTest, TellsFaultsAsTexts) {
  EXPECT_NE(Invoke(999, ORVEX_METHOD), 0);
  EXPECT_EQ(Text(), "Unknown operation");
  EXPECT_NE(Invoke(11, 0xFFFF), 0);
  EXPECT_EQ(Text(), "Unknown kind of call");
  EXPECT_NE(component->invoke(object, 11, ORVEX_METHOD, nullptr, 3, &result), 0);
  EXPECT_EQ(Text(), "Wrong number of arguments");
  std::int32_t id = 0;
  EXPECT_EQ(component->lookup(object, "ReadSDO", &id), 0);
  EXPECT_EQ(id, 27);
  EXPECT_NE(component->lookup(object, "Nothing", &id), 0);
  EXPECT_EQ(id, 27);
}

}  // namespace
}  // namespace orif::sim::test

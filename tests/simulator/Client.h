// The rig of the simulator's tests: a network with one controller "cell" and core objects that are
// driven by number, with arguments made from plain C++ values.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "orif/base/Fault.h"
#include "orif/lowerlayer/DispId.h"
#include "simulator/Network.h"

namespace orif::sim::test {

using Words = std::vector<std::int16_t>;
using Longs = std::vector<std::int32_t>;
using Reals = std::vector<float>;

inline OrvexValue Of(std::int16_t value) { return {ORVEX_I2, 0, 0, {.i2 = value}}; }
inline OrvexValue Of(std::int32_t value) { return {ORVEX_I4, 0, 0, {.i4 = value}}; }
inline OrvexValue Of(std::string_view text) {
  return {ORVEX_TEXT, 0, static_cast<std::int32_t>(text.size()), {.text = text.data()}};
}
inline OrvexValue Of(OrvexValue value) { return value; }

inline OrvexValue Ref(std::string_view text) {
  OrvexValue value = Of(text);
  value.kind |= ORVEX_BYREF;
  return value;
}
template <class T>
requires(!std::is_const_v<T>) OrvexValue Ref(T* first, std::size_t count = 1) {
  OrvexValue value{};
  value.count = static_cast<std::int32_t>(count);
  value.kind = std::is_same_v<T, float>          ? ORVEX_R4 | ORVEX_BYREF
               : std::is_same_v<T, std::int32_t> ? ORVEX_I4 | ORVEX_BYREF
                                                 : ORVEX_I2 | ORVEX_BYREF;
  std::memcpy(&value.as, &first, sizeof first);
  return value;
}
template <class T>
OrvexValue Ref(std::vector<T>& elements) {
  return Ref(elements.data(), elements.size());
}

constexpr std::int16_t Short(auto value) { return static_cast<std::int16_t>(value); }

/// One core object. Status-like results come back as numbers.
class Client {
 public:
  explicit Client(const Network& network) : core(network.Factory()()) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call, std::vector<OrvexValue> arguments = {}) {
    return core->Invoke(id, call, arguments);
  }
  template <class... Arguments>
  std::int32_t Call(DispId id, Arguments... arguments) {
    return Invoke(static_cast<std::int32_t>(id), ORVEX_METHOD, {Of(arguments)...}).as.i4;
  }
  template <class T>
  void Put(DispId id, T value) {
    Invoke(static_cast<std::int32_t>(id), ORVEX_PUT, {Of(value)});
  }
  OrvexValue Get(DispId id) { return Invoke(static_cast<std::int32_t>(id), ORVEX_GET); }
  std::string Error() {
    const OrvexValue text = Get(DispId::LastErrorText);
    return {text.as.text, static_cast<std::size_t>(text.count)};
  }

  std::int32_t Connect(std::string_view host) {
    Put(DispId::HostName, host);
    return Call(DispId::Connect);
  }
  std::int32_t Assign(std::string_view piece) { return Call(DispId::SetRAssignment, Ref(piece)); }

  /// The words from `address` on; asks for a complete read.
  Words Read(int address, std::size_t count) {
    Words words(count, 0x7777);
    EXPECT_EQ(Call(DispId::ReadRShort, Short(address), Ref(words), Short(count)),
              static_cast<std::int32_t>(count))
        << Error();
    return words;
  }
  std::int32_t ReadLong(int address) {
    Words pair = Read(address, 2);
    return Call(DispId::ShortToLong, Ref(pair));
  }
  float ReadReal(int address) {
    Words pair = Read(address, 2);
    return Invoke(static_cast<std::int32_t>(DispId::ShortToFloat), ORVEX_METHOD, {Ref(pair)}).as.r4;
  }
  std::string ReadText(int address, std::size_t words) { return GetText(Read(address, words)); }

  template <class T>
  std::int32_t Write(DispId id, int address, std::vector<T> values) {
    return Call(id, Short(address), Ref(values), Short(values.size()));
  }

  std::shared_ptr<Dispatch> core;
};

inline constexpr Layout kSmall{.numericRegisters = 20,
                               .positionRegisters = 5,
                               .stringRegisters = 4,
                               .motionGroups = 2,
                               .userFrames = 3};

/// A controller and a client that is connected to it.
class CellTest : public testing::Test {
 protected:
  CellTest() { EXPECT_EQ(client.Connect("cell"), 0); }

  /// Replaces the client's assignment.
  void Assign(std::initializer_list<std::string> pieces) {
    client.Call(DispId::ClearRAssignment);
    for (const auto& piece : pieces) EXPECT_EQ(client.Assign("SETASG " + piece), 0) << piece;
  }

  Network network;
  Controller& robot = network.AddController("cell", kSmall);
  Client client{network};
};

constexpr std::int32_t Number(Status status) { return static_cast<std::int32_t>(status); }

}  // namespace orif::sim::test

// The client's calls over a loaded component that answers nonsense: wrong versions, missing
// functions, any kinds, counts and texts. The library loads a small module that gets its interface
// from this program.
#include <cstdlib>

#include "fuzz/World.h"

namespace orif::fuzz {
namespace {

Input* input;
World* client;
OrvexCommLib offered;

void* Create(OrvexValue* fault) {
  *fault = input->Answer();
  return input->OneIn(8) ? nullptr : std::malloc(1);
}

std::int32_t Lookup(void* /*object*/, const char* /*name*/, std::int32_t* id) {
  *id = input->Number();
  return input->OneIn(4) ? input->Number() : 0;
}

// Touches every element that it may.
template <class T>
void Use(T* first, std::int32_t count, bool write) {
  for (std::int32_t i = 0; i < count; ++i) {
    const volatile T seen = first[i];
    if (write) first[i] = static_cast<T>(seen ^ 0x55);
  }
}

std::int32_t Invoke(void* /*object*/, std::int32_t id, std::uint16_t /*call*/,
                    const OrvexValue* arguments, std::int32_t count, OrvexValue* result) {
  static constexpr std::array Reads{27, 29, 31, 33, 34, 36, 37, 43, 45, 53, 56, 59};
  const bool reads = std::ranges::count(Reads, id) != 0 && input->OneIn(2);
  for (const OrvexValue& a : std::span(arguments, static_cast<std::size_t>(count))) {
    if (a.kind == (ORVEX_I2 | ORVEX_BYREF)) Use(a.as.i2Ref, a.count, reads);
    if (a.kind == (ORVEX_I4 | ORVEX_BYREF)) Use(a.as.i4Ref, a.count, reads);
    if (a.kind == (ORVEX_R4 | ORVEX_BYREF)) Use(reinterpret_cast<int*>(a.as.r4Ref), a.count, false);
    if ((a.kind | ORVEX_BYREF) == (ORVEX_TEXT | ORVEX_BYREF))
      Use(const_cast<char*>(a.as.text), a.count, false);
  }
  if (input->OneIn(8)) client->Step();
  if (!input->OneIn(2)) return 0;  // an empty answer counts as 0
  *result = input->Answer();
  return input->OneIn(8) ? input->Number() : 0;
}

}  // namespace
}  // namespace orif::fuzz

extern "C" __attribute__((visibility("default"))) const OrvexCommLib* FuzzedEntry(std::uint32_t) {
  using namespace orif::fuzz;
  return input->OneIn(16) ? nullptr : &offered;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orif::fuzz;
  Input in(data, size);
  World world(in, nullptr);
  input = &in;
  client = &world;
  offered = {ORVEX_COMMLIB_VERSION, Create, std::free, Lookup, Invoke};
  if (in.OneIn(16)) offered.version = in.Raw<std::uint32_t>();
  if (in.OneIn(16)) offered.lookup = nullptr;
  if (in.OneIn(16)) offered.release = nullptr;
  setenv("ORVEX_COMMLIB", FUZZED_COMPONENT, 1);
  world.Run();
  return 0;
}

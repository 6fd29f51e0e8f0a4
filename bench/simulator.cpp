// The simulated controller's bulk read, compared with copying as many bytes.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "bench/Calls.h"
#include "bench/Session.h"

namespace orif::bench {
namespace {

using benchmark::State;

// Reads registers as the type that they hold.
template <class T>
void Compose(State& state) {
  constexpr bool Real = std::is_same_v<T, float>;
  sim::Network network;
  sim::Controller& robot = network.AddController(sim::DemoHost);
  constexpr std::int32_t Registers = AreaWords / 2;
  for (std::int32_t i = 1; i <= Registers; ++i) robot.NumericRegister(i) = static_cast<T>(i);
  Core core(network.Factory());
  core.Connect(sim::DemoHost);
  core.DataTable()->AddNumReg(Real ? NUMREG_REAL : NUMREG_INT, 1, Registers);
  const auto object = core.GetLib();
  std::vector<std::int16_t> words(AreaWords);  // no register has the last one
  for (auto _ : state) {
    if (Read(*object, DispId::ReadRShort, 1, words) != AreaWords) {
      return state.SkipWithError("not read");
    }
    benchmark::ClobberMemory();
  }
}

void Copy(State& state) {
  const std::vector<std::int16_t> from(AreaWords, 1);
  std::vector<std::int16_t> to(AreaWords);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), AreaWords * sizeof(std::int16_t));
    benchmark::ClobberMemory();
  }
}

BENCHMARK(Compose<std::int32_t>)->Name("Compose/int");
BENCHMARK(Compose<float>)->Name("Compose/real");
BENCHMARK(Copy)->Name("Compose/memcpy");

}  // namespace
}  // namespace orif::bench

// Refreshing a table, and registering items with it.
#include <benchmark/benchmark.h>

#include <chrono>
#include <vector>

#include "bench/Calls.h"
#include "bench/Session.h"

namespace orif::bench {
namespace {

using benchmark::State;

void Refresh(State& state, Lower lower) {
  Session session(lower);
  session.FillTable();
  for (auto _ : state) {
    if (!session.table->Refresh()) return state.SkipWithError("not refreshed");
  }
}

// The same table makes the assignment.
void RefreshByLowerLayer(State& state, Lower lower) {
  Session session(lower);
  session.FillTable();
  const auto object = session.core.GetLib();
  std::vector<std::int16_t> words(AreaWords);
  for (auto _ : state) {
    if (Read(*object, DispId::ReadRShort, 1, words) != AreaWords) {
      return state.SkipWithError("not read");
    }
    benchmark::ClobberMemory();
  }
}

BENCHMARK_CAPTURE(Refresh, sim, Lower::Simulator)->Name("Refresh/simulator");
BENCHMARK_CAPTURE(RefreshByLowerLayer, sim, Lower::Simulator)
    ->Name("Refresh/simulator/lower layer");
BENCHMARK_CAPTURE(Refresh, direct, Lower::Direct)->Name("Refresh/direct");
BENCHMARK_CAPTURE(RefreshByLowerLayer, direct, Lower::Direct)->Name("Refresh/direct/lower layer");

// The lower layer costs the same for any count, so the rest is the library's own cost.
void RefreshOfItems(State& state) {
  Session session(Lower::Silent);
  for (std::int32_t i = 1; i <= state.range(0); ++i) session.table->AddNumReg(NUMREG_INT, i, i);
  if (session.table->Count() != state.range(0)) return state.SkipWithError("not registered");
  for (auto _ : state) {
    if (!session.table->Refresh()) return state.SkipWithError("not refreshed");
  }
}

BENCHMARK(RefreshOfItems)->Name("Refresh/items")->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->Arg(8000);

// Registering the n-th item alone is too quick for the clock, so a batch of items that ends with it
// is timed.
void Register(State& state, Lower lower) {
  constexpr std::int32_t Batch = 100;
  Session session(lower);
  const auto last = static_cast<std::int32_t>(state.range(0));
  const auto add = [&](std::int32_t i) { session.table->AddNumReg(NUMREG_INT, i, i); };
  for (auto _ : state) {
    session.table->Clear();
    for (std::int32_t i = 1; i <= last - Batch; ++i) add(i);
    const auto begin = std::chrono::steady_clock::now();
    for (std::int32_t i = last - Batch + 1; i <= last; ++i) add(i);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(time.count() / Batch);
  }
  if (session.table->Count() != last) state.SkipWithError("not registered");
}

void Numbers(benchmark::internal::Benchmark* registered) {
  registered->Arg(100)->Arg(1000)->Arg(4000)->Arg(8000)->UseManualTime()->Iterations(10);
}

BENCHMARK_CAPTURE(Register, direct, Lower::Direct)->Name("Register/direct")->Apply(Numbers);
BENCHMARK_CAPTURE(Register, sim, Lower::Simulator)->Name("Register/simulator")->Apply(Numbers);

}  // namespace
}  // namespace orif::bench

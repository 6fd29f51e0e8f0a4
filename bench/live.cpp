// Values by name: what a refresh of orif::live costs for each value, and many controllers at once.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

#include "bench/Allocations.h"
#include "bench/DirectCore.h"
#include "live/live.h"

namespace orif::bench {
namespace {

using benchmark::State;

/// The time that a refresh takes for each of `values`. If it allocates, there is no figure.
void Refresh(State& state, const char* name, Delivery delivery, double values) {
  live::Controller cell(
      {.host = "cell", .factory = [&] { return MakeDirectCore(delivery); }, .tags = {name}});
  if (!cell.Refresh() || !cell.Refresh()) return state.SkipWithError("not refreshed");
  const long before = Allocations();
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(cell.Refresh());
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count() / values);
  }
  if (Allocations() != before) state.SkipWithError("allocates");
}

BENCHMARK_CAPTURE(Refresh, int, "R[1-1000]:int", Delivery::Copy, 1000)
    ->Name("Live/int")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, changing, "R[1-1000]:int", Delivery::Change, 1000)
    ->Name("Live/int changing")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, real, "R[1-1000]:real", Delivery::Change, 1000)
    ->Name("Live/real changing")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, both, "R[1-1000]", Delivery::Copy, 1000)
    ->Name("Live/untyped")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, position, "PR[1-100]", Delivery::Copy, 2100)
    ->Name("Live/position field")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, text, "SR[1-100]", Delivery::Copy, 100)
    ->Name("Live/text")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, task, "PRG[1-100]", Delivery::Copy, 100)
    ->Name("Live/task")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, alarm, "ALM[1-100]", Delivery::Copy, 100)
    ->Name("Live/alarm")
    ->UseManualTime()
    ->Iterations(500);
BENCHMARK_CAPTURE(Refresh, bit, "DO[1-1000]", Delivery::Copy, 1000)
    ->Name("Live/bit")
    ->UseManualTime()
    ->Iterations(500);

}  // namespace
}  // namespace orif::bench

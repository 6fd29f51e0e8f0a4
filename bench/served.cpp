// A refresh of a cell that is served over the loopback, compared with the same in this process.
#include <benchmark/benchmark.h>

#include <atomic>
#include <string>
#include <thread>

#include "orif/orif.h"
#include "simulator/Demo.h"
#include "simulator/served/RemoteCore.h"
#include "simulator/served/Server.h"

namespace orif::bench {
namespace {

using benchmark::State;

constexpr std::int32_t Integers = 500;

void RefreshIntegers(State& state, const DispatchFactory& factory, const std::string& host) {
  Core core(factory);
  if (!core.Connect(host) || !core.DataTable()->AddNumReg(NUMREG_INT, 1, Integers)) {
    return state.SkipWithError("no connection");
  }
  const auto table = core.DataTable();
  for (auto _ : state) {
    if (!table->Refresh()) return state.SkipWithError("not refreshed");
  }
}

void RefreshServed(State& state) {
  sim::Server server(sim::DemoNetwork(), sim::DemoHost, {"127.0.0.1", 0});
  std::atomic<bool> ended{false};
  const std::jthread serving([&] { server.Run([&] { return ended.load(); }); });
  RefreshIntegers(state, sim::RemoteFactory(), "sim://" + ToText(server.Where()));
  ended = true;
}

void RefreshInProcess(State& state) {
  RefreshIntegers(state, sim::DemoNetwork().Factory(), sim::DemoHost);
}

BENCHMARK(RefreshServed)->Name("Refresh/served")->UseRealTime();
BENCHMARK(RefreshInProcess)->Name("Refresh/in process")->UseRealTime();

}  // namespace
}  // namespace orif::bench

// Lines of the debug trail, written and not written. DebugOut is internal to the library, so this
// needs the static one.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <array>
#include <ctime>
#include <string>
#include <string_view>

#include "bench/Session.h"
#include "orif/core/CoreState.h"
#include "orif/diag/Trail.h"
#include "orif/diag/modOrif.h"
#include "orif/items/NumReg.h"

namespace orif::bench {
namespace {

using benchmark::State;

constexpr std::string_view Message = "[DataNumReg.SetValue] ID=17, Enter R[12], 4711";

void DebugOut(State& state) {
  modOrif::TrailFlag(true);
  for (auto _ : state) modOrif::DebugOut(Message);
  modOrif::TrailFlag(false);
}

// The same text, made as simply as possible.
std::string Line(std::string_view message, int thread) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 64> timeOfDay{};
  std::strftime(timeOfDay.data(), timeOfDay.size(), "%X", &local);
  std::string line = timeOfDay.data();
  line.append(" ").append(std::to_string(thread)).append(" ").append(message);
  return line;
}

void Format(State& state) {
  const int thread = gettid();
  modOrif::DebugOut(Message);
  const std::string written = modOrif::LastMessage();
  const std::string line = Line(Message, thread);
  constexpr std::size_t TimeOfDay = 8;  // may be a second later
  if (line.substr(TimeOfDay) != written.substr(TimeOfDay)) {
    return state.SkipWithError("not the same line");
  }
  for (auto _ : state) benchmark::DoNotOptimize(Line(Message, thread));
}

BENCHMARK(DebugOut)->Name("DebugOut/library");
BENCHMARK(Format)->Name("DebugOut/format");

template <class Object>
void Untraced(State& state, const Object& object) {
  std::int32_t index = 50;
  const Trail<Object> trail(object, "GetValue");
  for (auto _ : state) {
    trail.Traced(", Enter R[", index, "]");
    benchmark::ClobberMemory();  // the flag is read every time
  }
}

void UntracedCore(State& state) { Untraced(state, CoreState()); }

void UntracedItem(State& state) {
  const Session session(Lower::Direct);
  const auto item = session.table->AddNumReg(NUMREG_INT, 1, 1);
  Untraced<Item>(state, static_cast<const NumReg&>(*item));
}

void EmptyLoop(State& state) {
  for (auto _ : state) benchmark::ClobberMemory();
}

BENCHMARK(UntracedCore)->Name("Untraced/core");
BENCHMARK(UntracedItem)->Name("Untraced/item");
BENCHMARK(EmptyLoop)->Name("Untraced/empty loop");

}  // namespace
}  // namespace orif::bench

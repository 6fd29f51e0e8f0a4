// Reading values of the last refresh, compared with reading the same words by hand.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/Allocations.h"
#include "bench/Calls.h"
#include "bench/Session.h"
#include "orif/items/PositionRecord.h"

namespace orif::bench {
namespace {

using benchmark::State;

/// Measures `read`, which answers whether it succeeded. If it allocates, there is no figure.
template <class Read>
void Measure(State& state, const Read& read) {
  if (!read()) return state.SkipWithError("not read");
  const long before = Allocations();
  for (auto _ : state) benchmark::DoNotOptimize(read());
  if (Allocations() != before) state.SkipWithError("allocates");
}

/// A buffer of words that the compiler knows nothing about.
class Words {
 public:
  Words() {
    words_.fill(0x2041);
    benchmark::DoNotOptimize(words_.data());
  }
  const std::int16_t* At(std::int32_t offset) const { return words_.data() + offset; }

 private:
  std::array<std::int16_t, 256> words_{};
};

void NumReg(State& state, Lower lower, ORIF_DATA_TYPE type) {
  Session session(lower);
  const auto registers = session.table->AddNumReg(type, 1, 100);
  session.table->Refresh();
  std::int32_t index = 50;
  Variant value;
  Measure(state, [&] {
    benchmark::DoNotOptimize(index);
    const bool done = registers->GetValue(index, value);
    benchmark::DoNotOptimize(value);
    return done;
  });
}

template <class T>
void NumRegByHand(State& state) {
  const Words words;
  std::int32_t index = 50;
  for (auto _ : state) {
    benchmark::DoNotOptimize(index);
    benchmark::ClobberMemory();
    T value = ByHand<T>(words.At(2 * (index - 1)));
    benchmark::DoNotOptimize(value);
  }
}

BENCHMARK_CAPTURE(NumReg, int, Lower::Direct, NUMREG_INT)->Name("NumReg/int/direct");
BENCHMARK_CAPTURE(NumReg, real, Lower::Direct, NUMREG_REAL)->Name("NumReg/real/direct");
BENCHMARK_CAPTURE(NumReg, int, Lower::Simulator, NUMREG_INT)->Name("NumReg/int/simulator");
BENCHMARK_CAPTURE(NumReg, real, Lower::Simulator, NUMREG_REAL)->Name("NumReg/real/simulator");
BENCHMARK(NumRegByHand<std::int32_t>)->Name("NumReg/int/by hand");
BENCHMARK(NumRegByHand<float>)->Name("NumReg/real/by hand");

struct PositionValues {
  std::array<float, PositionRecord::FloatCount> xyzwpr{};
  std::array<std::int16_t, PositionRecord::ConfigCount> config{};
  std::array<float, PositionRecord::FloatCount> joint{};
  std::int16_t uf = 0;
  std::int16_t ut = 0;
  std::int16_t validC = 0;
  std::int16_t validJ = 0;
};

void PosReg(State& state, Lower lower) {
  Session session(lower);
  const auto registers = session.table->AddPosReg(POSREG, 1, 1, 2);
  session.table->Refresh();
  PositionValues p;
  Measure(state, [&] {
    const bool done =
        registers->GetValue(2, p.xyzwpr, p.config, p.joint, p.uf, p.ut, p.validC, p.validJ);
    benchmark::DoNotOptimize(p);
    return done;
  });
}

void PosRegByHand(State& state) {
  const Words words;
  PositionValues p;
  // One at a time: the compiler must not combine reads.
  const auto put = [](auto& target, auto value) {
    benchmark::DoNotOptimize(value);
    target = value;
  };
  const auto real = [&](float& target, std::int32_t offset, std::size_t i) {
    put(target, ByHand<float>(words.At(offset + 2 * static_cast<std::int32_t>(i))));
  };
  const auto word = [&](std::int16_t& target, std::int32_t offset) {
    put(target, *words.At(offset));
  };
  for (auto _ : state) {
    benchmark::ClobberMemory();
    for (std::size_t i = 0; i < p.xyzwpr.size(); ++i) {
      real(p.xyzwpr[i], PositionRecord::Xyzwpr, i);
      real(p.joint[i], PositionRecord::Joint, i);
    }
    for (std::size_t i = 0; i < p.config.size(); ++i) {
      word(p.config[i], PositionRecord::Config + static_cast<std::int32_t>(i));
    }
    word(p.validC, PositionRecord::ValidC);
    word(p.validJ, PositionRecord::ValidJ);
    word(p.uf, PositionRecord::UF);
    word(p.ut, PositionRecord::UT);
    benchmark::DoNotOptimize(p);
  }
}

BENCHMARK_CAPTURE(PosReg, direct, Lower::Direct)->Name("PosReg/direct");
BENCHMARK_CAPTURE(PosReg, sim, Lower::Simulator)->Name("PosReg/simulator");
BENCHMARK(PosRegByHand)->Name("PosReg/by hand");

// Texts. With the direct core they fill their words, which is as long as they get.

void TextByHand(const std::int16_t* words, std::size_t count, std::string& text) {
  text.clear();
  for (std::size_t i = 0; i < count; ++i) {
    for (const int byte : {words[i] & 0xFF, words[i] >> 8 & 0xFF}) {
      if (byte == 0) return;
      text.push_back(static_cast<char>(byte));
    }
  }
}

void String(State& state) {
  Session session(Lower::Direct);
  const auto texts = session.table->AddString(STRREG, 1, 2);
  session.table->Refresh();
  std::string text;
  Measure(state, [&] {
    const bool done = texts->GetValue(2, text);
    benchmark::DoNotOptimize(text.data());
    return done;
  });
}

void StringByHand(State& state) {
  const Words words;
  std::string text;
  Measure(state, [&] {
    benchmark::ClobberMemory();
    TextByHand(words.At(0), 40, text);
    benchmark::DoNotOptimize(text.data());
    return true;
  });
}

void Task(State& state) {
  Session session(Lower::Direct);
  session.table->AddNumReg(NUMREG_INT, 1, 100);
  const auto task = session.table->AddTask(TASK, 1);
  session.table->AddNumReg(NUMREG_INT, 1, 100);
  session.table->Refresh();
  std::string program;
  std::string parent;
  std::int16_t line = 0;
  std::int16_t status = 0;
  Measure(state, [&] {
    const bool done = task->GetValue(program, line, status, parent);
    benchmark::DoNotOptimize(program.data());
    benchmark::DoNotOptimize(parent.data());
    return done;
  });
}

void TaskByHand(State& state) {
  const Words words;
  std::string program;
  std::string parent;
  std::int16_t line = 0;
  std::int16_t status = 0;
  Measure(state, [&] {
    benchmark::ClobberMemory();
    TextByHand(words.At(0), 16, program);
    benchmark::DoNotOptimize(line = *words.At(8));
    benchmark::DoNotOptimize(status = *words.At(9));
    TextByHand(words.At(10), 16, parent);
    benchmark::DoNotOptimize(program.data());
    benchmark::DoNotOptimize(parent.data());
    return true;
  });
}

void Alarm(State& state) {
  Session session(Lower::Direct);
  const auto alarms = session.table->AddAlarm(ALARM_LIST, 2);
  session.table->Refresh();
  std::array<std::int16_t, 11> n{};
  std::array<std::string, 3> texts;
  Measure(state, [&] {
    const bool done = alarms->GetValue(1, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8],
                                       n[9], n[10], texts[0], texts[1], texts[2]);
    benchmark::DoNotOptimize(n);
    benchmark::DoNotOptimize(texts);
    return done;
  });
}

void AlarmByHand(State& state) {
  const Words words;
  std::array<std::int16_t, 11> n{};
  std::array<std::string, 3> texts;
  Measure(state, [&] {
    benchmark::ClobberMemory();
    for (std::size_t i = 0; i < n.size(); ++i) {
      benchmark::DoNotOptimize(n[i] = *words.At(static_cast<std::int32_t>(i)));
    }
    TextByHand(words.At(11), 40, texts[0]);
    TextByHand(words.At(51), 40, texts[1]);
    TextByHand(words.At(91), 10, texts[2]);
    benchmark::DoNotOptimize(texts);
    return true;
  });
}

BENCHMARK(String)->Name("String/library");
BENCHMARK(StringByHand)->Name("String/by hand");
BENCHMARK(Task)->Name("Task/library");
BENCHMARK(TaskByHand)->Name("Task/by hand");
BENCHMARK(Alarm)->Name("Alarm/library");
BENCHMARK(AlarmByHand)->Name("Alarm/by hand");

// Signals come straight from the controller; a raw read makes the same call of the lower layer.

void Signals(State& state, Lower lower) {
  Session session(lower);
  std::array<std::int16_t, 16> signals{};
  Measure(state, [&] {
    const bool done = session.core.ReadSDO(1, signals, 16);
    benchmark::DoNotOptimize(signals);
    return done;
  });
}

void SignalsByLowerLayer(State& state, Lower lower) {
  Session session(lower);
  const auto object = session.core.GetLib();
  std::array<std::int16_t, 16> signals{};
  Measure(state, [&] {
    const bool done = Read(*object, DispId::ReadSDO, 1, signals) == 0;
    benchmark::DoNotOptimize(signals);
    return done;
  });
}

BENCHMARK_CAPTURE(Signals, direct, Lower::Direct)->Name("Signals/direct");
BENCHMARK_CAPTURE(SignalsByLowerLayer, direct, Lower::Direct)->Name("Signals/direct/lower layer");
BENCHMARK_CAPTURE(Signals, sim, Lower::Simulator)->Name("Signals/simulator");
BENCHMARK_CAPTURE(SignalsByLowerLayer, sim, Lower::Simulator)
    ->Name("Signals/simulator/lower layer");

}  // namespace
}  // namespace orif::bench

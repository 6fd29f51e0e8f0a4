// What most benchmarks start with: a connected Core over one of the lower layers, and its table.
#pragma once

#include <memory>

#include "bench/DirectCore.h"
#include "orif/orif.h"
#include "simulator/Demo.h"

namespace orif::bench {

/// Direct: a direct core. Simulator: the demonstration cell. Silent: a direct core that delivers no
/// words.
enum class Lower { Direct, Simulator, Silent };

inline DispatchFactory Factory(Lower lower) {
  switch (lower) {
    case Lower::Simulator:
      return sim::DemoNetwork().Factory();
    case Lower::Silent:
      return [] { return MakeDirectCore(Delivery::None); };
    default:
      return [] { return MakeDirectCore(Delivery::Copy); };
  }
}

struct Session {
  explicit Session(Lower lower) : core(Factory(lower)) {
    core.Connect(sim::DemoHost);
    table = core.DataTable();
  }

  /// Registers items that take all words of the data area: registers, and an alarm because the
  /// number of words is odd.
  void FillTable() {
    constexpr std::int32_t AlarmWords = 11;
    table->AddAlarm(ALARM_LIST, 1, 1);
    table->AddNumReg(NUMREG_INT, 1, (AreaWords - AlarmWords) / 2);
  }

  Core core;
  std::shared_ptr<DataTable> table;
};

}  // namespace orif::bench

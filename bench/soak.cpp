// Runs on the simulated controller for a long time and watches its own memory: ten million cycles
// of refresh and read, one million of register and clear, and then one million of refreshes of a
// controller that loses its link every hundredth time. An argument divides the numbers.
// Fails if memory grows after the first tenth of a phase.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "live/live.h"
#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

constexpr long RefreshCycles = 10'000'000;
constexpr long RegisterCycles = 1'000'000;
constexpr long NoiseKiB = 256;  // losing a byte in each cycle would lose a thousand or more

long ResidentKiB() {
  std::ifstream statm("/proc/self/statm");
  long size = 0;
  long resident = 0;
  statm >> size >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/// Moves on with every look, so that a lost link is tried again at once.
class QuickClock : public orif::live::Clock {
 public:
  std::chrono::steady_clock::time_point Now() const override {
    return std::chrono::steady_clock::time_point(std::chrono::minutes(++looks_));
  }

 private:
  mutable std::int64_t looks_ = 0;
};

// Runs `cycle`, which answers whether it went well, `cycles` times.
template <class Cycle>
void Soak(const char* what, long cycles, const Cycle& cycle) {
  long settled = 0;
  for (long i = 1; i <= cycles; ++i) {
    if (!cycle(i)) {
      std::cerr << what << ": cycle " << i << " failed\n";
      std::exit(EXIT_FAILURE);
    }
    if (i == cycles / 10) settled = ResidentKiB();
  }
  const long end = ResidentKiB();
  std::cout << what << ": " << cycles << " cycles, resident " << settled << " KiB after a tenth, "
            << end << " KiB at the end\n";
  if (end > settled + NoiseKiB) std::exit(EXIT_FAILURE);
}

}  // namespace

int main(int argc, char** argv) {
  const long divisor = argc > 1 ? std::max(1L, std::strtol(argv[1], nullptr, 10)) : 1;
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return EXIT_FAILURE;
  const auto table = core.DataTable();

  {
    const auto longs = table->AddNumReg(orif::NUMREG_INT, 1, 2);
    const auto position = table->AddPosReg(orif::POSREG, 1, 1, 1);
    const auto text = table->AddString(orif::STRREG, 1, 1);
    if (!longs || !position || !text) return EXIT_FAILURE;
    Soak("refresh and read", RefreshCycles / divisor, [&](long i) {
      orif::Variant value;
      std::array<float, 9> xyzwpr{};
      std::array<std::int16_t, 7> config{};
      std::array<float, 9> joint{};
      std::int16_t word = 0;
      std::string name;
      const auto expected = static_cast<std::int32_t>(i);
      return longs->SetValue(1, expected) && table->Refresh() && longs->GetValue(1, value) &&
             value == orif::Variant(expected) &&
             position->GetValue(1, xyzwpr, config, joint, word, word, word, word) &&
             text->GetValue(1, name) && !name.empty();
    });
  }

  Soak("register and clear", RegisterCycles / divisor, [&](long) {
    return table->AddNumReg(orif::NUMREG_INT, 1, 10) &&
           table->AddPosRegMG(orif::POSREGMG, "C,J6", 1, 1) &&
           table->AddString(orif::STRREG, 1, 2) &&
           table->AddSysVar(orif::SYSVAR_INT, "$OVERRIDE") &&
           !table->AddSysVar(orif::SYSVAR_INT, "$NOWHERE") && table->Refresh() && table->Clear();
  });

  auto network = orif::sim::DemoNetwork();
  orif::live::Controller cell(
      {.host = "demo",
       .factory = network.Factory(),
       .tags = {"R[1-10]", "PR[1]", "SR[1]", "ALM[1-2]", "PRG[1]", "DO[1-8]"},
       .clock = std::make_shared<QuickClock>()});
  Soak("refresh tags and lose links", RegisterCycles / divisor, [&](long i) {
    if (i % 100 == 0) network.Find("demo")->FaultInjection().LoseConnections();
    const bool good = cell.Refresh();
    return good ? cell.Write("R[1]", i).done : i % 100 == 0;
  });
}

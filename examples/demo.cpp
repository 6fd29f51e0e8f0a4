// The main job, on the simulated controller: connect, register every kind of item, refresh, print,
// write, see that the old values stand until the next refresh, refresh, print, clear the alarms,
// disconnect, and show the trail of it all. Everything printed is what the library answers.
#include <array>
#include <cstdlib>
#include <iostream>
#include <string>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

// The demonstration ends at the first answer that it does not expect.
template <class Answer>
Answer Expect(Answer answer, const char* what, const orif::Core& core) {
  if (answer) return answer;
  std::cout << what << " failed: " << core.DebugMessage() << '\n';
  std::exit(EXIT_FAILURE);
}

void Print(orif::DataNumReg& registers) {
  for (int i = registers.StartIndex(); i <= registers.EndIndex(); ++i) {
    orif::Variant value;
    std::cout << "  R[" << i << "] = " << (registers.GetValue(i, value) ? value.ToText() : "?")
              << (registers.DataType() == orif::NUMREG_INT ? "  (integer)\n" : "  (real)\n");
  }
}

}  // namespace

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  core.DebugLog(true);

  Expect(core.Connect("demo"), "Connect", core);
  std::cout << "Connected to the simulated controller, state " << core.ConnectState() << '\n';

  const auto table = Expect(core.DataTable(), "DataTable", core);
  const auto counters = Expect(table->AddNumReg(orif::NUMREG_INT, 1, 2), "AddNumReg", core);
  const auto reals = Expect(table->AddNumReg(orif::NUMREG_REAL, 3, 4), "AddNumReg", core);
  std::cout << "Registered " << table->Count() << " items\n";

  const auto print = [&](const char* when) {
    std::cout << when << '\n';
    Print(*counters);
    Print(*reals);
  };

  Expect(table->Refresh(), "Refresh", core);
  print("Refreshed:");

  const std::array<float, 2> values{12.25F, -0.5F};
  Expect(counters->SetValue(1, 121), "SetValue", core);
  Expect(reals->SetValuesReal(3, values, 2), "SetValuesReal", core);
  print("Written, and not refreshed yet:");

  Expect(table->Refresh(), "Refresh", core);
  print("Refreshed again:");

  Expect(core.ClearAlarm(), "ClearAlarm", core);
  std::cout << "Alarms cleared\n";
  Expect(core.Disconnect(), "Disconnect", core);
  std::cout << "Disconnected, state " << core.ConnectState() << "\n\nThe trail:\n"
            << core.GetDebugMessages();
}

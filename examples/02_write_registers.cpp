// Writes go to the controller at once; the item shows the new values after the next refresh.
#include <array>
#include <iostream>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

void Print(const char* when, orif::DataNumReg& registers) {
  std::cout << when;
  for (int i = registers.StartIndex(); i <= registers.EndIndex(); ++i) {
    orif::Variant value;
    std::cout << "  R[" << i << "] = " << (registers.GetValue(i, value) ? value.ToText() : "?");
  }
  std::cout << '\n';
}

}  // namespace

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;
  const auto table = core.DataTable();
  const auto reals = table->AddNumReg(orif::NUMREG_REAL, 3, 5);
  if (reals == nullptr || !table->Refresh()) return 1;
  Print("read     ", *reals);

  const std::array<float, 2> values{62.5F, 80};
  if (!reals->SetValue(3, "37.5") || !reals->SetValuesReal(4, values, 2)) return 1;
  Print("written  ", *reals);

  if (!table->Refresh()) return 1;
  Print("refreshed", *reals);

  // A refusal is a false result, and the trail says why.
  if (reals->SetValue(6, 1)) return 1;
  std::cout << core.DebugMessage().substr(core.DebugMessage().find('[')) << '\n';
}

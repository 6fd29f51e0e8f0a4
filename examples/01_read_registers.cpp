// Reads three numeric registers of a controller with one refresh. The controller is simulated; for
// a real one, give the Core no argument and Connect the controller's address.
#include <iostream>

#include "orif/orif.h"
#include "simulator/Demo.h"

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;
  const auto table = core.DataTable();
  const auto counters = table->AddNumReg(orif::NUMREG_INT, 1, 3);
  if (counters == nullptr || !table->Refresh()) return 1;
  for (int i = counters->StartIndex(); i <= counters->EndIndex(); ++i) {
    orif::Variant value;
    if (!counters->GetValue(i, value)) return 1;
    std::cout << "R[" << i << "] = " << value.ToText() << '\n';
  }
}

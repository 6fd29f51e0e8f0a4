// Reads and writes runs of bit signals and group signals. They go straight to and from the
// controller, without a data table.
#include <array>
#include <iostream>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

template <class T, std::size_t N>
void Print(const char* what, const std::array<T, N>& values) {
  std::cout << what;
  for (const T value : values) std::cout << ' ' << value;
  std::cout << '\n';
}

}  // namespace

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;

  std::array<std::int16_t, 4> bits{};
  if (!core.ReadSDO(1, bits, 4)) return 1;
  Print("DO[1] to DO[4]", bits);
  if (!core.ReadSDI(1, bits, 4)) return 1;
  Print("DI[1] to DI[4]", bits);

  const std::array<std::int16_t, 2> on{1, 1};
  if (!core.WriteSDO(3, on, 2) || !core.ReadSDO(1, bits, 4)) return 1;
  Print("DO[1] to DO[4]", bits);

  std::array<std::int32_t, 2> groups{};
  if (!core.ReadGO(1, groups, 2)) return 1;
  Print("GO[1] and GO[2]", groups);
  const std::array<std::int32_t, 1> position{250};
  if (!core.WriteGO(2, position, 1) || !core.ReadGO(1, groups, 2)) return 1;
  Print("GO[1] and GO[2]", groups);

  // An array that is too short is refused before anything is sent.
  if (core.ReadSDI(1, bits, 5)) return 1;
  std::cout << core.DebugMessage().substr(core.DebugMessage().find('[')) << '\n';
}

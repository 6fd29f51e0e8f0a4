// Writes many positions at once: values are staged and sent with one Update. Works for the
// cartesian registers of one motion group, and for registers of several groups.
#include <array>
#include <iostream>
#include <string>

#include "orif/orif.h"
#include "simulator/Demo.h"

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;
  const auto table = core.DataTable();
  // Registers 21 to 23 of group 1: to stage and send, and to read back.
  const auto staged = table->AddPosRegXyzwpr(orif::POSREG_XYZWPR, 1, 21, 23);
  const auto registers = table->AddPosReg(orif::POSREG, 1, 21, 23);
  // Register 31 of two groups: an arm in cartesian form, and a turntable with one axis.
  const auto groups = table->AddPosRegMG(orif::POSREGMG, "C,J1", 31, 31);
  if (!staged || !registers || !groups) return 1;

  const std::array<std::int16_t, 7> config{1, 0, 1, 0, 0, 0, 0};
  for (int i = 21; i <= 23; ++i) {
    const std::array<float, 9> xyzwpr{100.0F * static_cast<float>(i), 0, 250, 180, 0, 90, 0, 0, 0};
    if (!staged->SetValueXyzwpr(i, xyzwpr, config)) return 1;
  }
  if (!staged->Update()) return 1;

  const std::array<float, 9> place{640, -410, 250, 180, 0, 45, 0, 0, 0};
  const std::array<float, 1> turn{90};
  if (!groups->SetValueXyzwpr(31, 1, place, config)) return 1;
  if (!groups->SetValueJoint(31, 2, turn)) return 1;
  if (!groups->Update()) return 1;

  if (!table->Refresh()) return 1;
  std::array<float, 9> x{};
  std::array<std::int16_t, 7> c{};
  std::int16_t UF = 0;
  std::int16_t UT = 0;
  std::int16_t ValidC = 0;
  const auto print = [&x](const std::string& name) {
    std::cout << name << " X " << x[0] << " Y " << x[1] << " Z " << x[2] << '\n';
  };
  for (int i = 21; i <= 23; ++i) {
    if (!registers->GetValueXyzwpr(i, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], c[0],
                                   c[1], c[2], c[3], c[4], c[5], c[6], UF, UT, ValidC)) {
      return 1;
    }
    print("PR[" + std::to_string(i) + "]    ");
  }
  if (!groups->GetValueXyzwpr(31, 1, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8], c[0],
                              c[1], c[2], c[3], c[4], c[5], c[6])) {
    return 1;
  }
  print("PR[G1:31]");
  // A group of one axis has J1 only; ignore the other values.
  if (!groups->GetValueJoint(31, 2, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8])) return 1;
  std::cout << "PR[G2:31] J1 " << x[0] << '\n';

  // An Update with nothing staged is refused; the trail says so.
  if (staged->Update()) return 1;
  std::cout << core.DebugMessage().substr(core.DebugMessage().find('[')) << '\n';
}

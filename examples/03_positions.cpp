// Reads and writes positions: position registers in cartesian and in joint form, the current
// position, and a position-typed system variable.
#include <array>
#include <iostream>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

void PrintPart(const char* name, const std::array<float, 9>& values, std::int16_t valid) {
  std::cout << "  " << name;
  if (valid == 0) {
    std::cout << " not valid\n";
    return;
  }
  for (const float value : values) std::cout << ' ' << value;
  std::cout << '\n';
}

// A position has a cartesian and a joint form; each may be valid or not.
template <class Item, class... Index>
void Print(const char* what, Item& item, Index... index) {
  std::array<float, 9> xyzwpr{};
  std::array<std::int16_t, 7> config{};
  std::array<float, 9> joint{};
  std::int16_t UF = 0;
  std::int16_t UT = 0;
  std::int16_t ValidC = 0;
  std::int16_t ValidJ = 0;
  std::cout << what << '\n';
  if (!item.GetValue(index..., xyzwpr, config, joint, UF, UT, ValidC, ValidJ)) {
    std::cout << "  could not be read\n";
    return;
  }
  PrintPart("X Y Z W P R E1 E2 E3", xyzwpr, ValidC);
  PrintPart("J1 ... J9           ", joint, ValidJ);
  std::cout << "  user frame " << UF << ", tool " << UT << '\n';
}

}  // namespace

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;
  const auto table = core.DataTable();
  const auto registers = table->AddPosReg(orif::POSREG, 1, 1, 3);
  const auto arm = table->AddCurPos(orif::CURPOS, 1);
  const auto inFrame = table->AddCurPosUF(orif::CURPOS, 1, 1);
  const auto tool = table->AddSysVarPos(orif::SYSVAR_POS, "$TOOL_CENTRE");
  if (!registers || !arm || !inFrame || !tool || !table->Refresh()) return 1;
  Print("PR[1]", *registers, 1);
  Print("PR[3]", *registers, 3);
  Print("Current position", *arm);
  Print("Current position in user frame 1", *inFrame);
  Print("$TOOL_CENTRE", *tool);

  // As arrays, or value by value.
  const std::array<float, 6> joint{10, -20, 30, 0, 45.5F, 0};
  if (!registers->SetValueJoint(1, joint, 1, 2)) return 1;
  if (!registers->SetValueXyzwpr2(3, 400, 0, 250.5F, 180, 0, 90, 0, 0, 0,  // X ... E3
                                  1, 0, 1, 0, 0, 0, 0,                     // C1 ... C7
                                  1, 2)) {                                 // user frame, tool
    return 1;
  }
  if (!table->Refresh()) return 1;
  std::cout << "Written and refreshed:\n";
  Print("PR[1]", *registers, 1);
  Print("PR[3]", *registers, 3);
}

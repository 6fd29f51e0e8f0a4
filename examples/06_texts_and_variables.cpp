// Reads and writes string registers, the comments of registers and signals, and system variables.
#include <iostream>
#include <string>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

void Print(const char* name, orif::DataString& texts) {
  for (int i = texts.StartIndex(); i <= texts.EndIndex(); ++i) {
    std::string text;
    if (texts.GetValue(i, text)) std::cout << name << i << "] \"" << text << "\"\n";
  }
}

void Print(orif::DataSysVar& variable) {
  orif::Variant value;
  if (variable.GetValue(value)) {
    std::cout << variable.SysVarName() << " = " << value.ToText() << '\n';
  }
}

}  // namespace

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;
  const auto table = core.DataTable();
  const auto strings = table->AddString(orif::STRREG, 1, 3);
  const auto comments = table->AddString(orif::NUMREG_COMMENT, 1, 3);
  const auto outputs = table->AddString(orif::SDO_COMMENT, 1, 1);
  const auto speed = table->AddSysVar(orif::SYSVAR_INT, "$OVERRIDE");
  const auto payload = table->AddSysVar(orif::SYSVAR_REAL, "$PAYLOAD");
  const auto name = table->AddSysVar(orif::SYSVAR_STRING, "$CELL_NAME");
  if (!strings || !comments || !outputs || !speed || !payload || !name) return 1;

  const auto print = [&] {
    if (!table->Refresh()) return false;
    Print("SR[", *strings);
    Print("R[C", *comments);
    Print("DO[C", *outputs);
    Print(*speed);
    Print(*payload);
    Print(*name);
    return true;
  };
  if (!print()) return 1;

  // Texts are staged. One Update sends all from the lowest to the highest index that was set; texts
  // in between that were not set become empty.
  if (!strings->SetValue(1, "HINGE-12") || !strings->SetValue(3, "third") || !strings->Update()) {
    return 1;
  }
  if (!speed->SetValue(65) || !payload->SetValue("7.25")) return 1;
  if (!name->SetValue("Cell 4")) return 1;
  std::cout << "Written:\n";
  return print() ? 0 : 1;
}

// All of the main job: connect, register every kind of item, refresh, print, write, see the old
// values until the next refresh, refresh, print, clear the alarms, disconnect and show the trail.
// It runs on the simulated controller, or through the component that ORVEX_COMMLIB names. All that
// it prints comes from the library.
#include <array>
#include <cstdlib>
#include <iostream>
#include <string>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

// Ends the program at the first unexpected answer.
template <class Answer>
Answer Expect(Answer answer, const char* what, const orif::Core& core) {
  if (answer) return answer;
  std::cout << what << " failed: " << core.DebugMessage() << '\n';
  std::exit(EXIT_FAILURE);
}

void Print(const char* name, const std::array<float, 9>& values, std::int16_t valid) {
  std::cout << "    " << name;
  for (const float value : values) std::cout << ' ' << value;
  std::cout << (valid != 0 ? "\n" : "  (not valid)\n");
}

template <class Item, class... Index>
void PrintPosition(const char* what, Item& item, Index... index) {
  std::array<float, 9> xyzwpr{};
  std::array<std::int16_t, 7> config{};
  std::array<float, 9> joint{};
  std::int16_t UF = 0;
  std::int16_t UT = 0;
  std::int16_t ValidC = 0;
  std::int16_t ValidJ = 0;
  std::cout << "  " << what;
  if (!item.GetValue(index..., xyzwpr, config, joint, UF, UT, ValidC, ValidJ)) {
    std::cout << " could not be read\n";
    return;
  }
  std::cout << " in user frame " << UF << " with tool " << UT << '\n';
  Print("cartesian", xyzwpr, ValidC);
  Print("joint    ", joint, ValidJ);
}

// All items that the demonstration registers.
struct Items {
  Items(orif::DataTable& table, const orif::Core& core)
      : counters(Expect(table.AddNumReg(orif::NUMREG_INT, 1, 2), "AddNumReg", core)),
        reals(Expect(table.AddNumReg(orif::NUMREG_REAL, 3, 4), "AddNumReg", core)),
        positions(Expect(table.AddPosReg(orif::POSREG, 1, 1, 2), "AddPosReg", core)),
        staged(
            Expect(table.AddPosRegXyzwpr(orif::POSREG_XYZWPR, 1, 1, 2), "AddPosRegXyzwpr", core)),
        groups(Expect(table.AddPosRegMG(orif::POSREGMG, "C,J1", 2, 2), "AddPosRegMG", core)),
        arm(Expect(table.AddCurPos(orif::CURPOS, 1), "AddCurPos", core)),
        turntable(Expect(table.AddCurPos(orif::CURPOS, 2), "AddCurPos", core)),
        tool(Expect(table.AddSysVarPos(orif::SYSVAR_POS, "$TOOL_CENTRE"), "AddSysVarPos", core)),
        speed(Expect(table.AddSysVar(orif::SYSVAR_INT, "$OVERRIDE"), "AddSysVar", core)),
        texts(Expect(table.AddString(orif::STRREG, 1, 2), "AddString", core)),
        comments(Expect(table.AddString(orif::NUMREG_COMMENT, 1, 2), "AddString", core)),
        task(Expect(table.AddTask(orif::TASK, 1), "AddTask", core)),
        alarms(Expect(table.AddAlarm(orif::ALARM_CURRENT, 1, 2), "AddAlarm", core)) {}

  void Print() const {
    PrintRegisters(*counters);
    PrintRegisters(*reals);
    PrintPosition("PR[1]", *positions, 1);
    PrintPosition("PR[2]", *positions, 2);
    std::array<float, 9> turn{};
    if (groups->GetValueJoint(2, 2, turn[0], turn[1], turn[2], turn[3], turn[4], turn[5], turn[6],
                              turn[7], turn[8])) {
      std::cout << "  PR[G2:2] J1 " << turn[0] << '\n';
    }
    PrintPosition("Current position of group 1", *arm);
    PrintPosition("Current position of group 2", *turntable);
    PrintPosition("$TOOL_CENTRE", *tool);
    orif::Variant value;
    if (speed->GetValue(value)) std::cout << "  $OVERRIDE = " << value.ToText() << '\n';
    PrintTexts("SR[", *texts);
    PrintTexts("R[C", *comments);
    PrintTask();
    PrintAlarm();
  }

  static void PrintTexts(const char* symbol, orif::DataString& texts) {
    for (int i = texts.StartIndex(); i <= texts.EndIndex(); ++i) {
      std::string text;
      if (texts.GetValue(i, text)) std::cout << "  " << symbol << i << "] = \"" << text << "\"\n";
    }
  }

  void PrintTask() const {
    std::string program;
    std::string parent;
    std::int16_t line = 0;
    std::int16_t state = 0;
    if (!task->GetValue(program, line, state, parent)) return;
    std::cout << "  Task 1 runs " << program << " in line " << line << ", state " << state
              << ", called by " << parent << '\n';
  }

  void PrintAlarm() const {
    std::array<std::int16_t, 11> n{};
    std::string message;
    std::string cause;     // message mode 2 does not read it
    std::string severity;  // nor this
    if (!alarms->GetValue(1, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10],
                          message, cause, severity)) {
      return;
    }
    std::cout << "  Active alarm: " << (message.empty() ? "none" : message) << '\n';
  }

  static void PrintRegisters(orif::DataNumReg& registers) {
    for (int i = registers.StartIndex(); i <= registers.EndIndex(); ++i) {
      orif::Variant value;
      std::cout << "  R[" << i << "] = " << (registers.GetValue(i, value) ? value.ToText() : "?")
                << (registers.DataType() == orif::NUMREG_INT ? "  (integer)\n" : "  (real)\n");
    }
  }

  void Write(const orif::Core& core) const {
    const std::array<float, 2> values{12.25F, -0.5F};
    const std::array<float, 6> joint{10, -20, 30, 0, 45, 0};
    const std::array<float, 6> centre{0, 0, 180, 0, 0, 0};
    const std::array<float, 9> place{640, -400, 260, 180, 0, 45, 0, 0, 0};
    const std::array<std::int16_t, 7> config{1, 0, 1, 0, 0, 0, 0};
    const std::array<float, 1> turn{135};
    Expect(counters->SetValue(1, 121), "SetValue", core);
    Expect(reals->SetValuesReal(3, values, 2), "SetValuesReal", core);
    Expect(positions->SetValueJoint(1, joint, 1, 1), "SetValueJoint", core);
    Expect(tool->SetValueXyzwpr(centre, config, 0, 0), "SetValueXyzwpr", core);
    // Update sends what was staged: registers of one group, then of two.
    Expect(staged->SetValueXyzwpr(2, place, config), "SetValueXyzwpr", core);
    Expect(staged->Update(), "Update", core);
    Expect(groups->SetValueXyzwpr(2, 1, place, config), "SetValueXyzwpr", core);
    Expect(groups->SetValueJoint(2, 2, turn), "SetValueJoint", core);
    Expect(groups->Update(), "Update", core);
    Expect(speed->SetValue(65), "SetValue", core);
    Expect(texts->SetValue(1, "HINGE-12"), "SetValue", core);
    Expect(texts->Update(), "Update", core);
  }

  std::shared_ptr<orif::DataNumReg> counters;
  std::shared_ptr<orif::DataNumReg> reals;
  std::shared_ptr<orif::DataPosReg> positions;
  std::shared_ptr<orif::DataPosRegXyzwpr> staged;
  std::shared_ptr<orif::DataPosRegMG> groups;
  std::shared_ptr<orif::DataCurPos> arm;
  std::shared_ptr<orif::DataCurPos> turntable;
  std::shared_ptr<orif::DataSysVarPos> tool;
  std::shared_ptr<orif::DataSysVar> speed;
  std::shared_ptr<orif::DataString> texts;
  std::shared_ptr<orif::DataString> comments;
  std::shared_ptr<orif::DataTask> task;
  std::shared_ptr<orif::DataAlarm> alarms;
};

// Reads signals 1 to 4 of one kind, turns the second one on, and reads them again.
template <class T, class Read, class Write>
void ChangeSignals(const char* name, orif::Core& core, Read read, Write write) {
  std::array<T, 4> before{};
  std::array<T, 4> after{};
  const std::array<T, 1> on{1};
  Expect((core.*read)(1, before, 4), name, core);
  Expect((core.*write)(2, on, 1), name, core);
  Expect((core.*read)(1, after, 4), name, core);
  std::cout << "  " << name << "[1] to [4]:";
  for (const T value : before) std::cout << ' ' << value;
  std::cout << ", then";
  for (const T value : after) std::cout << ' ' << value;
  std::cout << '\n';
}

void ChangeAllSignals(orif::Core& core) {
  using orif::Core;
  using Bit = std::int16_t;
  using Group = std::int32_t;
  std::cout << "Signals, read, written and read:\n";
  ChangeSignals<Bit>("SDO", core, &Core::ReadSDO, &Core::WriteSDO);
  ChangeSignals<Bit>("SDI", core, &Core::ReadSDI, &Core::WriteSDI);
  ChangeSignals<Bit>("RDO", core, &Core::ReadRDO, &Core::WriteRDO);
  ChangeSignals<Bit>("RDI", core, &Core::ReadRDI, &Core::WriteRDI);
  ChangeSignals<Bit>("SO", core, &Core::ReadSO, &Core::WriteSO);
  ChangeSignals<Bit>("SI", core, &Core::ReadSI, &Core::WriteSI);
  ChangeSignals<Bit>("UO", core, &Core::ReadUO, &Core::WriteUO);
  ChangeSignals<Bit>("UI", core, &Core::ReadUI, &Core::WriteUI);
  ChangeSignals<Group>("GO", core, &Core::ReadGO, &Core::WriteGO);
  ChangeSignals<Group>("GI", core, &Core::ReadGI, &Core::WriteGI);
}

void Demonstrate(orif::Core& core) {
  Expect(core.Connect("demo"), "Connect", core);
  std::cout << "Connected to the simulated controller, state " << core.ConnectState() << '\n';

  const auto table = Expect(core.DataTable(), "DataTable", core);
  const Items items(*table, core);
  std::cout << "Registered " << table->Count() << " items\n";

  Expect(table->Refresh(), "Refresh", core);
  std::cout << "Refreshed:\n";
  items.Print();

  core.DebugLog(true);
  items.Write(core);
  core.DebugLog(false);
  std::cout << "Written, and not refreshed yet:\n";
  items.Print();

  core.DebugLog(true);
  Expect(table->Refresh(), "Refresh", core);
  core.DebugLog(false);
  std::cout << "Refreshed again:\n";
  items.Print();

  ChangeAllSignals(core);

  core.DebugLog(true);
  Expect(core.ClearAlarm(), "ClearAlarm", core);
  Expect(table->Refresh(), "Refresh", core);
  std::cout << "Alarms cleared\n";
  items.PrintAlarm();
  Expect(core.Disconnect(), "Disconnect", core);
  std::cout << "Disconnected, state " << core.ConnectState()
            << "\n\nThe trail of the writes, the refresh and the end:\n"
            << core.GetDebugMessages();
}

}  // namespace

int main() {
  const char* component = std::getenv("ORVEX_COMMLIB");
  if (component != nullptr && *component != '\0') {
    orif::Core core;
    Demonstrate(core);
  } else {
    orif::Core core(orif::sim::DemoNetwork().Factory());
    Demonstrate(core);
  }
}

// Reads the task list and the alarm lists, and clears the active alarms.
#include <iostream>
#include <string>

#include "orif/orif.h"
#include "simulator/Demo.h"

namespace {

void Print(orif::DataTask& task) {
  std::string program;
  std::string parent;
  std::int16_t line = 0;
  std::int16_t state = 0;
  if (!task.GetValue(program, line, state, parent)) return;
  std::cout << "  " << task.Index() << ' ' << (program.empty() ? "-" : program) << ", line " << line
            << ", state " << state;
  if (!parent.empty()) std::cout << ", called by " << parent;
  std::cout << '\n';
}

void Print(orif::DataAlarm& alarms, int count) {
  for (int i = 1; i <= count; ++i) {
    std::int16_t id = 0, number = 0, causeId = 0, causeNumber = 0, severity = 0;
    std::int16_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    std::string message, cause, level;
    if (!alarms.GetValue(i, id, number, causeId, causeNumber, severity, year, month, day, hour,
                         minute, second, message, cause, level)) {
      return;
    }
    if (id == 0) {
      std::cout << "  none\n";
      return;
    }
    std::cout << "  " << year << '-' << month << '-' << day << ' ' << hour << ':' << minute << ':'
              << second << ' ' << level << ' ' << message;
    if (!cause.empty()) std::cout << " (because of " << cause << ')';
    std::cout << '\n';
  }
}

}  // namespace

int main() {
  orif::Core core(orif::sim::DemoNetwork().Factory());
  if (!core.Connect("demo")) return 1;
  const auto table = core.DataTable();
  const auto first = table->AddTask(orif::TASK, 1);
  const auto second = table->AddTask(orif::TASK, 2);
  const auto withoutMacros = table->AddTask(orif::TASK_IGNORE_MACRO, 2);
  const auto active = table->AddAlarm(orif::ALARM_CURRENT, 1);
  const auto history = table->AddAlarm(orif::ALARM_LIST, 2);
  if (!first || !second || !withoutMacros || !active || !history) return 1;

  if (!table->Refresh()) return 1;
  std::cout << "Tasks\n";
  Print(*first);
  Print(*second);
  std::cout << "Tasks without macros\n";
  Print(*withoutMacros);
  std::cout << "Active alarms\n";
  Print(*active, 1);
  std::cout << "Alarm history\n";
  Print(*history, 2);

  if (!core.ClearAlarm() || !table->Refresh()) return 1;
  std::cout << "Active alarms after the reset\n";
  Print(*active, 1);
}

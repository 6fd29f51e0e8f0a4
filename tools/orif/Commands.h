// The commands of the tool. Each Add function adds one to the command line, with its options and
// what it does; the commands themselves stand in files of their names.
#pragma once

namespace CLI {
class App;
}

namespace orif::tool {

void AddReadCommand(CLI::App& app);
void AddWriteCommand(CLI::App& app);
void AddWatchCommand(CLI::App& app);
void AddRecordCommand(CLI::App& app);
void AddPlotCommand(CLI::App& app);
void AddAlarmsCommand(CLI::App& app);
void AddTasksCommand(CLI::App& app);
void AddSimulateCommand(CLI::App& app);

}  // namespace orif::tool

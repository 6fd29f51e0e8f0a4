// The commands of the tool: the options of each, and the function that carries it out. The
// functions throw an Error if they cannot do what was asked.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/orif/Cell.h"
#include "tools/orif/Poll.h"
#include "tools/orif/plot/Picture.h"
#include "tools/orif/recording/Recorder.h"

namespace orif::tool {

struct ReadOptions {
  Connection connection;
  std::vector<std::string> items;
  std::string format;  ///< "table", "csv" or "json", here and below
  bool comments = false;
};
void Read(const ReadOptions& options);

struct WatchOptions {
  Connection connection;
  std::vector<std::string> items;
  Pace pace;
  std::string format;
  std::optional<std::string> page;  ///< ADDRESS:PORT, to show it in browsers too
  std::string tokenFile;            ///< for the page
};
void Watch(const WatchOptions& options);

struct WriteOptions {
  Connection connection;
  std::vector<std::string> requests;  ///< "R[3]=5"
  bool yes = false;
};
void Write(const WriteOptions& options);

/// Which of several assignments to write.
enum class Which { All, Different };

/// Shows what the controller has and what it will have, asks unless `yes`, and writes. Throws an
/// Error that tells what was written.
void WriteValues(const Cell& cell, std::span<const live::Assignment> assignments, bool yes,
                 Which what);

struct SaveOptions {
  Connection connection;
  std::filesystem::path file;
  std::vector<std::string> items;
  bool comments = false;
  bool force = false;
};
void Save(const SaveOptions& options);

struct RestoreOptions {
  Connection connection;
  std::filesystem::path file;
  std::vector<std::string> items;  ///< empty for all that is in the file
  bool yes = false;
};
void Restore(const RestoreOptions& options);

struct RecordOptions {
  Connection connection;
  std::vector<std::string> items;
  Pace pace{.every = std::chrono::milliseconds(100), .length = {}, .count = {}};
  RecordingTarget target;
};
void Record(const RecordOptions& options);

struct PlotOptions {
  std::filesystem::path recording;
  std::vector<std::string> names;
  std::filesystem::path picture;
  bool force = false;
  bool columns = false;  ///< only list them
  PictureWishes wishes;
};
void Plot(const PlotOptions& options);

struct AlarmOptions {
  Connection connection;
  std::string list = "active";  ///< or "history", "password"
  std::int32_t count = 20;
  std::string format;
};
void ShowAlarms(const AlarmOptions& options);

struct ClearAlarmsOptions {
  Connection connection;
  std::int32_t kind = 0;  ///< 0 for all
  bool yes = false;
};
void ClearAlarms(const ClearAlarmsOptions& options);

struct InfoOptions {
  Connection connection;
};
void ShowInfo(const InfoOptions& options);

struct TaskOptions {
  Connection connection;
  std::int32_t count = 20;
  bool noMacros = false;
  bool noVelto = false;
  std::string format;
};
void ShowTasks(const TaskOptions& options);

struct CheckOptions {
  std::string file;       ///< a scenario or a recording; or empty, then
  Connection connection;  ///< the component, and a controller that it reaches
};
/// Prints what is in the file, or whether the component does what the library expects of it.
void Check(const CheckOptions& options);

struct SimulateOptions {
  std::string file;                  ///< a scenario or a recording; empty for DemoCell
  std::optional<std::string> serve;  ///< the address to serve it at
};
/// Serves the cell until Ctrl-C.
void Simulate(const SimulateOptions& options);

}  // namespace orif::tool

// What the tool needs that differs between operating systems: the terminal, Ctrl-C, child programs
// and files. platform_posix.cpp or platform_windows.cpp implements it; the build chooses. Nothing
// else in the tool depends on the system.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orif::tool::platform {

enum class Stream { Input = 0, Output = 1, Error = 2 };

/// Call it before any output. Standard streams then pass bytes on unchanged, and a terminal
/// understands UTF-8 and control sequences.
void PrepareStreams();

bool IsTerminal(Stream stream);

/// The size of the terminal at standard output in characters; 80 by 24 if it is unknown.
struct TerminalSize {
  int columns = 80;
  int rows = 24;
};
TerminalSize OutputSize();

/// From now on Ctrl-C, or a request to end, is only noted and does not end the program.
void CatchInterrupt();
/// Whether one has been noted.
bool Interrupted();

/// Sleeps for `time`, or less if a signal arrives.
void Sleep(std::chrono::milliseconds time);

/// Sets a variable of this program's environment.
void SetEnvironment(const std::string& name, const std::string& value);

/// The name of a communication component as the library takes it. A path becomes absolute; where
/// components can be registered, a registered name stays as it is.
std::string ComponentName(const std::string& said);

/// Runs a program from the search path with `input` on its standard input. It shares this program's
/// outputs. Answers its exit code, none if it could not be started.
std::optional<int> RunProgram(const std::vector<std::string>& command, std::string_view input);

/// A file that is only appended to. Each Append is one write. A write that did not fit is cut off
/// again, so that the file always ends with a whole one. Throws std::system_error with the system's
/// reason.
class AppendedFile {
 public:
  /// Creates the file. It must not exist unless `replace` is set.
  AppendedFile(const std::string& path, bool replace);
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;
  ~AppendedFile();

  void Append(std::string_view text);

 private:
  int file_ = -1;
};

}  // namespace orif::tool::platform

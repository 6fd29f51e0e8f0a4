// What differs between operating systems, as far as the tool needs it: the terminal, Ctrl-C, child
// programs and files on the disk. platform_posix.cpp and its siblings implement it and the build
// chooses one; nothing else in the tool depends on the system.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orif::tool::platform {

enum class Stream { Input = 0, Output = 1, Error = 2 };

/// Called before any output: the standard streams take bytes as they are, and a terminal UTF-8 and
/// the sequences that steer it.
void PrepareStreams();

bool IsTerminal(Stream stream);

/// The terminal behind the standard output in characters, 80 by 24 where that cannot be told.
struct TerminalSize {
  int columns = 80;
  int rows = 24;
};
TerminalSize OutputSize();

/// From now on Ctrl-C (and a request to end) is noted instead of ending the program.
void CatchInterrupt();
bool Interrupted();

/// Sleeps so long, or less when a signal arrives.
void Sleep(std::chrono::milliseconds time);

/// Sets a variable of this program's environment.
void SetEnvironment(const std::string& name, const std::string& value);

/// What names a communication component to the library, of what the user said: a path as an
/// absolute one, and where components can be registered their names as they are.
std::string ComponentName(const std::string& said);

/// Runs a program found by the system's search path, `input` on its standard input; its outputs are
/// those of this program. Returns its exit code, none when it could not be started.
std::optional<int> RunProgram(const std::vector<std::string>& command, std::string_view input);

/// A file that is only appended to. Each Append is one write, cut back when it does not fit, so
/// that the file always ends where an Append ended. Throws std::system_error with the system's
/// reason.
class AppendedFile {
 public:
  /// Creates the file; one that exists is an error unless `replace`.
  AppendedFile(const std::string& path, bool replace);
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;
  ~AppendedFile();

  void Append(std::string_view text);

 private:
  int file_ = -1;
};

}  // namespace orif::tool::platform

// What the tool needs that differs between operating systems: the terminal, Ctrl-C, child programs
// and files. platform_posix.cpp or platform_windows.cpp implements it; the build chooses. Nothing
// else in the tool depends on the system.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orif::tool::platform {

enum class Stream { Input = 0, Output = 1, Error = 2 };

/// Call it before any output. Standard streams then pass bytes on unchanged, a terminal understands
/// UTF-8 and control sequences, and no file takes the place of a stream that the caller closed.
void PrepareStreams();

bool IsTerminal(Stream stream);

/// The size of the terminal at standard output in characters; 80 by 24 if it is unknown.
struct TerminalSize {
  int columns = 80;
  int rows = 24;
};
TerminalSize OutputSize();

/// Writes `enter` to the terminal at standard output, and `leave` when LeaveScreen is called or the
/// program ends in any other way that lets it: by a signal, or a crash. Stopped (Ctrl-Z), the
/// terminal is left, and it is entered again when the program goes on in the foreground. Both texts
/// live as long as the program.
void EnterScreen(std::string_view enter, std::string_view leave);
/// Writes what the screen shows from now on, and writes it again when it is entered again. Whether
/// it could be written; in the background it waits for that.
bool ShowPage(std::string page);
/// May be called from a signal handler.
void LeaveScreen();

/// A key that the user presses while a screen is shown.
enum class Key { Quit, Up, Down, PageUp, PageDown, Left, Right };
/// The next one, none if there is none that means anything.
std::optional<Key> ReadKey();

/// Keeps signals away from the calling thread, so that they reach the one that waits for them.
void LeaveSignalsToOthers();

/// From now on Ctrl-C, or a request to end, is only noted and does not end the program; the second
/// one does at once, wherever the program is. What the caller has the program ignore, such as the
/// end of the terminal with nohup, stays ignored.
void CatchInterrupt();
/// Whether one has been noted.
bool Interrupted();

/// Sleeps for `time`, or less if a signal arrives.
void Sleep(std::chrono::milliseconds time);

/// A character encoding, by the names that the systems have for it.
struct EncodingName {
  const char* said;  ///< by users of the tool
  const char* iconv;
  unsigned codePage;
};

/// Converts texts between an encoding and UTF-8.
class Encoding {
 public:
  /// Throws a std::runtime_error if the system does not know it.
  explicit Encoding(const EncodingName& name);
  Encoding(const Encoding&) = delete;
  Encoding& operator=(const Encoding&) = delete;
  ~Encoding();

  /// The text in UTF-8; bytes that are no part of a character become U+FFFD.
  std::string ToUtf8(std::string_view text) const;
  /// A text in UTF-8 in this encoding; none if that has not all of its characters.
  std::optional<std::string> FromUtf8(std::string_view text) const;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

/// Sets a variable of this program's environment.
void SetEnvironment(const std::string& name, const std::string& value);

/// The name of a communication component as the library takes it. A path becomes absolute; where
/// components can be registered, a registered name stays as it is.
std::string ComponentName(const std::string& said);

/// Runs a program from the search path with `input` on its standard input. What it prints is
/// dropped. Answers its exit code, none if it could not be started.
std::optional<int> RunProgram(const std::vector<std::string>& command, std::string_view input);

/// Another program has the file open as an AppendedFile.
struct FileInUse : std::runtime_error {
  FileInUse() : std::runtime_error("another program is writing to it") {}
};

/// A file that is only appended to, by one program at a time; anybody may read it meanwhile. Each
/// Append is one write. A write that did not fit is cut off again, so that the file always ends
/// with a whole one. Throws std::system_error with the system's reason.
class AppendedFile {
 public:
  enum class Begin {
    New,      ///< creates the file; it must not exist, and no link is followed
    Existing  ///< opens a regular file, to go on at its end
  };
  /// Throws FileInUse too.
  AppendedFile(const std::string& path, Begin begin);
  AppendedFile(const AppendedFile&) = delete;
  AppendedFile& operator=(const AppendedFile&) = delete;
  ~AppendedFile();

  void Append(std::string_view text);
  std::uint64_t Size() const;
  void CutTo(std::uint64_t size);

 private:
  int file_ = -1;
};

/// Puts the file `replacement` in the place of the file `path`. `old` is that file, if it is open,
/// and remains open for as long as the system can do that.
void PutInPlaceOf(const std::string& path, const std::string& replacement,
                  std::unique_ptr<AppendedFile> old);

}  // namespace orif::tool::platform

// What differs between operating systems, one function each. platform_posix.cpp and
// platform_windows.cpp implement it; the build chooses one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orif::platform {

/// The separator between the parts of a path.
extern const char PathSeparator;
/// The end of a line in a text file.
extern const std::string_view LineEnd;

/// The directory of the file, library or program, that contains this code. Throws a Fault.
std::string ModuleDirectory();

/// The number of the calling thread; after a fork, that of the child.
std::int32_t ThreadNumber() noexcept;

/// The base class of what one thread keeps until it ends.
class ThreadObject {
 public:
  ThreadObject() = default;
  ThreadObject(const ThreadObject&) = delete;
  ThreadObject& operator=(const ThreadObject&) = delete;
  virtual ~ThreadObject() = default;
};

/// Hands `object` to the calling thread, which has none yet; the system deletes it when the thread
/// ends. Deletes the object at once and returns false if the system cannot do that, for example
/// because the thread is ending. The module that contains this code must stay loaded until its
/// threads have ended.
bool LeaveToThread(std::unique_ptr<ThreadObject> object) noexcept;

/// The object of the calling thread; null if it has none, or none any more.
ThreadObject* OfThread() noexcept;

/// The high-resolution counter.
std::int64_t PerformanceCounter() noexcept;
/// How much the high-resolution counter grows in a second.
std::int64_t PerformanceFrequency() noexcept;

/// Local date and time, with the time of day as the platform formats it.
struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  std::string timeOfDay;
};
LocalTime Now();

/// The text stored for `key` in a section of the per-user settings of an application; empty if
/// there is none.
std::optional<std::string> Setting(std::string_view application, std::string_view section,
                                   std::string_view key);

/// Creates a file with `text` at `path` and replaces whatever has that name. Throws a Fault with
/// the reason of the system.
void WriteNewFile(const std::string& path, std::string_view text);

/// Appends `text` in one piece to the file at `path`, which is created if it is missing. Several
/// threads may append at the same time. Links are not followed, and pipes are refused rather than
/// waited for. Throws a Fault with the reason of the system.
void AppendToFile(const std::string& path, std::string_view text);

/// Shows the user an error: in a message box if there is a desktop, else on standard error.
void ErrorBox(const std::string& text) noexcept;

/// The value of an environment variable. Empty if it is not set, and in a program that runs with
/// more rights than its caller.
std::string Environment(const char* name);

bool IsAbsolutePath(std::string_view path);

/// Loads a shared object, which stays loaded until the process ends. Throws a Fault with the reason
/// of the system.
void* LoadModule(const std::string& path);

/// The address of a symbol in a loaded module. Throws a Fault with the reason of the system.
void* ModuleSymbol(void* module, const char* name);

}  // namespace orif::platform

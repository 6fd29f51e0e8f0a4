// What differs between operating systems, one function each; platform_posix.cpp and its siblings
// implement it and the build chooses one. Used by the trail and by the search for the lower
// component; knows nothing of either.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orif::platform {

/// The separator of the parts of a path, and the end of a line in a text file.
extern const char PathSeparator;
extern const std::string_view LineEnd;

/// The directory of the module file, library or program, that contains this code. Throws a Fault.
std::string ModuleDirectory();

/// The number of the calling thread; after a fork, the child's own.
std::int32_t ThreadNumber() noexcept;

/// What one thread keeps until it ends.
class ThreadObject {
 public:
  ThreadObject() = default;
  ThreadObject(const ThreadObject&) = delete;
  ThreadObject& operator=(const ThreadObject&) = delete;
  virtual ~ThreadObject() = default;
};

/// Leaves `object` to the calling thread, which has none yet; the system deletes it when the thread
/// ends. Where the system cannot do that, as on a thread that is at its end, the object is deleted
/// at once and the answer is false. The module that contains this code must not be unloaded before
/// its threads have ended.
bool LeaveToThread(std::unique_ptr<ThreadObject> object) noexcept;

/// The object of the calling thread; null when it has none, or none any more.
ThreadObject* OfThread() noexcept;

/// The high-resolution counter and how much it grows in a second.
std::int64_t PerformanceCounter() noexcept;
std::int64_t PerformanceFrequency() noexcept;

/// Local date and time; `timeOfDay` as the platform formats it.
struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  std::string timeOfDay;
};
LocalTime Now();

/// The text stored for `key` in the per-user settings of an application's section; empty when there
/// is none.
std::optional<std::string> Setting(std::string_view application, std::string_view section,
                                   std::string_view key);

/// Makes a file with `text` at `path`, in the place of what has that name. Throws a Fault with the
/// system's reason.
void WriteNewFile(const std::string& path, std::string_view text);

/// Appends `text` in one piece to the file at `path`, which is made where it is missing. Threads
/// may append at once. A link is not followed and a pipe not waited for: they are no such file.
/// Throws a Fault with the system's reason.
void AppendToFile(const std::string& path, std::string_view text);

/// Tells the user of an error: a message box where there is a desktop to show it on, else standard
/// error.
void ErrorBox(const std::string& text) noexcept;

/// The value of an environment variable, empty when it is not set or empty, and in a program that
/// runs with more rights than its caller has.
std::string Environment(const char* name);

bool IsAbsolutePath(std::string_view path);

/// Loads a shared object, which stays loaded until the process ends, and finds a symbol in it.
/// Throw a Fault with the system's reason, for what is no file too.
void* LoadModule(const std::string& path);
void* ModuleSymbol(void* module, const char* name);

}  // namespace orif::platform

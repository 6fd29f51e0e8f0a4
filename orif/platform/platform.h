// What differs between operating systems, one function each; platform_posix.cpp and its siblings
// implement it and the build chooses one. Used by the trail and by the search for the lower
// component; knows nothing of either.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace orif::platform {

/// The separator of the parts of a path.
extern const char PathSeparator;

/// The directory of the module file, library or program, that contains this code. Throws a Fault.
std::string ModuleDirectory();

/// The number of the calling thread.
std::int32_t ThreadNumber() noexcept;

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

/// Tells the user of an error: a message box where there is a desktop to show it on, else standard
/// error.
void ErrorBox(const std::string& text) noexcept;

/// The value of an environment variable, empty when it is not set or empty.
inline std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool IsAbsolutePath(std::string_view path);

/// Loads a shared object, which stays loaded until the process ends, and finds a symbol in it.
/// Throw a Fault with the system's reason.
void* LoadModule(const std::string& path);
void* ModuleSymbol(void* module, const char* name);

}  // namespace orif::platform

// The state of diagnostics: the last message and the trail of the last 100 lines, which each thread
// has of its own; the trail flag, the log file, the counter behind every ObjectID and the library's
// start-up, which all threads share; the millisecond timer. Every function may be called by several
// threads at once, and none waits for another. The state outlives every object, so that objects
// with static storage may use it. docs/trail.md describes lines, trail and log file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/orif_export.h"

namespace orif::modOrif {

/// The number of lines that the trail keeps.
constexpr std::size_t TrailLength = 100;

/// Reads the settings and, when file logging is on, creates this run's log file. Runs when the
/// library is loaded, at the latest when the first object takes its id; later calls do nothing. An
/// error of it is shown to the user when the first object takes its id.
void Main() noexcept;

/// Makes a line of a message: time of day, thread number, message. The line becomes the thread's
/// last message, is kept in the thread's trail while the trail flag is on, and is appended to the
/// log file while that is on. A line that cannot be kept or written is dropped; one that a thread
/// writes at its very end reaches the log file only.
ORIF_EXPORT void DebugOut(std::string_view message) noexcept;

/// Whether lines are kept in the trail, on every thread.
void TrailFlag(bool value) noexcept;

/// The next ObjectID: 1, 2, 3 ... over all classes.
std::int32_t NextObjectId() noexcept;

/// The calling thread's last message.
std::string LastMessage();

/// The lines kept of the calling thread, oldest first. The first is followed directly by the
/// second, every later one ends with a carriage return and a line feed.
std::string AllMessages();

/// Milliseconds of the high-resolution performance counter. Throws a Fault when there is no such
/// counter.
double Timer();

/// The number of live Core objects; for a debugger's eye.
void CountCore(std::int32_t change) noexcept;

/// A setting of the application, as a variant converts it; `preset` when it is missing or does not
/// convert.
bool BooleanSetting(std::string_view key, bool preset) noexcept;
std::int32_t IntegerSetting(std::string_view key, std::int32_t preset) noexcept;

}  // namespace orif::modOrif

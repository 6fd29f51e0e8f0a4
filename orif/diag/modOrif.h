// modOrif: the state behind the debug trail, the log file, object numbers, settings and the timer.
// Each thread has its own last message and its own trail of 100 lines; everything else is shared.
// Any thread may call any function at any time, and none waits. The state outlives every object, so
// objects with static storage may use it. docs/trail.md describes lines, trail and log file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/orif_export.h"

namespace orif::modOrif {

/// The number of lines that a trail keeps.
constexpr std::size_t TrailLength = 100;

/// Starts the library: reads the settings and, if file logging is on, creates the log file of this
/// run. It is called when the library is loaded, at the latest when the first object takes its id;
/// later calls do nothing. If the log file cannot be created, the user is told when the first
/// object takes its id.
void Main() noexcept;

/// Makes a line of a message: time of day, thread number, message. It becomes the last message of
/// the thread, is kept in the trail of the thread while the trail flag is on, and is appended to
/// the log file if file logging is on. A line that cannot be kept or written is dropped. A line
/// that a thread writes at its very end only reaches the log file.
ORIF_EXPORT void DebugOut(std::string_view message) noexcept;

/// Sets whether trails keep lines, on all threads.
void TrailFlag(bool value) noexcept;

/// The next ObjectID: 1, 2, 3 and so on, over all classes.
std::int32_t NextObjectId() noexcept;

/// The last message of the calling thread.
std::string LastMessage();

/// The trail of the calling thread, oldest line first. The first line is followed directly by the
/// second; each line from the second on ends with CR LF.
std::string AllMessages();

/// The high-resolution counter of the system in milliseconds. Throws a Fault if there is none.
double Timer();

/// Changes the number of live Core objects. The library does not use it; it can be looked at in a
/// debugger.
void CountCore(std::int32_t change) noexcept;

/// A setting of the application, converted as Variant does; `preset` if it is missing or does not
/// convert.
bool BooleanSetting(std::string_view key, bool preset) noexcept;
std::int32_t IntegerSetting(std::string_view key, std::int32_t preset) noexcept;

}  // namespace orif::modOrif

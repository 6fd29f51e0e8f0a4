#include "orif/diag/modOrif.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <new>

#include "orif/base/Fault.h"
#include "orif/base/Guard.h"
#include "orif/base/Variant.h"
#include "orif/platform/platform.h"
#include "orif/version.h"

namespace orif {

const char* Version() noexcept { return VersionText; }

namespace modOrif {
namespace {

constinit std::atomic<bool> trailFlag = false;
constinit std::atomic<std::uint32_t> objectCounter = 0;
constinit std::atomic<std::int32_t> liveCores = 0;

// What the library found at its start; only read after that.
struct StartUp {
  bool fileFlag = false;
  std::string logPath;
  std::string error;
};

// The lines of one thread.
struct Lines : platform::ThreadObject {
  /// The line being built.
  std::string line;
  std::string last;
  /// A ring; `oldest` is where the next line goes.
  std::array<std::string, TrailLength> trail;
  std::size_t oldest = 0;
};

// The lines of the calling thread; null if it has written none.
Lines* WrittenLines() noexcept { return static_cast<Lines*>(platform::OfThread()); }

// The same, created if necessary; null if the thread is ending or there is no memory.
Lines* ThreadLines() noexcept {
  if (Lines* const written = WrittenLines()) return written;
  std::unique_ptr<Lines> lines(new (std::nothrow) Lines);
  if (lines != nullptr) platform::LeaveToThread(std::move(lines));
  return WrittenLines();
}

std::string TwoDigits(int value) {
  std::string text = std::to_string(value);
  if (text.size() < 2) text.insert(0, 1, '0');
  return text;
}

std::string LogFileName() {
  const platform::LocalTime now = platform::Now();
  std::string stamp =
      std::to_string(now.year) + TwoDigits(now.month) + TwoDigits(now.day) + now.timeOfDay;
  constexpr std::size_t CenturyDigits = 2;
  stamp.erase(0, CenturyDigits);
  std::erase(stamp, ':');
  return "log" + stamp + ".txt";
}

StartUp Start() noexcept {
  StartUp startUp;
  startUp.fileFlag = BooleanSetting("DebugOut", false);
  if (!startUp.fileFlag) return startUp;
  Guarded(
      [&] {
        startUp.logPath = platform::ModuleDirectory() + platform::PathSeparator + LogFileName();
        std::string header = std::string("ORVEX Debug Out V") + VersionText;
        platform::WriteNewFile(startUp.logPath, header.append(platform::LineEnd));
      },
      [&](const char* description) {
        Guarded([&] { startUp.error = std::string("[Main] Make debug out ") + description; });
      });
  return startUp;
}

// Never destroyed: a Core with static storage may be constructed before and destroyed after
// everything else in this file.
const StartUp& Started() noexcept {
  alignas(StartUp) static std::array<std::byte, sizeof(StartUp)> memory;
  static const StartUp& startUp = *new (memory.data()) StartUp(Start());
  return startUp;
}

// Starts the library when it is loaded. Objects in other translation units may be constructed even
// earlier, so the object counter starts it too.
[[maybe_unused]] const bool loaded = (Main(), true);

// Not in Start: some systems cannot show anything while a library is being loaded.
void ShowStartUpError() noexcept {
  constinit static std::atomic<bool> shown = false;
  const std::string& error = Started().error;
  if (!error.empty() && !shown.exchange(true)) platform::ErrorBox(error);
}

Variant Setting(std::string_view key) {
  const auto text = platform::Setting("ORVEX", "Setting", key);
  if (!text) throw Fault(Fault::SubscriptOutOfRange);
  return *text;
}

}  // namespace

void Main() noexcept { Started(); }

void DebugOut(std::string_view message) noexcept {
  Guarded([&] {
    Lines* const lines = ThreadLines();
    std::string unkept;
    std::string& line = lines == nullptr ? unkept : lines->line;
    line = platform::Now().timeOfDay;
    line.append(" ").append(std::to_string(platform::ThreadNumber())).append(" ").append(message);
    if (lines != nullptr) {
      lines->last = line;
      if (trailFlag.load(std::memory_order_relaxed)) {
        lines->trail[lines->oldest] = line;
        lines->oldest = (lines->oldest + 1) % TrailLength;
      }
    }
    const StartUp& startUp = Started();
    if (startUp.fileFlag) platform::AppendToFile(startUp.logPath, line.append(platform::LineEnd));
  });
}

void TrailFlag(bool value) noexcept { trailFlag.store(value, std::memory_order_relaxed); }

std::int32_t NextObjectId() noexcept {
  Main();
  ShowStartUpError();
  return static_cast<std::int32_t>(objectCounter.fetch_add(1, std::memory_order_relaxed) + 1);
}

std::string LastMessage() {
  const Lines* const lines = WrittenLines();
  return lines == nullptr ? std::string() : lines->last;
}

std::string AllMessages() {
  std::string result;
  const Lines* const lines = WrittenLines();
  if (lines == nullptr) return result;
  for (std::size_t i = 0; i < TrailLength; ++i) {
    const std::string& entry = lines->trail[(lines->oldest + i) % TrailLength];
    const bool lineEnd = !entry.empty() && !result.empty();
    result += entry;
    if (lineEnd) result += "\r\n";
  }
  return result;
}

double Timer() {
  const std::int64_t frequency = platform::PerformanceFrequency();
  if (frequency == 0) throw Fault(Fault::DivisionByZero);
  return static_cast<double>(platform::PerformanceCounter()) / static_cast<double>(frequency) *
         1000.0;
}

void CountCore(std::int32_t change) noexcept {
  liveCores.fetch_add(change, std::memory_order_relaxed);
}

bool BooleanSetting(std::string_view key, bool preset) noexcept {
  return Guarded(preset, [&] { return Setting(key).ToBoolean(); });
}

std::int32_t IntegerSetting(std::string_view key, std::int32_t preset) noexcept {
  return Guarded(preset, [&] { return Setting(key).ToInt32(); });
}

}  // namespace modOrif
}  // namespace orif

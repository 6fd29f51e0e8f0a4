#include "orif/diag/modOrif.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "orif/base/Fault.h"
#include "orif/base/Guard.h"
#include "orif/base/Variant.h"
#include "orif/platform/platform.h"

namespace orif::modOrif {
namespace {

struct State {
  bool started = false;
  bool trailFlag = false;
  bool fileFlag = false;
  std::uint32_t objectCounter = 0;
  std::int32_t liveCores = 0;
  std::string startUpError;  // until it is shown
  std::string logPath;
  std::string lastMessage;
  std::string line;                            // the one being built
  std::array<std::string, TrailLength> trail;  // a ring
  std::size_t oldest = 0;                      // where the next line goes
};

// Made on first use and never destroyed: a Core with static storage may be made before and end
// after anything else in this file.
State& Module() {
  alignas(State) static std::array<std::byte, sizeof(State)> memory;
  static State& state = *new (memory.data()) State;
  return state;
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Opens, writes and closes; false, with the reason in errno, when a step failed.
bool WriteLine(const char* mode, std::string_view line) {
  File file(std::fopen(Module().logPath.c_str(), mode));
  if (file == nullptr) return false;
  const bool written = std::fwrite(line.data(), 1, line.size(), file.get()) == line.size() &&
                       std::fputc('\n', file.get()) != EOF;
  return std::fclose(file.release()) == 0 && written;
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
  stamp.erase(0, 2);  // the century
  std::erase(stamp, ':');
  return "log" + stamp + ".txt";
}

void CreateLogFile() {
  Module().logPath = platform::ModuleDirectory() + platform::PathSeparator + LogFileName();
  if (!WriteLine("w", "ORVEX Debug Out V" ORIF_VERSION)) {
    throw Fault(std::generic_category().message(errno));
  }
}

Variant Setting(std::string_view key) {
  const auto text = platform::Setting("ORVEX", "Setting", key);
  if (!text) throw Fault(Fault::SubscriptOutOfRange);
  return *text;
}

// The library starts when it is loaded. Objects of other translation units may be made earlier
// still, so the counter starts it too.
[[maybe_unused]] const bool loaded = (Main(), true);

// Not by Main: while a library is loaded, a system may not be able to show anything.
void ShowStartUpError() noexcept {
  State& module = Module();
  if (module.startUpError.empty()) return;
  platform::ErrorBox(std::exchange(module.startUpError, {}));
}

}  // namespace

void Main() noexcept {
  State& module = Module();
  if (module.started) return;
  module.started = true;
  module.fileFlag = BooleanSetting("DebugOut", false);
  if (!module.fileFlag) return;
  Guarded(
      [] { CreateLogFile(); },
      [&](const char* description) {
        Guarded([&] { module.startUpError = std::string("[Main] Make debug out ") + description; });
      });
}

void DebugOut(std::string_view message) noexcept {
  Guarded([&] {
    State& module = Module();
    std::string& line = module.line;
    line = platform::Now().timeOfDay;
    line.append(" ").append(std::to_string(platform::ThreadNumber())).append(" ").append(message);
    module.lastMessage = line;
    if (module.trailFlag) {
      module.trail[module.oldest] = line;
      module.oldest = (module.oldest + 1) % TrailLength;
    }
    if (module.fileFlag) WriteLine("a", line);
  });
}

void TrailFlag(bool value) noexcept { Module().trailFlag = value; }

std::int32_t NextObjectId() noexcept {
  Main();
  ShowStartUpError();
  return static_cast<std::int32_t>(++Module().objectCounter);
}

std::string LastMessage() { return Module().lastMessage; }

std::string AllMessages() {
  const State& module = Module();
  std::string result;
  for (std::size_t i = 0; i < TrailLength; ++i) {
    const std::string& entry = module.trail[(module.oldest + i) % TrailLength];
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

void CountCore(std::int32_t change) noexcept { Module().liveCores += change; }

bool BooleanSetting(std::string_view key, bool preset) noexcept {
  return Guarded(preset, [&](bool& result) { result = Setting(key).ToBoolean(); });
}

std::int32_t IntegerSetting(std::string_view key, std::int32_t preset) noexcept {
  return Guarded(preset, [&](std::int32_t& result) { result = Setting(key).ToInt32(); });
}

}  // namespace orif::modOrif

#include "tools/orif/terminal/Progress.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "tools/orif/platform/platform.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;

constexpr auto ShowEvery = 100ms;
constexpr int BarWidth = 24;
constexpr const char* StartOfLine = "\r\x1b[K";

std::string Bar(double fraction) {
  const auto full = static_cast<std::size_t>(fraction * BarWidth);
  return '[' + std::string(full, '#') + std::string(BarWidth - full, '.') + "] " +
         std::to_string(static_cast<int>(fraction * 100)) + " %  ";
}

std::string TimeLeft(double fraction, std::chrono::milliseconds time) {
  if (fraction <= 0) return {};
  const auto left = static_cast<std::int64_t>(static_cast<double>(time.count()) * (1 - fraction) /
                                              fraction / 1000);
  if (left < 60) return std::to_string(left) + " s left  ";
  return std::to_string(left / 60) + " min " + std::to_string(left % 60) + " s left  ";
}

}  // namespace

Progress::Progress() : terminal_(platform::IsTerminal(platform::Stream::Error)) {}

Progress::~Progress() {
  if (shown_) std::cerr << StartOfLine << std::flush;
}

void Progress::Tell(const std::string& line) {
  if (std::exchange(shown_, {})) std::cerr << StartOfLine;
  tool::Tell(line);
}

void Progress::Show(std::optional<double> fraction, std::chrono::milliseconds time,
                    const std::string& text) {
  const auto now = std::chrono::steady_clock::now();
  if (!terminal_ || (shown_ && now - *shown_ < ShowEvery)) return;
  shown_ = now;
  std::cerr << StartOfLine;
  if (fraction) {
    const double part = std::clamp(*fraction, 0.0, 1.0);
    std::cerr << Bar(part) << TimeLeft(part, time);
  }
  std::cerr << text << std::flush;
}

}  // namespace orif::tool

// "orif info": which component the tool uses, whether it reaches the controller, and how fast.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "orif/lowerlayer/Component.h"
#include "orif/lowerlayer/orvex_commlib.h"
#include "orif/version.h"
#include "tools/orif/Cell.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {
namespace {

using Elapsed = std::chrono::steady_clock::duration;

constexpr const char* Measured = "R[1-10]";
constexpr std::size_t Refreshes = 20;

void Say(const std::string& what, const std::string& text) {
  std::cout << Left(what, 12) << Printable(text) << '\n';
}

std::string InMilliseconds(Elapsed time) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.3g",
                std::chrono::duration<double, std::milli>(time).count());
  return text.data();
}

template <class Function>
Elapsed TimeOf(Function function) {
  const auto began = std::chrono::steady_clock::now();
  function();
  return std::chrono::steady_clock::now() - began;
}

std::string ComponentText(Cell& cell, const live::Settings& settings) {
  if (cell.Simulated() != nullptr) return "none, since the cell is simulated";
  if (settings.factory) return "none, since the cell is served";
  if (!settings.component.empty()) return settings.component;
  const char* named = std::getenv(ComponentVariable);
  if (named != nullptr && *named != '\0')
    return std::string(named) + " (" + ComponentVariable + ")";
  return "OrvexCommLib, as it is installed";
}

void Measure(live::Controller& controller) {
  std::vector<Elapsed> times;
  for (std::size_t i = 0; i < Refreshes; ++i) {
    bool good = false;
    times.push_back(TimeOf([&] { good = controller.Refresh(); }));
    if (!good) throw Refusal("the values cannot be read", controller.LastReason());
  }
  CheckFirstRefresh(controller, true);
  std::ranges::sort(times);
  Say("refresh", InMilliseconds(times.front()) + " ms at least, " +
                     InMilliseconds(times[times.size() / 2]) + " ms in the middle, " +
                     InMilliseconds(times.back()) + " ms at most (" + std::to_string(Refreshes) +
                     " times " + Measured + ")");
}

}  // namespace

void ShowInfo(const InfoOptions& options) {
  Cell cell(options.connection);
  const live::Settings settings = cell.Settings({Measured});
  Say("host", cell.Host());
  Say("component", ComponentText(cell, settings));
  Say("interface", "version " + std::to_string(ORVEX_COMMLIB_VERSION));
  Say("library", std::string("orif ") + Version());
  Controller controller(settings);
  bool connected = false;
  const Elapsed time = TimeOf([&] { connected = controller.Connect(); });
  Say("connection", connected ? "up after " + InMilliseconds(time) + " ms" : "none");
  if (!connected) throw NoConnection(controller);
  Say("port", std::to_string(*controller.Port()));
  Say("time-out", std::to_string(controller.TimeOut()->count()) + " ms");
  Measure(controller);
}

}  // namespace orif::tool

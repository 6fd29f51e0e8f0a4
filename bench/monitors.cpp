// Not a benchmark: 200 controllers with 100 registers, 2 positions and 32 signals each, refreshed
// each second for as many seconds as the argument says (10). All numbers change each time. Prints
// how much of a processor that takes, beside cells that answer at once.
#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "bench/DirectCore.h"
#include "live/live.h"

namespace {

double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main(int argc, char** argv) {
  using namespace std::chrono_literals;
  const long seconds = argc > 1 ? std::max(1L, std::strtol(argv[1], nullptr, 10)) : 10;
  std::vector<std::unique_ptr<orif::live::Monitor>> monitors;
  for (int i = 0; i < 200; ++i) {
    monitors.push_back(std::make_unique<orif::live::Monitor>(
        orif::live::Settings{
            .host = "cell" + std::to_string(i),
            .factory = [] { return orif::bench::MakeDirectCore(orif::bench::Delivery::Change); },
            .tags = {"R[1-100]", "PR[1-2]", "DO[1-32]"}},
        1000ms));
    std::this_thread::sleep_for(5ms);  // plants do not start all cells at the same moment
  }
  const double before = ProcessorSeconds();
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  const double share = (ProcessorSeconds() - before) / static_cast<double>(seconds);
  std::cout << "200 controllers each second: " << 100 * share << " % of a processor\n";
  for (const auto& monitor : monitors) {
    if (monitor->State() != orif::live::Link::Up) return EXIT_FAILURE;
  }
}

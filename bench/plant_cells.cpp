// Not a benchmark: the cells of a plant for scripts/plant-scale.sh, served to other processes until
// this one is ended: as many as the argument says (200), named cell1, cell2, ..., each with 100
// registers, 2 position registers and 32 digital outputs, all of which change each second. Prints a
// line for each server once it listens: its address and the first and last number of its cells.
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "simulator/served/Server.h"

namespace orif::bench {
namespace {

// Fewer than a server takes, so that a client which reconnects finds a place.
constexpr int CellsOfAServer = 100;

// One behaviour for all that a controller has: cheaper than one for each value. Controllers change
// at different moments, as those of a plant do.
sim::Behaviour ChangeAll(int cell) {
  const sim::Time phase{cell * 137 % 1000};
  return [phase](sim::Controller& robot, sim::Time before, sim::Time now) {
    using std::chrono::seconds;
    const auto second = std::chrono::floor<seconds>(now + phase);
    if (second == std::chrono::floor<seconds>(before + phase)) return;
    const auto count = static_cast<std::int32_t>(second.count());
    for (std::int32_t i = 1; i <= 100; ++i) robot.NumericRegister(i) = 1000 * i + count;
    for (std::int32_t i = 1; i <= 2; ++i) {
      auto& position = robot.PositionRegister(1, i);
      position.validC = position.validJ = 1;
      position.xyzwpr.fill(static_cast<float>(count) + 0.5F * static_cast<float>(i));
      position.joint.fill(static_cast<float>(count));
    }
    for (std::int32_t i = 1; i <= 32; ++i) {
      robot.Signal(sim::SignalKind::SDO, i) = (count + i) & 1;
    }
  };
}

void Serve(int first, int last) {
  sim::Network network;
  for (int cell = first; cell <= last; ++cell) {
    network.AddController("cell" + std::to_string(cell)).Add(ChangeAll(cell));
  }
  sim::Server server(network, "cell" + std::to_string(first), {"127.0.0.1", 0});
  std::cout << ToText(server.Where()) + ' ' + std::to_string(first) + ' ' + std::to_string(last) +
                   '\n'
            << std::flush;
  server.Run([] { return false; });
}

}  // namespace
}  // namespace orif::bench

int main(int argc, char** argv) {
  const int cells = argc > 1 ? std::atoi(argv[1]) : 200;
  std::vector<std::jthread> servers;
  for (int first = 1; first <= cells; first += orif::bench::CellsOfAServer) {
    const int last = std::min(cells, first + orif::bench::CellsOfAServer - 1);
    servers.emplace_back([first, last] {
      try {
        orif::bench::Serve(first, last);
      } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        std::_Exit(EXIT_FAILURE);
      }
    });
  }
}

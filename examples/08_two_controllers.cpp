// Two controllers in two threads. Links that are lost come back by themselves.
#include <chrono>
#include <iostream>
#include <thread>

#include "live/live.h"
#include "simulator/Network.h"

void CountCycles(const std::string& host, const orif::DispatchFactory& factory) {
  orif::live::Controller cell({.host = host, .factory = factory, .tags = {"R[1-10]", "DO[1-16]"}});
  for (int cycles = 1; cycles <= 3;) {
    if (!cell.Refresh()) std::cerr << cell.LastReason().ToText() << '\n';  // it will reconnect
    if (cell.Write("R[1]", cycles)) ++cycles;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

int main() {
  orif::sim::Network network;  // real controllers need no factory
  for (const char* host : {"cell1", "cell2"}) network.AddController(host);
  std::thread first(CountCycles, "cell1", network.Factory());
  std::thread second(CountCycles, "cell2", network.Factory());
  for (std::thread* thread : {&first, &second}) thread->join();
  std::cout << std::get<int>(network.Find("cell1")->NumericRegister(1)) << " cycles\n";
}

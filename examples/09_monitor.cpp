// A monitor refreshes a controller on a thread of its own and tells what changes. The link is lost
// here on purpose, and comes back.
#include <chrono>
#include <iostream>
#include <thread>

#include "live/live.h"
#include "simulator/Demo.h"

using namespace std::chrono_literals;
namespace live = orif::live;

namespace {

void Show(const live::Tag& tag) {
  std::cout << "  " << tag.name << " = " << tag.value.Text() << ' ' << tag.unit;
  if (tag.quality != live::Quality::Good) {
    std::cout << "  " << ToText(tag.quality) << ": " << tag.reason->text;
  }
  std::cout << '\n';
}

template <class Condition>
void WaitUntil(const Condition& condition) {
  while (!condition()) std::this_thread::sleep_for(1ms);
}

}  // namespace

int main() {
  orif::sim::Network network = orif::sim::DemoNetwork();
  live::Settings cell{.host = "demo", .tags = {"R[1-2]", "PR[1].X", "$NOWHERE:int", "DO[1]"}};
  cell.factory = network.Factory();
  cell.retry.first = 100ms;

  live::MonitorEvents events;
  events.onLink = [](live::Link link, const live::Reason& reason) {
    std::cout << "link " << ToText(link) << "  " << reason.text << '\n';
  };
  events.onRefresh = [](const live::Refreshed& now) {
    for (const std::size_t i : now.changed) Show(now.controller.Tags()[i]);
  };
  live::Monitor monitor(cell, 5ms, events);

  const live::Answer answer = monitor.Write({{"R[2]", 7}}).get().front();
  if (!answer) std::cout << answer.reason.ToText() << '\n';
  WaitUntil([&] { return monitor.Read("R[2]").value == live::Value(7); });
  {
    const auto lock = network.Lock();
    network.Find("demo")->FaultInjection().LoseConnections();
  }
  WaitUntil([&] { return monitor.State() == live::Link::Lost; });
  WaitUntil([&] { return monitor.Read("R[2]").quality == live::Quality::Good; });
  return monitor.Stop() ? 0 : 1;
}

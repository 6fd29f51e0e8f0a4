// Two small simulated controllers with some of every kind of data, for the targets api and
// simulator.
#pragma once

#include "fuzz/Input.h"
#include "simulator/Network.h"

namespace orif::fuzz {

// Making them takes long, so they are made again only now and then. They may hold data of an
// earlier input.
inline const sim::Network& Robots(Input& in) {
  static sim::Network network;
  static std::size_t inputs = 0;
  if (inputs++ % 1000 == 0) {
    network = {};
    for (const char* host : {"robot", "idle"}) {
      auto& robot = network.AddController(host, {300, 20, 20, 2, 2});
      robot.SetVariable("$INT", 1);
      robot.SetVariable("$REAL", 2.5F);
      robot.SetVariable("$TEXT", std::string("text"));
      robot.SetVariable("$POS", sim::Position());
    }
  }
  auto& robot = *network.Find("robot");
  robot.FaultInjection().Stop();
  robot.NumericRegister(1) = in.Value<float>();
  robot.StringRegister(1) = in.Text();
  robot.TaskList() = {{.program = in.Text()}, {.program = "SEARCH", .macro = true}};
  robot.Alarms(sim::AlarmList::Active) = {{.id = 12, .message = in.Text()}};
  return network;
}

}  // namespace orif::fuzz

#include "tools/orif/SimulatedCell.h"

#include "simulator/Demo.h"
#include "simulator/scenario/Scenario.h"
#include "tools/orif/recording/Playback.h"

namespace orif::tool {
namespace {

bool IsRecording(const std::string& name) {
  return name.ends_with(".csv") || name.ends_with(".db");
}

}  // namespace

bool IsCellFile(const std::string& name) { return name.ends_with(".json") || IsRecording(name); }

SimulatedCell LoadSimulatedCell(const std::string& file) {
  if (file == DemoCell) return {sim::DemoNetwork(), {sim::DemoHost}, "The demonstration cell\n"};
  if (IsRecording(file)) {
    const Playback playback = LoadPlayback(file);
    return {playback.network, {playback.host}, playback.summary};
  }
  const sim::Scenario scenario = sim::LoadScenario(file);
  return {scenario.network, scenario.hosts, sim::Describe(scenario)};
}

}  // namespace orif::tool

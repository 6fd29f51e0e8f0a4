#include "tools/orif/SimulatedCell.h"

#include <map>
#include <string_view>

#include "simulator/Demo.h"
#include "simulator/scenario/Scenario.h"
#include "tools/orif/recording/Playback.h"

namespace orif::tool {
namespace {

bool IsRecording(const std::string& name) {
  return name.ends_with(".csv") || name.ends_with(".db");
}

}  // namespace

SimulatedSignal SignalOf(const live::Name& name) {
  using enum sim::SignalKind;
  constexpr std::int32_t SecondBlock = 11000;
  static const std::map<std::string_view, sim::SignalKind> kinds{
      {"DI", SDI}, {"DO", SDO}, {"RI", RDI}, {"RO", RDO}, {"UI", UI},
      {"UO", UO},  {"SI", SI},  {"SO", SO},  {"GI", GI},  {"GO", GO}};
  const sim::SignalKind kind = kinds.at(name.symbol->name);
  if (kind == SDO && name.first > SecondBlock) return {SDOEx, name.first - SecondBlock};
  return {kind, name.first};
}

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

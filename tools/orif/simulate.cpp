// "orif simulate": checks a scenario file and tells what is in it.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "simulator/scenario/Scenario.h"
#include "tools/orif/Commands.h"

namespace orif::tool {

void AddSimulateCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("simulate", "Check a scenario file and tell what is in it");
  const auto file = std::make_shared<std::string>();
  command->add_option("scenario", *file, "The scenario file")->required()->option_text("FILE");
  command->footer("Example:\n  orif simulate cell.json");
  command->callback([file] { std::cout << sim::Describe(sim::LoadScenario(*file)); });
}

}  // namespace orif::tool

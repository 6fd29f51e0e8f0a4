// "orif check": prints what is in a file that describes a cell, or how a communication component
// answers.
#include <iostream>

#include "tools/orif/ComponentCheck.h"
#include "tools/orif/Error.h"
#include "tools/orif/SimulatedCell.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {

void Check(const CheckOptions& options) {
  if (!options.file.empty()) {
    std::cout << PrintableLines(LoadSimulatedCell(options.file).description);
  } else if (!options.connection.host.empty()) {
    CheckComponent(options.connection);
  } else {
    throw Error(Exit::Usage,
                "name a file to check, or a controller with --host NAME to check the component");
  }
}

}  // namespace orif::tool

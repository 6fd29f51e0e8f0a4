// "orif simulate": serves a cell to other processes.
#include <iostream>

#include "simulator/served/Server.h"
#include "tools/orif/Error.h"
#include "tools/orif/SimulatedCell.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

void Serve(const SimulatedCell& cell, const sim::Address& at) {
  platform::CatchInterrupt();
  sim::Server server(cell.network, cell.hosts.front(), at);
  if (!at.ip.starts_with("127.") && at.ip != "::1") {
    Tell("orif: whoever reaches " + ToText(server.Where()) + " can write to the cell");
  }
  std::string names;
  for (const std::string& host : cell.hosts) {
    names += (names.empty() ? "" : ", ") + host + " as sim://" + ToText(server.Where());
    if (host != cell.hosts.front()) names += '/' + host;
  }
  std::cout << "Serving " << Printable(names) << " (Ctrl-C ends)" << std::endl;
  server.Run(platform::Interrupted);
}

}  // namespace

void Simulate(const SimulateOptions& options) {
  if (!options.serve) {
    throw Error(Exit::Usage,
                "simulate only serves: say --serve, or check a file with orif check FILE");
  }
  Serve(LoadSimulatedCell(options.file.empty() ? DemoCell : options.file),
        sim::ParseAddress(*options.serve));
}

}  // namespace orif::tool

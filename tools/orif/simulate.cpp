// "orif simulate": prints what is in a file that describes a cell, or serves the cell to other
// processes.
#include <iostream>

#include "simulator/served/Server.h"
#include "tools/orif/Commands.h"
#include "tools/orif/Error.h"
#include "tools/orif/SimulatedCell.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

void Serve(const SimulatedCell& cell, const sim::Address& at) {
  platform::CatchInterrupt();
  sim::Server server(cell.network, cell.hosts.front(), at);
  if (!at.ip.starts_with("127.") && at.ip != "::1") {
    std::cerr << "orif: whoever reaches " << ToText(server.Where()) << " can write to the cell\n";
  }
  std::string names;
  for (const std::string& host : cell.hosts) {
    names += (names.empty() ? "" : ", ") + host + " as sim://" + ToText(server.Where());
    if (host != cell.hosts.front()) names += '/' + host;
  }
  std::cout << "Serving " << names << " (Ctrl-C ends)" << std::endl;
  server.Run(platform::Interrupted);
}

}  // namespace

void Simulate(const SimulateOptions& options) {
  if (options.file.empty() && !options.serve) {
    throw Error(Exit::Usage, "name a file to check, or serve the demonstration cell with --serve");
  }
  const SimulatedCell cell = LoadSimulatedCell(options.file.empty() ? DemoCell : options.file);
  if (options.serve)
    Serve(cell, sim::ParseAddress(*options.serve));
  else
    std::cout << cell.description;
}

}  // namespace orif::tool

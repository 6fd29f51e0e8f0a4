// The command-line tool: reads, writes, watches and records the data of a robot controller.
#include <exception>
#include <iostream>
#include <string>

#include "tools/orif/CommandLine.h"
#include "tools/orif/Error.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/terminal/Tell.h"

namespace {

using orif::tool::Exit;

int Fail(Exit code, const std::string& message) {
  orif::tool::Tell("orif: " + message);
  return static_cast<int>(code);
}

}  // namespace

int main(int argc, char** argv) {
  orif::tool::platform::PrepareStreams();
  try {
    orif::tool::RunCommandLine(argc, argv);
  } catch (const orif::tool::Error& error) {
    return Fail(error.code, error.what());
  } catch (const std::exception& error) {
    return Fail(Exit::Usage, error.what());
  }
  if (!std::cout.flush()) return Fail(Exit::Usage, "the output cannot be written");
  return static_cast<int>(Exit::Done);
}

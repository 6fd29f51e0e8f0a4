// The command line: every command with its options, its help and its example. Whatever needs the
// parser stands in CommandLine.cpp, since it takes long to compile.
#pragma once

#include "tools/orif/Error.h"

namespace orif::tool {

/// Runs the command that the arguments name, or prints the help or the version that they ask for.
/// Throws an Error for a command line that is wrong, and for what the command cannot do.
void RunCommandLine(int argc, char** argv);

}  // namespace orif::tool

// The command line: every command with its options, help and example. Only CommandLine.cpp and
// help/ use the parser, which takes long to compile.
#pragma once

#include "tools/orif/Error.h"

namespace orif::tool {

/// Runs the command that the arguments name, or prints help or version. Throws an Error if the
/// command line is wrong or the command fails.
void RunCommandLine(int argc, char** argv);

}  // namespace orif::tool

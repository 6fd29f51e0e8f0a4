// What help, manual and completion say about an option, from its one description in
// CommandLine.cpp.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace orif::tool {

/// What stands for its value: "FILE", "[FILE]" if it may be left out; empty for a flag.
std::string Placeholder(const CLI::Option& option);

/// The words that it takes, if it takes no others.
std::vector<std::string> Choices(const CLI::Option& option);

/// A positional in a usage line: "FILE", "ITEM...", "[COLUMN...]".
std::string Usage(const CLI::Option& option);

/// Its names: "-h, --help", "--every".
std::string OptionNames(const CLI::Option& option);

/// What it is, with its default value, or that it is needed.
std::string About(const CLI::Option& option);

/// The positionals of a command, or its other options of one group, in the order of the help.
std::vector<const CLI::Option*> Positionals(const CLI::App& command);
std::vector<const CLI::Option*> OptionsIn(const CLI::App& command, const std::string& group);

/// The groups of options.
inline constexpr const char* OwnOptions = "Options";
inline constexpr const char* ConnectionOptions = "Connection";

}  // namespace orif::tool

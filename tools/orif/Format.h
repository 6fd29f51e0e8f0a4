// The option --format of the commands that print tables.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orif::tool {

/// Adds the option; `format` becomes "table", "csv" or "json".
void AddFormatOption(CLI::App& command, std::string& format);

}  // namespace orif::tool

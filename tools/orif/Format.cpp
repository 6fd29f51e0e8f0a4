#include "tools/orif/Format.h"

#include <CLI/CLI.hpp>

namespace orif::tool {

void AddFormatOption(CLI::App& command, std::string& format) {
  format = "table";
  command.add_option("--format", format, "table, csv or json")
      ->option_text("FORMAT")
      ->check(CLI::IsMember({"table", "csv", "json"}));
}

}  // namespace orif::tool

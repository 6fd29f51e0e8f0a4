// How the parser lays out help texts.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace orif::tool {

/// Two columns, no line wider than HelpWidth characters.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_option(const CLI::Option* option, bool isPositional) const override;
  std::string make_option_usage(const CLI::Option* option) const override;
  std::string make_subcommand(const CLI::App* command) const override;
  std::string make_help(const CLI::App* command, std::string name,
                        CLI::AppFormatMode mode) const override;
  std::string make_description(const CLI::App* command) const override;
  std::string make_footer(const CLI::App* command) const override;
};

inline constexpr std::size_t HelpWidth = 100;

}  // namespace orif::tool

#include "tools/orif/help/Help.h"

#include <sstream>
#include <utility>

#include "tools/orif/help/Options.h"

namespace orif::tool {
namespace {

constexpr std::size_t NameWidth = 24;

// Breaks each line of the text between words. Lines that begin with a blank stay as they are. All
// lines but the first are indented.
std::string Wrapped(const std::string& text, std::size_t indent) {
  std::string wrapped;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (!wrapped.empty()) wrapped += '\n';
    if (line.starts_with(' ')) {
      wrapped += line;
      continue;
    }
    std::size_t width = indent;
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      const bool first = width == indent;
      if (!first && width + 1 + word.size() > HelpWidth) {
        wrapped += '\n' + std::string(indent, ' ');
        width = indent;
      } else if (!first) {
        wrapped += ' ';
        ++width;
      }
      wrapped += word;
      width += word.size();
    }
  }
  return wrapped;
}

std::string TwoColumns(const std::string& name, const std::string& about) {
  std::string line = "  " + name;
  if (line.size() + 2 > NameWidth) {
    line += '\n' + std::string(NameWidth, ' ');
  } else {
    line.resize(NameWidth, ' ');
  }
  return line + Wrapped(about, NameWidth) + '\n';
}

}  // namespace

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
  const std::string value = Placeholder(*option);
  return TwoColumns(
      isPositional ? Usage(*option) : OptionNames(*option) + (value.empty() ? "" : " " + value),
      About(*option));
}

std::string HelpFormatter::make_option_usage(const CLI::Option* option) const {
  return Usage(*option);
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
  return TwoColumns(command->get_name(), command->get_description());
}

// The parser's own leaves two empty lines between some of the groups.
std::string HelpFormatter::make_help(const CLI::App* command, std::string name,
                                     CLI::AppFormatMode mode) const {
  return CLI::detail::find_and_replace(Formatter::make_help(command, std::move(name), mode),
                                       "\n\n\n", "\n\n");
}

// The parser's own says how many commands it wants.
std::string HelpFormatter::make_description(const CLI::App* command) const {
  return Wrapped(command->get_description(), 0) + ".\n";
}

std::string HelpFormatter::make_footer(const CLI::App* command) const {
  return Wrapped(command->get_footer(), 0) + '\n';
}

}  // namespace orif::tool

#include "tools/orif/help/Template.h"

#include <algorithm>
#include <functional>
#include <istream>
#include <map>
#include <ostream>
#include <regex>
#include <sstream>

#include "orif/version.h"
#include "tools/orif/Error.h"
#include "tools/orif/help/Options.h"

namespace orif::tool {
namespace {

using CommandList = std::vector<const CLI::App*>;

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  return CLI::detail::find_and_replace(std::move(text), what, by);
}

std::vector<const CLI::Option*> AllOptions(const CLI::App& command) {
  auto options = OptionsIn(command, OwnOptions);
  std::ranges::copy(OptionsIn(command, ConnectionOptions), std::back_inserter(options));
  return options;
}

std::string Roff(const std::string& text) {
  const std::string escaped = Replaced(Replaced(text, "\\", "\\e"), "-", "\\-");
  return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string ManSynopsis(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    text += text.empty() ? "" : ".br\n";
    text += ".B orif " + Roff(command->get_name()) + '\n';
    std::string rest;
    for (const CLI::Option* option : Positionals(*command)) {
      rest += "\\fI" + Roff(Usage(*option)) + "\\fR ";
    }
    text += rest + "[\\fIOPTION\\fR]...\n";
  }
  return text;
}

std::string ManOptions(const std::vector<const CLI::Option*>& options) {
  std::string text;
  for (const CLI::Option* option : options) {
    text += ".TP\n\\fB" + Roff(OptionNames(*option)) + "\\fR";
    if (!Placeholder(*option).empty()) text += " \\fI" + Roff(Placeholder(*option)) + "\\fR";
    text += '\n' + Roff(About(*option)) + ".\n";
  }
  return text;
}

// Paragraphs, and between them lines that begin with a blank, which stay lines.
std::string ManText(const std::string& text) {
  std::string roff;
  bool example = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    const bool indented = line.starts_with(' ');
    if (indented && !example) roff += ".nf\n";
    if (!indented) roff += example ? ".fi\n.PP\n" : ".PP\n";
    example = indented;
    roff += Roff(line) + '\n';
  }
  return example ? roff + ".fi\n" : roff;
}

std::string ManCommands(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    text += ".SS orif " + Roff(command->get_name()) + '\n';
    text += Roff(command->get_description()) + ".\n";
    std::vector<const CLI::Option*> own = OptionsIn(*command, OwnOptions);
    std::erase(own, command->get_help_ptr());
    text += ManOptions(own) + ManText(command->get_footer());
  }
  return text;
}

std::string ManConnection(const CommandList& commands) {
  return ManOptions(OptionsIn(*commands.front(), ConnectionOptions));
}

/// What can be completed in place of a value.
enum class Completion { Nothing, Words, Files, Cells, Items, Columns, CommandNames };

Completion CompletionOf(const CLI::Option& option) {
  if (!Choices(option).empty()) return Completion::Words;
  static const std::map<std::string, Completion> completions{
      {"FILE", Completion::Files},          {"PATH", Completion::Files},
      {"[FILE]", Completion::Cells},        {"ITEM", Completion::Items},
      {"ITEM=VALUE", Completion::Items},    {"COLUMN", Completion::Columns},
      {"COMMAND", Completion::CommandNames}};
  const auto found = completions.find(Placeholder(option));
  return found == completions.end() ? Completion::Nothing : found->second;
}

std::string Spaced(const std::vector<std::string>& words) { return CLI::detail::join(words, " "); }

std::string BashCompletion(const CLI::Option& option) {
  static const std::map<Completion, std::string> actions{
      {Completion::Nothing, ":nothing"}, {Completion::Files, ":files"},
      {Completion::Cells, ":cells"},     {Completion::Items, ":items"},
      {Completion::Columns, ":columns"}, {Completion::CommandNames, ":commands"}};
  const auto action = actions.find(CompletionOf(option));
  return action == actions.end() ? Spaced(Choices(option)) : action->second;
}

std::string BashOptions(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    std::vector<std::string> names;
    for (const CLI::Option* option : AllOptions(*command)) {
      names.push_back("--" + option->get_lnames().front());
    }
    text += "    [" + command->get_name() + "]='" + Spaced(names) + "'\n";
  }
  return text;
}

std::string BashValues(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    for (const CLI::Option* option : AllOptions(*command)) {
      if (Placeholder(*option).empty()) continue;
      text += "    ['" + command->get_name() + " --" + option->get_lnames().front() + "']='" +
              BashCompletion(*option) + "'\n";
    }
  }
  return text;
}

std::string BashPositionals(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    std::vector<std::string> actions;
    for (const CLI::Option* option : Positionals(*command)) {
      actions.push_back(BashCompletion(*option));
    }
    text.append("    [").append(command->get_name()).append("]='");
    text.append(Spaced(actions)).append("'\n");
  }
  return text;
}

std::string ZshQuoted(std::string text) {
  for (const std::string special : {"\\", "[", "]", ":"}) {
    text = Replaced(std::move(text), special, std::string("\\").append(special));
  }
  return Replaced(std::move(text), "'", "'\\''");
}

std::string ZshAction(const CLI::Option& option) {
  static const std::map<Completion, std::string> actions{
      {Completion::Nothing, ""},
      {Completion::Files, "_files"},
      {Completion::Cells, "_orif_cells"},
      {Completion::Items, "_orif_items"},
      {Completion::Columns, "_orif_columns"},
      {Completion::CommandNames, "_orif_commands"}};
  const auto action = actions.find(CompletionOf(option));
  return action == actions.end() ? "(" + Spaced(Choices(option)) + ")" : action->second;
}

std::string ZshCommands(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    text += "    '" + command->get_name() + ":" + ZshQuoted(command->get_description()) + "'\n";
  }
  return text;
}

std::string ZshOptions(const CommandList& commands) {
  std::string text;
  for (const CLI::App* command : commands) {
    text += "    " + command->get_name() + ")\n      _arguments";
    for (const CLI::Option* option : AllOptions(*command)) {
      const std::string value = Placeholder(*option);
      text +=
          " \\\n        '--" + option->get_lnames().front() + "[" + ZshQuoted(About(*option)) + "]";
      if (!value.empty()) {
        text += (value.starts_with('[') ? "::" : ":") + ZshQuoted(value) + ":" + ZshAction(*option);
      }
      text += "'";
    }
    for (const CLI::Option* option : Positionals(*command)) {
      const std::string usage = Usage(*option);
      const bool several = usage.find("...") != std::string::npos;
      text += std::string(" \\\n        '") +
              (several                  ? "*:"
               : usage.starts_with('[') ? "::"
                                        : ":") +
              ZshQuoted(Placeholder(*option)) + ":" + ZshAction(*option) + "'";
    }
    text += " ;;\n";
  }
  return text;
}

}  // namespace

void FillTemplate(const CLI::App& app, std::istream& in, std::ostream& out) {
  static const std::map<std::string, std::function<std::string(const CommandList&)>> parts{
      {"man-synopsis", ManSynopsis},     {"man-commands", ManCommands},
      {"man-connection", ManConnection}, {"bash-options", BashOptions},
      {"bash-values", BashValues},       {"bash-positionals", BashPositionals},
      {"zsh-commands", ZshCommands},     {"zsh-options", ZshOptions}};
  const CommandList commands = app.get_subcommands({});
  const std::regex marker("@([a-z-]+)@");
  for (std::string line; std::getline(in, line);) {
    std::smatch found;
    if (!std::regex_search(line, found, marker)) {
      out << line << '\n';
    } else if (found[1] == "version") {
      out << found.prefix() << Version() << found.suffix() << '\n';
    } else if (const auto part = parts.find(found[1]); part != parts.end()) {
      out << part->second(commands);
    } else {
      throw Error(Exit::Usage, "a template has no part " + found[0].str());
    }
  }
}

}  // namespace orif::tool

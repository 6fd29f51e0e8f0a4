#include "tools/orif/help/Options.h"

namespace orif::tool {

std::string Placeholder(const CLI::Option& option) { return option.get_option_text(); }

std::vector<std::string> Choices(const CLI::Option& option) {
  // The parser describes a set of words as "{table,csv,json}".
  const std::string type = option.get_type_name();
  const std::size_t begin = type.find('{');
  const std::size_t end = type.find('}');
  if (begin == std::string::npos || end == std::string::npos) return {};
  return CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

std::string Usage(const CLI::Option& option) {
  const bool several = option.get_expected_max() >= CLI::detail::expected_max_vector_size;
  const std::string text = Placeholder(option) + (several ? "..." : "");
  return option.get_required() || text.starts_with('[') ? text : "[" + text + "]";
}

std::string OptionNames(const CLI::Option& option) {
  std::string names;
  for (const std::string& name : option.get_snames()) names += "-" + name + ", ";
  return names + "--" + option.get_lnames().front();
}

std::string About(const CLI::Option& option) {
  const std::string& byItself = option.get_default_str();
  if (option.get_required() && option.nonpositional())
    return option.get_description() + " (needed)";
  return option.get_description() + (byItself.empty() ? "" : " (by itself " + byItself + ")");
}

std::vector<const CLI::Option*> Positionals(const CLI::App& command) {
  return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::Option*> OptionsIn(const CLI::App& command, const std::string& group) {
  return command.get_options([&](const CLI::Option* option) {
    return option->nonpositional() && option->get_group() == group;
  });
}

}  // namespace orif::tool

// The manual and the completions: files in which a part is written by hand, and the rest made from
// the descriptions of commands and options.
#pragma once

#include <CLI/CLI.hpp>
#include <iosfwd>

namespace orif::tool {

/// Copies a template. A line that contains "@bash-options@" or another known word between two @ is
/// replaced as a whole, "@version@" alone. Throws an Error for an unknown word.
void FillTemplate(const CLI::App& app, std::istream& in, std::ostream& out);

}  // namespace orif::tool

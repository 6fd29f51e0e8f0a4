// How the values of a controller are laid out on a screen: a line for a number, a text or a task,
// several lines for a position, runs of bits in tens. read prints it once, watch keeps painting it
// in place.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/orif/Column.h"

namespace orif::tool {

/// A piece of a line, and the column whose value it shows, if it shows one.
struct Segment {
  std::string text;
  std::optional<std::size_t> column;
};

using Line = std::vector<Segment>;

std::vector<Line> Layout(const live::Controller& controller);

/// The line as text, without trailing blanks.
std::string PlainText(const Line& line);

}  // namespace orif::tool

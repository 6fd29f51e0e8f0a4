// A curve, which is a line of a picture: the values of a column between two times, as many of them
// as can be seen.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/orif/recording/Recording.h"

namespace orif::tool {

/// What of a recording is drawn: the rows from `first` up to `end`, in a picture whose time axis
/// goes from `from` to `to` (s) and is `pixels` wide.
struct Window {
  double from;
  double to;
  std::size_t first;
  std::size_t end;
  std::size_t pixels;
};

struct Point {
  double seconds;
  double value;  // not-a-number where the line breaks
};

struct Curve {
  std::string name;
  std::string unit;
  bool isSignal = false;
  bool isBit = false;
  bool isSteps = false;  // keeps each value until the next: integers and signals
  double least = 0;
  double most = 0;
  std::vector<Point> points;
};

/// Of the values that share a pixel of the time axis, the line has the first, the least, the most
/// and the last. A series without values in the window gives a line without points.
Curve CurveOf(const Recording& recording, const Series& series, const Window& window);

}  // namespace orif::tool

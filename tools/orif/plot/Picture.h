// The picture of a recording: a script for gnuplot. The names in it come from a file, so they reach
// gnuplot as text only, never as commands.
#pragma once

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "tools/orif/recording/Recording.h"

namespace orif::tool {

struct PictureFormat {
  std::string_view ending;    // of the file's name
  std::string_view terminal;  // gnuplot's name for it
  std::string_view last;      // what a whole picture ends with
};

/// The format that the file's name asks for. Throws an Error if it ends in neither .svg nor .png.
const PictureFormat& FormatOf(const std::filesystem::path& picture);

/// In pixels.
struct PictureSize {
  int width = 960;
  int height = 0;
};

/// What the user wants of the picture.
struct PictureWishes {
  std::optional<PictureSize> size;  ///< by default as large as its lines need it
  double from = 0;                  ///< s
  double to = std::numeric_limits<double>::infinity();
  std::string title;
};

/// The limits of a picture's size.
inline constexpr int LeastPixels = 200;
inline constexpr int MostPixels = 10'000;

/// Throws an Error if something that was named cannot be drawn: text, a column without values, more
/// than there is room for. Of an item named as a whole, the parts that are text or without values
/// are left out, and additional axes that are always 0.
std::string GnuplotScript(const Recording& recording, const PictureWishes& wishes,
                          const PictureFormat& format, const std::filesystem::path& output);

}  // namespace orif::tool

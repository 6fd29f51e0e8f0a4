// The picture of a recording: a script for gnuplot. The names in it come from a file, so they reach
// gnuplot as text only, never as commands.
#pragma once

#include <filesystem>
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

/// Throws an Error if the columns cannot be drawn together: more than two units, text, or no values
/// at all. Columns without values are left out if others have some.
std::string GnuplotScript(const Recording& recording, const PictureFormat& format,
                          const std::filesystem::path& output);

}  // namespace orif::tool

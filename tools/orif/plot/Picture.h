// The picture of a recording: a script for gnuplot, made from columns that were read back. The
// names in it come from a file and reach gnuplot as text only, never as commands.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "tools/orif/recording/Recording.h"

namespace orif::tool {

struct PictureFormat {
  std::string_view ending;    // of the file's name
  std::string_view terminal;  // gnuplot's name for it
  std::string_view last;      // what stands at the end of a whole picture
};

/// The format that the file's name means. Throws an Error for an ending that is neither .svg nor
/// .png.
const PictureFormat& FormatOf(const std::filesystem::path& picture);

/// Throws an Error for columns that cannot be drawn together: more than two units, text, or no
/// values at all. Columns without values are left out where others have some.
std::string GnuplotScript(const Recording& recording, const PictureFormat& format,
                          const std::filesystem::path& output);

}  // namespace orif::tool

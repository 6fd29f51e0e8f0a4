// "orif plot": draws a picture of a recording.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "tools/orif/Draft.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/plot/Picture.h"
#include "tools/orif/recording/Recording.h"

namespace orif::tool {
namespace {

// gnuplot does not say when the disk is full: a picture is whole if its end is there.
bool IsWhole(const std::filesystem::path& picture, std::string_view last) {
  std::ifstream file(picture, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  return text.rfind(last) != std::string::npos;
}

}  // namespace

void Plot(const PlotOptions& options) {
  if (options.columns) {
    for (const std::string& name : RecordedColumns(options.recording))
      std::cout << Printable(name) << '\n';
    return;
  }
  if (options.names.empty() || options.picture.empty())
    throw Error(Exit::Usage,
                "name what to draw and the picture: orif plot run.csv 'R[1]' --out run.svg "
                "(--columns lists what was recorded)");
  const PictureFormat& format = FormatOf(options.picture);
  if (!options.force) RefuseIfThere(options.picture);
  const Recording recording = ReadRecording(options.recording, options.names);
  const Draft draft(options.picture);
  const std::optional<int> code =
      platform::RunProgram({"gnuplot", "--default-settings"},
                           GnuplotScript(recording, options.wishes, format, draft.Path()));
  if (!code)
    throw Error(Exit::Usage, "gnuplot draws the pictures and is not here; install gnuplot-nox");
  if (*code != 0 || !IsWhole(draft.Path(), format.last))
    throw Error(Exit::Usage, "gnuplot could not draw " + options.picture.string());
  draft.Keep();
}

}  // namespace orif::tool

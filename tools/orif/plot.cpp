// "orif plot": draws a picture of a recording.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "tools/orif/Commands.h"
#include "tools/orif/Error.h"
#include "tools/orif/NameBeside.h"
#include "tools/orif/platform/platform.h"
#include "tools/orif/plot/Picture.h"
#include "tools/orif/recording/Recording.h"

namespace orif::tool {
namespace {

/// The picture while it is drawn, in a file next to its own. Removed at the end unless Kept.
class Draft {
 public:
  explicit Draft(const std::filesystem::path& picture)
      : picture_(picture), path_(NameBeside(picture)) {
    try {
      const platform::AppendedFile made(path_.string(), platform::AppendedFile::Begin::New);
    } catch (const std::system_error& error) {
      throw Error(Exit::Usage, "cannot write " + picture.string() + ": " + error.code().message());
    }
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }

  /// gnuplot does not say when the disk is full: a picture is whole if its end is there.
  bool IsWhole(std::string_view last) const {
    std::ifstream file(path_, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return text.rfind(last) != std::string::npos;
  }

  void Keep() const { std::filesystem::rename(path_, picture_); }

 private:
  std::filesystem::path picture_;
  std::filesystem::path path_;
};

}  // namespace

void Plot(const PlotOptions& options) {
  const PictureFormat& format = FormatOf(options.picture);
  const Recording recording = ReadRecording(options.recording, options.names);
  const Draft draft(options.picture);
  const std::optional<int> code =
      platform::RunProgram({"gnuplot"}, GnuplotScript(recording, format, draft.Path()));
  if (!code)
    throw Error(Exit::Usage, "gnuplot draws the pictures and is not here; install gnuplot-nox");
  if (*code != 0 || !draft.IsWhole(format.last))
    throw Error(Exit::Usage, "gnuplot could not draw " + options.picture.string());
  draft.Keep();
}

}  // namespace orif::tool

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

#include "tools/orif/Commands.h"
#include "tools/orif/Error.h"
#include "tools/orif/NameBeside.h"
#include "tools/orif/Text.h"
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
      Fail(error);
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

  void Keep() const {
    try {
      platform::PutInPlaceOf(picture_.string(), path_.string(), nullptr);
    } catch (const std::system_error& error) {
      Fail(error);
    }
  }

 private:
  [[noreturn]] void Fail(const std::system_error& error) const {
    throw Error(Exit::Usage, "cannot write " + picture_.string() + ": " + error.code().message());
  }

  std::filesystem::path picture_;
  std::filesystem::path path_;
};

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
  if (!options.force && exists(symlink_status(options.picture)))
    throw Error(Exit::Usage, options.picture.string() +
                                 " exists; name another file, or replace it with --force");
  const Recording recording = ReadRecording(options.recording, options.names);
  const Draft draft(options.picture);
  const std::optional<int> code =
      platform::RunProgram({"gnuplot", "--default-settings"},
                           GnuplotScript(recording, options.wishes, format, draft.Path()));
  if (!code)
    throw Error(Exit::Usage, "gnuplot draws the pictures and is not here; install gnuplot-nox");
  if (*code != 0 || !draft.IsWhole(format.last))
    throw Error(Exit::Usage, "gnuplot could not draw " + options.picture.string());
  draft.Keep();
}

}  // namespace orif::tool

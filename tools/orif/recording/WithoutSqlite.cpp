#include "tools/orif/Error.h"
#include "tools/orif/recording/DatabaseRecording.h"

namespace orif::tool {
namespace {

[[noreturn]] void Refuse(const std::filesystem::path& path) {
  throw Error(Exit::Usage, path.string() +
                               ": this build writes and reads CSV files only; name a file that "
                               "ends in .csv");
}

}  // namespace

void RequireDatabases(const std::filesystem::path& path) { Refuse(path); }

std::unique_ptr<RecordingFile> OpenDatabaseFile(const std::filesystem::path& path,
                                                const std::vector<Column>& /*columns*/,
                                                const RunInfo& /*run*/) {
  Refuse(path);
}

void DropDatabaseLog(const std::filesystem::path& path) { Refuse(path); }

std::unique_ptr<RowSource> OpenDatabase(const std::filesystem::path& path) { Refuse(path); }

}  // namespace orif::tool

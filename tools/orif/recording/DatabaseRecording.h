// Recordings in an SQLite database. DatabaseRecording.cpp implements them where there is SQLite,
// WithoutSqlite.cpp refuses them elsewhere; the build chooses one.
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/recording/RowSource.h"

namespace orif::tool {

/// Throws an Error about `path` in a build without databases.
void RequireDatabases(const std::filesystem::path& path);

/// Makes a database of the empty file `path`. Throws a std::runtime_error with SQLite's reason.
std::unique_ptr<RecordingFile> CreateDatabase(const std::filesystem::path& path,
                                              const std::vector<Column>& columns,
                                              const RunInfo& run);

/// Throws as CreateDatabase.
std::unique_ptr<RowSource> OpenDatabase(const std::filesystem::path& path);

}  // namespace orif::tool

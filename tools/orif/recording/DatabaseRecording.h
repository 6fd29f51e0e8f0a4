// Recordings in an SQLite database. DatabaseRecording.cpp implements them; in a build without
// SQLite WithoutSqlite.cpp refuses them instead.
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/recording/RowSource.h"

namespace orif::tool {

/// Throws an Error about `path` in a build without SQLite.
void RequireDatabases(const std::filesystem::path& path);

/// Makes a database of the empty file `path`. Throws a std::runtime_error with SQLite's reason.
std::unique_ptr<RecordingFile> CreateDatabase(const std::filesystem::path& path,
                                              const std::vector<Column>& columns,
                                              const RunInfo& run);

/// Opens a database for reading. Throws like CreateDatabase.
std::unique_ptr<RowSource> OpenDatabase(const std::filesystem::path& path);

}  // namespace orif::tool

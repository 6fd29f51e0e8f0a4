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

/// Makes a database of an empty file, or goes on with one that has the same columns. The caller
/// keeps other recorders away. Throws a std::runtime_error with SQLite's reason.
std::unique_ptr<RecordingFile> OpenDatabaseFile(const std::filesystem::path& path,
                                                const std::vector<Column>& columns,
                                                const RunInfo& run);

/// Makes sure that a database which will be replaced has no log that would be taken for the new
/// one's. Throws a std::runtime_error if another program has it open.
void DropDatabaseLog(const std::filesystem::path& path);

/// Opens a database for reading. Throws like OpenDatabaseFile.
std::unique_ptr<RowSource> OpenDatabase(const std::filesystem::path& path);

}  // namespace orif::tool

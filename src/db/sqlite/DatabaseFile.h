#pragma once

#include "db/schema/FileFormat.h"

#include <filesystem>
#include <span>
#include <string>

namespace discaro::db {

// What DBEngine::CreateDatabase promises.
void createDatabaseFile(const std::filesystem::path& path, const FileFormat& format,
                        std::span<const std::string> statements);

// Whether the file begins as a database of the engine does and carries the application id of the format. False too
// where there is no such file. (The SQLite file format: 16 characters of magic, the id in bytes 68 to 71, big endian.)
bool isDatabaseOf(const std::filesystem::path& path, const FileFormat& format);

} // namespace discaro::db

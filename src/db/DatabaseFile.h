#pragma once

#include "db/FileFormat.h"

#include <filesystem>
#include <span>
#include <string>

namespace discaro::db {

// What DBEngine::CreateDatabase promises.
void createDatabaseFile(const std::filesystem::path& path, const FileFormat& format,
                        std::span<const std::string> statements);

// Gives a finished file its final name and brings both folder entry and content to the disk. Never overwrites:
// NotAllowed when the name is taken; the file then keeps its old name.
void publishFile(const std::filesystem::path& finished, const std::filesystem::path& name);

} // namespace discaro::db

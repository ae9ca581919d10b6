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
// NotAllowed when the name is taken; the file then keeps its old name. A rollback journal of that name is left of a
// database that has gone: the engine would play it into this one, so it is set aside first, as "<name>-journal.1" or
// the next number that is free, and can be put back beside its own database.
void publishFile(const std::filesystem::path& finished, const std::filesystem::path& name);

// Gives the rollback journal of that database, if there is one, such a name.
void setJournalAside(const std::filesystem::path& database);

// Whether the file begins as a database of the engine does and carries the application id of the format. False too
// where there is no such file. (The SQLite file format: 16 characters of magic, the id in bytes 68 to 71, big endian.)
bool isDatabaseOf(const std::filesystem::path& path, const FileFormat& format);

} // namespace discaro::db

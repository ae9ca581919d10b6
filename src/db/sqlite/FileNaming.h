#pragma once

#include "base/Descriptor.h"

#include <filesystem>

namespace discaro::db {

// Gives a finished file its final name and brings both folder entry and content to the disk. Never overwrites:
// NotAllowed when the name is taken; the file then keeps its old name. A rollback journal of that name is left of a
// database that has gone: the engine would play it into this one, so it is set aside first, as "<name>-journal.1" or
// the next number that is free, and can be put back beside its own database.
void publishFile(const std::filesystem::path& finished, const std::filesystem::path& name);

// Gives the rollback journal of that database, if there is one, such a name.
void setJournalAside(const std::filesystem::path& database);

// Whether something has that name, a link that leads nowhere too.
bool isTaken(const std::filesystem::path& name);

// Opens a file, or makes it when the flags say so. Throws as refuseFile does.
base::Descriptor openFile(const std::filesystem::path& path, int flags);

// Throws the engine's error for one of the operating system (errno) at a path.
[[noreturn]] void refuseFile(int error, const std::filesystem::path& path);

} // namespace discaro::db

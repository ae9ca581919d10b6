#pragma once

#include "db/schema/FileFormat.h"

#include <filesystem>

namespace discaro::catalogue {

// Makes an empty catalogue: no discs, one row in the master table with zero counts, "no error", encryption false and
// empty dates. The file appears under its name only when it is complete and on the disk. Never overwrites: NotAllowed
// when something of that name exists. Throws PathMissing, DiskFull, StorageFailure, CatalogueReadOnly.
void createEmptyCatalogue(const std::filesystem::path& path);

// What a file must be to open as a catalogue. Call db::DBEngine::SetFormat(catalogueFormat()) once at start.
db::FileFormat catalogueFormat();

} // namespace discaro::catalogue

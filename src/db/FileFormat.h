#pragma once

#include "db/Schema.h"

#include <cstdint>

namespace discaro::db {

// How a database file says that it is a catalogue, and of which make.
struct FileFormat {
    int32_t applicationId = 0; // the four bytes at offset 68 of the file; 0: not looked at
    int32_t version = 0;       // the user version at offset 60; a file of a higher one is refused
    Schema schema; // the tables that must be there, with these fields at these positions
};

} // namespace discaro::db

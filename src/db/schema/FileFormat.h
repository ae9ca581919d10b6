#pragma once

#include "db/schema/Definitions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace discaro::db {

// Something besides its tables that a complete file has: an index, a trigger, a row.
struct FormatPart {
    std::string missing;   // a select that gives 1 where it is missing, else 0
    std::string statement; // makes it
};

// How a database file says that it is a catalogue, and of which make.
struct FileFormat {
    int32_t applicationId = 0; // the four bytes at offset 68 of the file; 0: not looked at
    int32_t version = 0;       // the user version at offset 60; a file of a higher one is refused
    Schema schema;             // the tables that must be there, with these fields at these positions
    // Made, in this order, when a file that lacks some of them is opened and can be written; else it opens as it is.
    std::vector<FormatPart> parts = {};
    // A table with one row. Where it has a field of a table's name, the field holds the highest number that a row of
    // that table, numbered by the database, had when it was deleted; such numbers are not given again.
    std::string numberTable = {};
};

} // namespace discaro::db

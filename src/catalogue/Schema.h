#pragma once

#include "db/schema/Definitions.h"
#include "db/schema/FileFormat.h"

#include <cstdint>
#include <string>
#include <vector>

namespace discaro::catalogue {

// "Disc" at offset 68 of the file, by which tools tell a catalogue from other databases.
inline constexpr int32_t kApplicationId = 0x44697363;
// The make of the tables, at offset 60.
inline constexpr int32_t kFormatVersion = 1;

// The five tables, their fields in the order of their positions, which queries and the results window rely on.
db::Schema catalogueSchema();

// What a catalogue has besides them: indexes, triggers, the one row of the master table, the table of numbers noted.
std::vector<db::FormatPart> catalogueParts();

// The SQL that makes an empty catalogue of an empty database, in order.
std::vector<std::string> schemaStatements();

} // namespace discaro::catalogue

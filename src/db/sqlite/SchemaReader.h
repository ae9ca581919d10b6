#pragma once

#include "db/schema/Definitions.h"
#include "db/schema/FileFormat.h"
#include "db/sqlite/Connection.h"

#include <vector>

namespace discaro::db {

struct StoredSchema {
    Schema schema;
    std::vector<int> numberFields; // for each table the field that the database fills itself, or -1
};

// The ordinary tables of a file. The declared type of a column gives the field's type: "INTEGER", "DOUBLE", "TEXT",
// "LONGTEXT", "BOOLEAN", "DATE" and what resembles them; any other is text.
StoredSchema readSchema(Connection& connection);

// The type as a column declares it.
std::string_view declaredType(FieldType type);

// Throws NotACatalogue, with what is wrong, when the file is not of the format. Takes over what the format says of the
// fields and no column declares.
void requireFormat(Connection& connection, Schema& found, const FileFormat& format);

} // namespace discaro::db

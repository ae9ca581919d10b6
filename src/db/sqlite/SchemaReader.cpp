#include "db/sqlite/SchemaReader.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "base/Text.h"

#include <algorithm>

namespace discaro::db {

namespace {

[[noreturn]] void refuse(std::string_view what) {
    throw base::RuntimeError(base::ErrorNumber::NotACatalogue, what);
}

FieldType typeFrom(std::string_view declared) {
    const std::string type = base::lowerAscii(declared);
    const auto has = [&](std::string_view part) { return type.find(part) != std::string::npos; };
    if (has("int"))
        return FieldType::Integer;
    if (has("doub") || has("real") || has("floa"))
        return FieldType::Double;
    if (has("bool"))
        return FieldType::Boolean;
    if (has("date"))
        return FieldType::Date;
    return has("long") || has("clob") || has("memo") ? FieldType::LongText : FieldType::Text;
}

struct ReadTable {
    TableDef table;
    int numberField = -1;
};

ReadTable readTable(Connection& connection, std::string_view name) {
    Statement columns(connection.session(), "SELECT name, type, pk FROM pragma_table_info(?1)");
    columns.bind(1, name);
    ReadTable read{{std::string(name), {}}, -1};
    int keyFields = 0;
    while (columns.step()) {
        const std::string_view declared = columns.text(1);
        if (columns.integer(2) > 0) {
            ++keyFields;
            if (base::equalAscii(declared, "INTEGER"))
                read.numberField = static_cast<int>(read.table.fields.size());
        }
        read.table.fields.push_back({std::string(columns.text(0)), typeFrom(declared)});
    }
    if (keyFields != 1)
        read.numberField = -1;
    return read;
}

// A column of this name would hide the row number.
bool hidesRowNumber(const TableDef& table, int numberField) {
    const int position = table.find("rowid");
    return position >= 0 && position != numberField;
}

void requireTable(const TableDef& expected, Schema& schema) {
    const auto named = [&](const TableDef& table) { return base::equalAscii(table.name, expected.name); };
    const auto found = std::ranges::find_if(schema.tables, named);
    if (found == schema.tables.end())
        refuse(base::filledIn("it has no table %1", {expected.name}));
    const auto same = [](const FieldDef& field, const FieldDef& wanted) {
        return base::equalAscii(field.name, wanted.name) && field.type == wanted.type;
    };
    if (!std::ranges::equal(found->fields, expected.fields, same))
        refuse(base::filledIn("its table %1 has other fields", {expected.name}));
    for (size_t i = 0; i < expected.fields.size(); ++i)
        found->fields[i].ascii = expected.fields[i].ascii;
}

} // namespace

StoredSchema readSchema(Connection& connection) {
    Statement tables(connection.session(), "SELECT name FROM pragma_table_list WHERE schema = 'main' AND type = 'table'"
                                           " AND wr = 0 AND substr(name, 1, 7) <> 'sqlite_' ORDER BY name");
    StoredSchema stored;
    while (tables.step()) {
        ReadTable read = readTable(connection, tables.text(0));
        if (read.table.fields.size() > kMostFields || hidesRowNumber(read.table, read.numberField))
            continue;
        stored.schema.tables.push_back(std::move(read.table));
        stored.numberFields.push_back(read.numberField);
    }
    return stored;
}

std::string_view declaredType(FieldType type) {
    switch (type) {
    case FieldType::Integer:
        return "INTEGER";
    case FieldType::Double:
        return "DOUBLE";
    case FieldType::LongText:
        return "LONGTEXT";
    case FieldType::Boolean:
        return "BOOLEAN";
    case FieldType::Date:
        return "DATE";
    case FieldType::Text:
        break;
    }
    return "TEXT";
}

void requireFormat(Connection& connection, Schema& found, const FileFormat& format) {
    if (found.tables.empty())
        refuse("it has no tables");
    if (format.applicationId != 0 && connection.number("PRAGMA application_id") != format.applicationId)
        refuse("it belongs to another program");
    if (connection.number("PRAGMA user_version") > format.version && format.applicationId != 0)
        refuse("it was made by a newer version");
    for (const TableDef& expected : format.schema.tables)
        requireTable(expected, found);
}

} // namespace discaro::db

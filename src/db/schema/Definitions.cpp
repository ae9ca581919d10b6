#include "db/schema/Definitions.h"

#include "base/Text.h"

namespace discaro::db {

bool isText(FieldType type) {
    return type == FieldType::Text || type == FieldType::LongText || type == FieldType::Date;
}

int TableDef::find(std::string_view fieldName) const {
    for (size_t at = 0; at < fields.size(); ++at)
        if (base::equalAscii(fields[at].name, fieldName))
            return static_cast<int>(at);
    return -1;
}

const TableDef* Schema::find(std::string_view tableName) const {
    for (const TableDef& table : tables)
        if (base::equalAscii(table.name, tableName))
            return &table;
    return nullptr;
}

std::string quotedName(std::string_view name) {
    std::string text = "\"";
    for (const char c : name)
        text.append(c == '"' ? 2 : 1, c);
    return text += '"';
}

} // namespace discaro::db

#include "db/schema/Table.h"

#include "base/RuntimeError.h"

#include <numeric>

namespace discaro::db {

namespace {

TableDef checked(TableDef table) {
    if (table.fields.size() > kMostFields)
        throw base::RuntimeError(base::ErrorNumber::SyntaxError, "too many fields");
    return table;
}

std::string selectText(const TableDef& table, bool stored) {
    if (!stored)
        return {};
    std::string sql = "SELECT rowid";
    for (const FieldDef& field : table.fields)
        sql.append(",").append(quotedName(field.name));
    return sql + " FROM " + quotedName(table.name);
}

} // namespace

RecordLayout::RecordLayout(TableDef shown, std::vector<int> positions)
    : definition(checked(std::move(shown)))
    , columns(std::move(positions))
    , select(selectText(definition, !columns.empty())) {}

void Table::noteInsert() {
    ++inserted;
    if (count)
        ++*count;
}

void Table::noteAll() {
    ++inserted;
    ++deleted;
    ++changed;
    numberFree = false;
    count.reset();
    ordered = {};
}

std::shared_ptr<const RecordLayout> wholeLayout(const TableDef& table) {
    std::vector<int> positions(table.fields.size());
    std::iota(positions.begin(), positions.end(), 0);
    return std::make_shared<RecordLayout>(table, std::move(positions));
}

std::shared_ptr<const RecordLayout> partLayout(const TableDef& table, std::vector<int> positions) {
    TableDef shown{table.name, {}};
    for (const int position : positions)
        shown.fields.push_back(table.fields[static_cast<size_t>(position)]);
    return std::make_shared<RecordLayout>(std::move(shown), std::move(positions));
}

} // namespace discaro::db

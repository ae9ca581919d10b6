#include "db/dialect/DialectStore.h"

#include "base/RuntimeError.h"
#include "db/sqlite/LikeFunction.h"
#include "db/sqlite/RowTaker.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <stdexcept>

namespace discaro::db::test {

namespace {

constexpr auto kInteger = FieldType::Integer;
constexpr auto kDouble = FieldType::Double;
constexpr auto kText = FieldType::Text;
constexpr auto kLongText = FieldType::LongText;

TableDef driveTable() {
    return {"Drive",
            {{"id number", kInteger},
             {"Drive letter", kText},
             {"volume name", kText},
             {"Serial Number", kText},
             {"prefered name", kText},
             {"file system", kText},
             {"Total Size", kDouble},
             {"free size", kDouble},
             {"Comments", kLongText},
             {"Autorun", kLongText}}};
}

TableDef directoriesTable() {
    return {"Directories",
            {{"drive id number", kInteger},
             {"Parent id", kText, true},
             {"id number", kText, true},
             {"directory name", kText},
             {"Directory Path", kText},
             {"number of files", kInteger},
             {"number of subdirectories", kInteger},
             {"Size", kDouble},
             {"Total Size", kDouble},
             {"Total number of files", kInteger},
             {"Total number of Subdirectories", kInteger},
             {"Comments", kLongText}}};
}

TableDef filesTable() {
    TableDef table{"Files",
                   {{"directory number", kText, true},
                    {"id number", kInteger},
                    {"file name", kText},
                    {"file extension", kText},
                    {"file size", kDouble},
                    {"File date", kText},
                    {"file time", kText},
                    {"Attributes", kText},
                    {"number of icons", kInteger}}};
    for (const char* name : {"Company Name", "Description", "Copyright", "Product name", "Product Version",
                             "Internal Name", "Original file Name"})
        table.fields.push_back({name, kText});
    table.fields.push_back({"Comments", kLongText});
    return table;
}

TableDef progTagTable() {
    TableDef table{"Prog Tag", {{"id number", kInteger}}};
    for (const char* name :
         {"Prog ID", "Prog name", "Prog Version", "Type", "Directory number", "File id", "OS", "Vendor",
          "Vendor Home page", "Category", "Subcategory", "Description", "Serial number", "CD-Key"})
        table.fields.push_back({name, kText, name == std::string_view("Directory number")});
    table.fields.push_back({"CD number", kInteger});
    for (const char* name :
         {"Preferred name", "Number of CDs", "Directory Path", "File name", "Total Size", "Total Files"})
        table.fields.push_back({name, kText});
    table.fields.push_back({"Comments", kLongText});
    return table;
}

TableDef masterTable() {
    return {"Master Table",
            {{"scanned cd-roms", kInteger},
             {"real cd-roms scanned", kInteger},
             {"Total number of directories", kInteger},
             {"Total number of files", kInteger},
             {"Total Size", kDouble},
             {"scan error", kText},
             {"encryption", FieldType::Boolean},
             {"last compact", FieldType::Date}}};
}

std::string columnType(const TableDef& table, const FieldDef& field) {
    switch (field.type) {
    case FieldType::Integer:
        return field.name == "id number" && table.name != "Directories" ? "INTEGER PRIMARY KEY" : "INTEGER";
    case FieldType::Double:
        return "REAL";
    case FieldType::Boolean:
        return "INTEGER";
    default:
        return "TEXT COLLATE NOCASE";
    }
}

std::string createTable(const TableDef& table) {
    std::string sql = "CREATE TABLE " + quotedName(table.name) + " (";
    for (const FieldDef& field : table.fields)
        sql += (sql.back() == '(' ? "" : ", ") + quotedName(field.name) + " " + columnType(table, field);
    return sql + ")";
}

constexpr const char* kIndexes =
    R"(CREATE UNIQUE INDEX DirectoryNumbers ON Directories ("id number");
       CREATE INDEX DirectoryParents ON Directories ("Parent id");
       CREATE INDEX DirectoryDrives ON Directories ("drive id number");
       CREATE INDEX FileDirectories ON Files ("directory number");
       CREATE INDEX FileNames ON Files ("file name");
       CREATE INDEX TagKeys ON "Prog Tag" ("Prog ID");)";

std::string selectList(const Query& query) {
    std::string list;
    for (const int column : query.columns)
        list += (list.empty() ? "" : ", ") + quotedName(query.table->fields[static_cast<size_t>(column)].name);
    for (const Query::Sum& sum : query.aggregates)
        list += (list.empty() ? "" : ", ") + sum.sql;
    return list;
}

std::string sqlOf(const Query& query, const std::string& list) {
    std::string sql = query.kind == Query::Kind::Delete ? "DELETE" : "SELECT " + list;
    sql += " FROM " + quotedName(query.table->name);
    if (!query.where.empty())
        sql += " WHERE " + query.where;
    if (!query.order.empty())
        sql += " ORDER BY " + orderSql(query.order, *query.table);
    return sql;
}

void bind(sqlite3_stmt* statement, int place, const Value& value) {
    if (const auto* boolean = std::get_if<bool>(&value))
        sqlite3_bind_int(statement, place, *boolean ? 1 : 0);
    else if (const auto* integer = std::get_if<int64_t>(&value))
        sqlite3_bind_int64(statement, place, *integer);
    else if (const auto* number = std::get_if<double>(&value))
        sqlite3_bind_double(statement, place, *number);
    else if (const auto* text = std::get_if<std::string>(&value))
        sqlite3_bind_text(statement, place, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
}

Row rowOf(sqlite3_stmt* statement) {
    Row row;
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        const auto size = static_cast<size_t>(sqlite3_column_bytes(statement, column));
        row.push_back(text == nullptr ? "NULL" : std::string(text, size));
    }
    return row;
}

template <typename Parse>
int errorRaisedBy(Parse&& parse) {
    try {
        parse();
        return 0;
    } catch (const base::RuntimeError& error) {
        return error.number();
    }
}

} // namespace

const Schema& catalogueSchema() {
    static const Schema kSchema{{driveTable(), directoriesTable(), filesTable(), progTagTable(), masterTable()}};
    return kSchema;
}

const TableDef& tableNamed(std::string_view name) {
    const TableDef* table = catalogueSchema().find(name);
    if (table == nullptr)
        throw std::logic_error("no such table: " + std::string(name));
    return *table;
}

DialectStore::DialectStore() {
    sqlite3* connection = nullptr;
    sqlite3_open(":memory:", &connection);
    m_connection.reset(connection, &sqlite3_close);
    registerLikeFunction(connection);
    registerOrderFunction(connection);
    for (const TableDef& table : catalogueSchema().tables)
        execute(createTable(table));
    execute(kIndexes);
}

void DialectStore::execute(const std::string& sql) {
    if (sqlite3_exec(m_connection.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::logic_error(sqlite3_errmsg(m_connection.get()));
}

void DialectStore::insertText(const std::string& table, const std::string& column, std::string_view text) {
    run("INSERT INTO " + quotedName(table) + " (" + quotedName(column) + ") VALUES (?1)", {std::string(text)});
}

std::vector<Row> DialectStore::rows(std::string_view statement) {
    const Query query = parseStatement(statement, catalogueSchema());
    return run(sqlOf(query, selectList(query)), query.bindings);
}

std::vector<std::string> DialectStore::column(std::string_view statement) {
    std::vector<std::string> values;
    for (const Row& row : rows(statement))
        values.push_back(row.at(0));
    return values;
}

std::vector<std::string> DialectStore::found(std::string_view table, std::string_view field,
                                             std::string_view criterion) {
    const Query query = parseCriterion(criterion, tableNamed(table));
    std::vector<std::string> values;
    for (const Row& row : run(sqlOf(query, quotedName(field)) + " ORDER BY rowid", query.bindings))
        values.push_back(row.at(0));
    return values;
}

void DialectStore::remove(std::string_view statement) {
    const Query query = parseStatement(statement, catalogueSchema());
    EXPECT_EQ(query.kind, Query::Kind::Delete);
    run(sqlOf(query, {}), query.bindings);
}

std::string DialectStore::plan(std::string_view statement) {
    const Query query = parseStatement(statement, catalogueSchema());
    return explain(query);
}

std::string DialectStore::planOfCriterion(std::string_view table, std::string_view criterion) {
    return explain(parseCriterion(criterion, tableNamed(table)));
}

std::string DialectStore::explain(const Query& query) {
    const std::string list = query.aggregates.empty() ? "rowid" : selectList(query);
    std::string plan;
    for (const Row& row : run("EXPLAIN QUERY PLAN " + sqlOf(query, list), query.bindings))
        plan += (plan.empty() ? "" : "; ") + row.at(3);
    return plan;
}

std::vector<Row> DialectStore::run(const std::string& sql, const std::vector<Value>& bindings) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(m_connection.get(), sql.c_str(), -1, &prepared, nullptr) != SQLITE_OK)
        throw std::logic_error(sql + ": " + sqlite3_errmsg(m_connection.get()));
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(prepared, &sqlite3_finalize);
    EXPECT_EQ(sqlite3_bind_parameter_count(prepared), static_cast<int>(bindings.size())) << sql;
    for (size_t at = 0; at < bindings.size(); ++at)
        bind(prepared, static_cast<int>(at) + 1, bindings[at]);
    std::vector<Row> result;
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW)
        result.push_back(rowOf(prepared));
    if (step != SQLITE_DONE)
        throw std::logic_error(sql + ": " + sqlite3_errmsg(m_connection.get()));
    return result;
}

int errorOf(std::string_view statement) {
    return errorRaisedBy([&] { parseStatement(statement, catalogueSchema()); });
}

int errorOfCriterion(std::string_view table, std::string_view criterion) {
    return errorRaisedBy([&] { parseCriterion(criterion, tableNamed(table)); });
}

} // namespace discaro::db::test

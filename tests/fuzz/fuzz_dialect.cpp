// The query dialect and the matcher behind `like` on any bytes. The first byte says what the rest is: a statement, a
// criterion, a sort, or a pattern and a text with a NUL between them. Whatever the dialect accepts has to be one
// statement that the storage engine prepares, with as many parameters as there are constants.

#include "base/RuntimeError.h"
#include "db/dialect/Dialect.h"
#include "db/pattern/LikePattern.h"
#include "db/sqlite/LikeFunction.h"
#include "db/sqlite/RowTaker.h"

#include <sqlite3.h>

#include <cstdlib>

using namespace discaro;

namespace {

const db::Schema& schema() {
    using db::FieldType;
    static const db::Schema kSchema{
        {{"Files",
          {{"directory number", FieldType::Text, true},
           {"id number", FieldType::Integer},
           {"file name", FieldType::Text},
           {"file size", FieldType::Double},
           {"Comments", FieldType::LongText}}},
         {"Prog Tag", {{"id number", FieldType::Integer}, {"CD number", FieldType::Integer}}},
         {"Master Table", {{"encryption", FieldType::Boolean}, {"last compact", FieldType::Date}}}}};
    return kSchema;
}

sqlite3* openConnection() {
    sqlite3* connection = nullptr;
    sqlite3_open(":memory:", &connection);
    db::registerLikeFunction(connection);
    db::registerOrderFunction(connection);
    sqlite3_exec(connection,
                 R"(CREATE TABLE Files ("directory number" TEXT COLLATE NOCASE, "id number" INTEGER PRIMARY KEY,
                        "file name" TEXT COLLATE NOCASE, "file size" REAL, "Comments" TEXT COLLATE NOCASE);
                    CREATE INDEX Names ON Files ("file name");
                    CREATE TABLE "Prog Tag" ("id number" INTEGER PRIMARY KEY, "CD number" INTEGER);
                    CREATE TABLE "Master Table" ("encryption" INTEGER, "last compact" TEXT COLLATE NOCASE);
                    INSERT INTO Files VALUES ('C1D1', 1, 'readme', 2.5, NULL);)",
                 nullptr, nullptr, nullptr);
    return connection;
}

std::string sqlOf(const db::Query& query) {
    std::string sql = query.kind == db::Query::Kind::Delete ? "DELETE" : "SELECT ";
    for (const db::Query::Sum& sum : query.aggregates)
        sql += sum.sql + ", ";
    if (query.kind != db::Query::Kind::Delete)
        sql += "1";
    sql += " FROM \"" + query.table->name + '"';
    if (!query.where.empty())
        sql += " WHERE " + query.where;
    if (!query.order.empty())
        sql += " ORDER BY " + db::orderSql(query.order, *query.table);
    return sql;
}

void require(bool holds) {
    if (!holds)
        std::abort();
}

void check(const db::Query& query) {
    static sqlite3* const kConnection = openConnection();
    const std::string sql = sqlOf(query);
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    require(sqlite3_prepare_v2(kConnection, sql.c_str(), -1, &statement, &tail) == SQLITE_OK);
    require(*tail == '\0');
    require(sqlite3_bind_parameter_count(statement) == static_cast<int>(query.bindings.size()));
    const bool writes = sqlite3_stmt_readonly(statement) == 0;
    require(writes == (query.kind == db::Query::Kind::Delete));
    for (size_t at = 0; at < query.bindings.size(); ++at)
        if (const auto* text = std::get_if<std::string>(&query.bindings[at]))
            sqlite3_bind_text(statement, static_cast<int>(at) + 1, text->data(), static_cast<int>(text->size()),
                              SQLITE_STATIC);
    if (!writes)
        sqlite3_step(statement);
    sqlite3_finalize(statement);
}

void checkSort(std::string_view text) {
    db::Query query;
    query.table = &schema().tables[0];
    query.order = db::parseSort(text, *query.table);
    check(query);
}

void checkPattern(std::string_view text) {
    const size_t middle = text.find('\0');
    if (middle != std::string_view::npos)
        db::LikePattern(text.substr(0, middle)).matches(text.substr(middle + 1));
}

void run(char kind, std::string_view text) {
    switch (kind) {
    case 'c':
        return check(db::parseCriterion(text, schema().tables[0]));
    case 'o':
        return checkSort(text);
    case 'l':
        return checkPattern(text);
    default:
        return check(db::parseStatement(text, schema()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    base::skipErrors([&] { run(text[0], text.substr(1)); });
    return 0;
}

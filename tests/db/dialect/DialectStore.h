#pragma once

#include "db/dialect/Dialect.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace discaro::db::test {

// The catalogue's tables with their names, positions and types.
const Schema& catalogueSchema();
const TableDef& tableNamed(std::string_view name);

using Row = std::vector<std::string>;

// A database in memory with the catalogue's tables, text columns that compare without regard to case, indexes on the
// columns by which the tree is walked, and the function discaro_like. Runs what the dialect makes of a text.
class DialectStore {
public:
    DialectStore();

    // Puts rows in: a statement of the storage engine.
    void execute(const std::string& sql);

    // A row of one table with the named text in one column, bound as it is.
    void insertText(const std::string& table, const std::string& column, std::string_view text);

    // The rows of a select or a sum as text, "NULL" for null.
    std::vector<Row> rows(std::string_view statement);
    // The first column of each row.
    std::vector<std::string> column(std::string_view statement);
    // The named field of the rows that meet a criterion, in the order of the table.
    std::vector<std::string> found(std::string_view table, std::string_view field, std::string_view criterion);

    // Runs a delete.
    void remove(std::string_view statement);

    // The engine's plan for a statement or for a criterion, its steps joined by "; ".
    std::string plan(std::string_view statement);
    std::string planOfCriterion(std::string_view table, std::string_view criterion);

private:
    std::vector<Row> run(const std::string& sql, const std::vector<Value>& bindings);
    std::string explain(const Query& query);

    std::shared_ptr<sqlite3> m_connection;
};

// The number of the RuntimeError that a text raises; 0 when it is accepted.
int errorOf(std::string_view statement);
int errorOfCriterion(std::string_view table, std::string_view criterion);

} // namespace discaro::db::test

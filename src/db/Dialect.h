#pragma once

#include "db/Schema.h"
#include "db/Value.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// The store's query dialect: names in square brackets, `like` with the wild-cards * ? #, an IN
// clause that names the catalogue file, numbers and strings that may touch the next word. A text
// becomes SQL of the storage engine in which every name is a quoted name of the schema and every
// constant a bound parameter, so that no part of the text itself ever reaches the engine as SQL,
// and the SQL does not change with the constants.
//
// Accepted are one `select` (of fields, or of sums) and one `delete`, each with an optional
// `where`, and a bare table name. Everything else throws base::RuntimeError: SyntaxError,
// UnknownTable, UnknownField, NotAllowed, or DataTypeConversion where a number is compared with
// text that is none. More than 200 open parentheses, and conditions too many or too deep for the
// engine, are syntax errors. Any bytes may come in, of any length: the time is in proportion to it.

// What is known of a condition besides its SQL. The placeholders are those of the whole.
struct ConditionFacts {
    uint64_t fields = 0;               // the fields that it names: bit 0 for field 0
    std::string lean;                  // the condition without what only helps to search an index
    std::vector<std::string> searches; // parts that all its rows meet and that an index may serve
};

struct Query {
    enum class Kind { Rows, Aggregate, Delete };

    struct Sum {
        std::string name; // the alias, or a name made from the function and the field
        std::string sql;  // SQL expression
        FieldType type;
    };

    Kind kind = Kind::Rows;
    const TableDef* table = nullptr; // points into the schema that was given
    std::vector<int> columns;        // Rows: positions of the fields selected, in order
    std::vector<Sum> aggregates;     // Aggregate: the sums, in order
    std::string where;               // SQL expression, or "" for all rows; placeholders ?1 ?2 ...
    std::vector<SortTerm> order;     // empty for the order of insertion
    std::vector<Value> bindings;     // the values of ?1 ?2 ..., in order
    ConditionFacts condition;
    std::string externalFile; // the bare file name behind IN, "" when none
};

// A whole statement. The schema must outlive the query.
Query parseStatement(std::string_view text, const Schema& schema);

// A `where` clause without the word, as FindFirst takes it. Only table and what belongs to the
// condition are filled.
Query parseCriterion(std::string_view text, const TableDef& table);

// "[file name] desc, [file size]" as the terms of an order; a blank text gives none.
std::vector<SortTerm> parseSort(std::string_view text, const TableDef& table);

// The terms in SQL, for any order: texts through discaro_order, so that no index serves.
std::string orderSql(const std::vector<SortTerm>& terms, const TableDef& table);

} // namespace discaro::db

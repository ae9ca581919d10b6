#pragma once

#include "db/schema/Definitions.h"
#include "db/value/Value.h"

#include <cstdint>
#include <string>
#include <vector>

namespace discaro::db {

// What is known of a condition besides its SQL. The placeholders are those of the whole.
struct ConditionFacts {
    uint64_t fields = 0;               // the fields that it names: bit 0 for field 0
    std::string lean;                  // the condition without what only helps to search an index
    std::vector<std::string> searches; // parts that all its rows meet and that an index may serve
};

// A statement of the dialect, in terms of the schema and of the storage engine's SQL.
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

} // namespace discaro::db

#pragma once

#include "db/dialect/DialectTokens.h"
#include "db/dialect/Query.h"

#include <string_view>
#include <vector>

namespace discaro::db {

// One item between `select` and `from`, as written: *, T.*, a field, or a function of a field with
// an alias. The views point into the statement.
struct SelectItem {
    std::string_view qualifier;
    std::string_view field;
    std::string_view function; // "" for a plain field
    std::string_view alias;    // "" when none is given
    bool all = false;          // a star instead of a field
};

// Reads the items up to the word `from`.
std::vector<SelectItem> takeSelectItems(Tokenizer& tokens);

// Sets kind, columns and aggregates of a query whose table is known. Throws UnknownField,
// NotAllowed when fields stand beside sums, and DataTypeConversion for the sum of a text.
void resolveSelectItems(const std::vector<SelectItem>& items, Query& query);

// All fields of the query's table.
void selectAll(Query& query);

} // namespace discaro::db

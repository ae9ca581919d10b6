#pragma once

#include "db/dialect/Query.h"
#include "db/schema/Definitions.h"

#include <cstddef>
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

// A whole statement. The schema must outlive the query.
Query parseStatement(std::string_view text, const Schema& schema);

// A `where` clause without the word, as FindFirst takes it. Only table and what belongs to the
// condition are filled. Its placeholders count on from so many parameters that the statement has besides.
Query parseCriterion(std::string_view text, const TableDef& table, size_t parametersBefore = 0);

// "[file name] desc, [file size]" as the terms of an order; a blank text gives none.
std::vector<SortTerm> parseSort(std::string_view text, const TableDef& table);

// The terms in SQL, for any order: texts through discaro_order, so that no index serves.
std::string orderSql(const std::vector<SortTerm>& terms, const TableDef& table);

} // namespace discaro::db

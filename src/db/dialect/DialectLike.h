#pragma once

#include "db/dialect/DialectSql.h"
#include "db/schema/Definitions.h"
#include "db/value/Value.h"

namespace discaro::db {

// Appends the SQL of `field like pattern`. It is true exactly when discaro_like(pattern, field) is,
// and null where the field or the pattern is null; without a negation around it, false may stand
// for null. Whatever can be an index search is one: equality for a pattern without wild-cards, a
// range for a pattern with a literal beginning.
SqlPart writeLike(DialectSql& out, const FieldDef& field, const Value& pattern, bool negated);

} // namespace discaro::db

#include "db/DialectSql.h"

#include "base/Number.h"

#include <algorithm>

namespace discaro::db {

void DialectSql::name(std::string_view canonicalName) {
    text += '"';
    for (const char c : canonicalName) {
        if (c == '"')
            text += '"';
        text += c;
    }
    text += '"';
}

void DialectSql::constant(Value value) {
    bindings.push_back(std::move(value));
    text += '?';
    text += base::numberText(static_cast<int64_t>(bindings.size()));
}

SqlPart joined(const SqlPart& left, const SqlPart& right, Rank rank) {
    return {left.begin, rank, std::max(left.stack, right.stack + 2),
            std::max(left.height, right.height) + 1};
}

void wrap(DialectSql& out, SqlPart& part) {
    out.text.insert(part.begin, 1, '(');
    out.text += ')';
    part.rank = Rank::Single;
    ++part.stack;
}

} // namespace discaro::db

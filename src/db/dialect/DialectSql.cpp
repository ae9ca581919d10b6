#include "db/dialect/DialectSql.h"

#include "base/Number.h"
#include "db/schema/Definitions.h"

#include <algorithm>

namespace discaro::db {

void DialectSql::name(std::string_view canonicalName) {
    text += quotedName(canonicalName);
}

void DialectSql::constant(Value value) {
    bindings.push_back(std::move(value));
    text += '?';
    text += base::numberText(static_cast<int64_t>(parametersBefore + bindings.size()));
}

void DialectSql::insert(size_t at, std::string_view more) {
    text.insert(at, more);
    for (auto each = spare.rbegin(); each != spare.rend() && each->begin >= at; ++each) {
        each->begin += more.size();
        each->end += more.size();
    }
}

std::string DialectSql::lean() const {
    std::string lean;
    size_t from = 0;
    for (const Spare& each : spare) {
        lean.append(text, from, each.begin - from);
        from = each.end;
    }
    return lean.append(text, from);
}

SqlPart joined(const SqlPart& left, const SqlPart& right, Rank rank) {
    return {left.begin, rank, std::max(left.stack, right.stack + 2), std::max(left.height, right.height) + 1};
}

void wrap(DialectSql& out, SqlPart& part) {
    out.insert(part.begin, "(");
    out.text += ')';
    part.rank = Rank::Single;
    ++part.stack;
}

} // namespace discaro::db

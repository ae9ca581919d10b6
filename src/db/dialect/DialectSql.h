#pragma once

#include "db/value/Value.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// The SQL text under construction and the constants it is bound to.
struct DialectSql {
    std::string text;
    std::vector<Value> bindings;
    size_t parametersBefore = 0;       // those that the placeholders count on from
    uint64_t fields = 0;               // those named so far: bit 0 for field 0
    std::vector<std::string> searches; // parts that all rows must meet and that an index may serve

    // A stretch of the text that a reading of the whole table can go without.
    struct Spare {
        size_t begin;
        size_t end;
    };
    std::vector<Spare> spare;

    // Appends a name of the schema, quoted.
    void name(std::string_view canonicalName);

    // Keeps the constant and appends its placeholder.
    void constant(Value value);

    // Puts something in front of what stands at a place.
    void insert(size_t at, std::string_view more);

    // The text without what can be spared.
    std::string lean() const;

    // Notes what stands from a place on as one of the searches.
    void noteSearch(size_t begin) { searches.push_back(text.substr(begin)); }
};

// How tightly the outermost operator of an expression binds, loosest first.
enum class Rank { Or, And, Not, Single };

// An expression just appended to a DialectSql. The last two are what the storage engine's parser sets a limit to: the
// symbols that it keeps on its stack while it reads the expression, and the height of the operator tree.
struct SqlPart {
    static constexpr int kStack = 12; // of anything without and, or, not
    static constexpr int kHeight = 3;

    size_t begin = 0; // where it begins in the text
    Rank rank = Rank::Single;
    int stack = kStack;
    int height = kHeight;
};

// The part that `left`, an operator and `right` make together; both stand in the text.
SqlPart joined(const SqlPart& left, const SqlPart& right, Rank rank);

// Puts the part in parentheses.
void wrap(DialectSql& out, SqlPart& part);

} // namespace discaro::db

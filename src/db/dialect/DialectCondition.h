#pragma once

#include "db/dialect/DialectSql.h"
#include "db/dialect/DialectTokens.h"
#include "db/schema/Definitions.h"

namespace discaro::db {

// A field's name, bracketed or not, with or without the table's name and a dot before it, from the
// current token on. Returns its position; throws UnknownField when the table has none.
int takeField(Tokenizer& tokens, const TableDef& table);

// Reads a condition from the current token on and appends its SQL. Stops at the first token that
// cannot continue it.
class ConditionParser {
public:
    ConditionParser(Tokenizer& tokens, const TableDef& table, DialectSql& out)
        : m_tokens(tokens)
        , m_table(table)
        , m_out(out) {}

    void parse();

private:
    // One side of a comparison: a field of the table, or a constant.
    struct Operand {
        const FieldDef* field = nullptr;
        Value constant;
    };

    SqlPart parseOr();
    SqlPart parseAnd();
    SqlPart parseNot();
    SqlPart parseParentheses();
    SqlPart parseComparison();
    SqlPart parseIs(const FieldDef& field);
    SqlPart parsePredicate(const FieldDef& field);
    SqlPart parseIn(const FieldDef& field);
    SqlPart parseBetween(const FieldDef& field);
    SqlPart compare(const Operand& left, Symbol operation, const Operand& right);

    Operand takeOperand();
    Value takeConstant();
    bool takeLiteral(Value& literal);
    bool takeNumber(Value& number);

    void writeOperand(const Operand& operand, const FieldDef* other);
    SqlPart negated(SqlPart part);

    Tokenizer& m_tokens;
    const TableDef& m_table;
    DialectSql& m_out;
    int m_nesting = 0;
    int m_negations = 0;
};

} // namespace discaro::db

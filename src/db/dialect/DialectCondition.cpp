#include "db/dialect/DialectCondition.h"

#include "base/Number.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "db/dialect/DialectLike.h"

#include <charconv>

namespace discaro::db {

namespace {

using base::ErrorNumber;
using base::RuntimeError;

constexpr int kMaxNesting = 200;
// Below what the storage engine's parser takes, 100 and 1000, as the condition is not all of a statement.
constexpr int kMaxStack = 85;
constexpr int kMaxHeight = 950;
constexpr size_t kMaxBindings = 5000;

std::string_view sqlOf(Symbol operation) {
    switch (operation) {
    case Symbol::Equal:
        return " = ";
    case Symbol::NotEqual:
        return " <> ";
    case Symbol::Less:
        return " < ";
    case Symbol::Greater:
        return " > ";
    case Symbol::LessEqual:
        return " <= ";
    case Symbol::GreaterEqual:
        return " >= ";
    default:
        return {};
    }
}

Value numberOfDigits(std::string_view digits, bool negative) {
    int64_t integer = 0;
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, integer);
    if (result.ec == std::errc() && result.ptr == end)
        return negative ? -integer : integer;
    const double number = base::leadingNumber(digits);
    return negative ? -number : number;
}

// A whole text as the one number that it is, blanks around it allowed.
Value numberIn(const std::string& whole) {
    std::string_view text = base::trimBlanks(whole);
    const bool negative = !text.empty() && text[0] == '-';
    if (negative || (!text.empty() && text[0] == '+'))
        text.remove_prefix(1);
    if (text.empty() || numberLength(text) != text.size())
        throw RuntimeError(ErrorNumber::DataTypeConversion, shownOnError(whole));
    return numberOfDigits(text, negative);
}

Value numericConstant(const Value& constant) {
    if (const auto* boolean = std::get_if<bool>(&constant))
        return static_cast<int64_t>(*boolean);
    const auto* text = std::get_if<std::string>(&constant);
    return text == nullptr ? constant : numberIn(*text);
}

Value booleanConstant(const Value& constant) {
    if (const auto* text = std::get_if<std::string>(&constant)) {
        if (base::equalAscii(*text, "true"))
            return true;
        if (base::equalAscii(*text, "false"))
            return false;
    }
    if (std::holds_alternative<bool>(constant))
        return constant;
    return numberOf(numericConstant(constant)) != 0;
}

// The constant as a value that a field of this type may be compared with.
Value converted(const Value& constant, FieldType type) {
    if (isNull(constant))
        return constant;
    if (isText(type))
        return textOf(constant);
    return type == FieldType::Boolean ? booleanConstant(constant) : numericConstant(constant);
}

} // namespace

int takeField(Tokenizer& tokens, const TableDef& table) {
    std::string_view name = tokens.takeName();
    if (tokens.take(Symbol::Dot)) {
        const std::string_view qualifier = name;
        name = tokens.takeName();
        if (!base::equalAscii(qualifier, table.name))
            throw RuntimeError(ErrorNumber::UnknownField,
                               std::string(shownOnError(qualifier)).append(".").append(shownOnError(name)));
    }
    const int position = table.find(name);
    if (position < 0)
        throw RuntimeError(ErrorNumber::UnknownField, shownOnError(name));
    return position;
}

void ConditionParser::parse() {
    const SqlPart whole = parseOr();
    if (whole.rank == Rank::Or)
        m_out.searches.clear();
    if (whole.stack > kMaxStack || whole.height > kMaxHeight)
        throw RuntimeError(ErrorNumber::SyntaxError, "too many conditions");
}

SqlPart ConditionParser::parseOr() {
    SqlPart part = parseAnd();
    while (m_tokens.take(Keyword::Or)) {
        m_out.text += " OR ";
        part = joined(part, parseAnd(), Rank::Or);
    }
    return part;
}

SqlPart ConditionParser::parseAnd() {
    SqlPart part = parseNot();
    while (m_tokens.take(Keyword::And)) {
        if (part.rank < Rank::And)
            wrap(m_out, part);
        m_out.text += " AND ";
        SqlPart right = parseNot();
        if (right.rank < Rank::And)
            wrap(m_out, right);
        part = joined(part, right, Rank::And);
    }
    return part;
}

SqlPart ConditionParser::parseNot() {
    bool odd = false;
    while (m_tokens.take(Keyword::Not))
        odd = !odd;
    if (!odd)
        return parseParentheses();
    const size_t searches = m_out.searches.size();
    ++m_negations;
    const SqlPart part = parseParentheses();
    --m_negations;
    m_out.searches.resize(searches);
    return negated(part);
}

SqlPart ConditionParser::parseParentheses() {
    if (!m_tokens.is(Symbol::LeftParenthesis))
        return parseComparison();
    if (++m_nesting > kMaxNesting)
        throw RuntimeError(ErrorNumber::SyntaxError, "too many open parentheses");
    m_tokens.advance();
    const size_t searches = m_out.searches.size();
    const SqlPart part = parseOr();
    m_out.searches.resize(searches);
    m_tokens.expect(Symbol::RightParenthesis);
    --m_nesting;
    return part;
}

SqlPart ConditionParser::parseComparison() {
    const Operand left = takeOperand();
    const Symbol operation = m_tokens.current().symbol;
    SqlPart part;
    if (!sqlOf(operation).empty()) {
        m_tokens.advance();
        part = compare(left, operation, takeOperand());
    } else if (left.field == nullptr) {
        m_tokens.fail();
    } else if (m_tokens.take(Keyword::Is)) {
        part = parseIs(*left.field);
    } else if (m_tokens.take(Keyword::Not)) {
        const size_t searches = m_out.searches.size();
        ++m_negations;
        part = negated(parsePredicate(*left.field));
        --m_negations;
        m_out.searches.resize(searches);
    } else {
        part = parsePredicate(*left.field);
    }
    return part;
}

SqlPart ConditionParser::parseIs(const FieldDef& field) {
    const size_t begin = m_out.text.size();
    m_out.name(field.name);
    m_out.text += m_tokens.take(Keyword::Not) ? " IS NOT NULL" : " IS NULL";
    m_tokens.expect(Keyword::Null);
    return {begin};
}

SqlPart ConditionParser::parsePredicate(const FieldDef& field) {
    if (m_tokens.take(Keyword::Like))
        return writeLike(m_out, field, takeConstant(), m_negations > 0);
    if (m_tokens.take(Keyword::In))
        return parseIn(field);
    m_tokens.expect(Keyword::Between);
    return parseBetween(field);
}

SqlPart ConditionParser::parseIn(const FieldDef& field) {
    const size_t begin = m_out.text.size();
    m_out.name(field.name);
    m_out.text += isText(field.type) ? " COLLATE NOCASE IN (" : " IN (";
    m_tokens.expect(Symbol::LeftParenthesis);
    m_out.constant(converted(takeConstant(), field.type));
    while (m_tokens.take(Symbol::Comma)) {
        m_out.text += ", ";
        m_out.constant(converted(takeConstant(), field.type));
    }
    m_tokens.expect(Symbol::RightParenthesis);
    m_out.text += ')';
    m_out.noteSearch(begin);
    return {begin};
}

SqlPart ConditionParser::parseBetween(const FieldDef& field) {
    const size_t searches = m_out.searches.size();
    const SqlPart lower = compare({&field, {}}, Symbol::GreaterEqual, {nullptr, takeConstant()});
    m_tokens.expect(Keyword::And);
    m_out.text += " AND ";
    const SqlPart upper = compare({&field, {}}, Symbol::LessEqual, {nullptr, takeConstant()});
    m_out.searches.resize(searches);
    m_out.noteSearch(lower.begin);
    return joined(lower, upper, Rank::And);
}

SqlPart ConditionParser::compare(const Operand& left, Symbol operation, const Operand& right) {
    const size_t begin = m_out.text.size();
    writeOperand(left, right.field);
    m_out.text += sqlOf(operation);
    writeOperand(right, left.field);
    const FieldDef* field = left.field != nullptr ? left.field : right.field;
    if (field == nullptr || isText(field->type))
        m_out.text += " COLLATE NOCASE";
    if ((left.field == nullptr) != (right.field == nullptr) && operation != Symbol::NotEqual)
        m_out.noteSearch(begin);
    return {begin};
}

void ConditionParser::writeOperand(const Operand& operand, const FieldDef* other) {
    if (operand.field != nullptr)
        m_out.name(operand.field->name);
    else if (other != nullptr)
        m_out.constant(converted(operand.constant, other->type));
    else
        m_out.constant(operand.constant);
}

ConditionParser::Operand ConditionParser::takeOperand() {
    Operand operand;
    if (takeLiteral(operand.constant))
        return operand;
    const auto position = static_cast<size_t>(takeField(m_tokens, m_table));
    operand.field = &m_table.fields[position];
    m_out.fields |= uint64_t{1} << position;
    return operand;
}

Value ConditionParser::takeConstant() {
    Value literal;
    if (takeLiteral(literal))
        return literal;
    takeField(m_tokens, m_table); // a word that is no field says so; a field cannot stand here
    m_tokens.fail();
}

bool ConditionParser::takeLiteral(Value& literal) {
    if (m_out.bindings.size() >= kMaxBindings)
        throw RuntimeError(ErrorNumber::SyntaxError, "too many constants");
    if (m_tokens.is(Symbol::Text)) {
        literal = unquoted(m_tokens.current(), m_tokens.source());
        m_tokens.advance();
        return true;
    }
    if (m_tokens.is(Keyword::True) || m_tokens.is(Keyword::False)) {
        literal = m_tokens.is(Keyword::True);
        m_tokens.advance();
        return true;
    }
    return m_tokens.take(Keyword::Null) || takeNumber(literal);
}

bool ConditionParser::takeNumber(Value& number) {
    const bool negative = m_tokens.is(Symbol::Minus);
    const bool sign = negative || m_tokens.is(Symbol::Plus);
    if (sign)
        m_tokens.advance();
    if (!m_tokens.is(Symbol::Number)) {
        if (sign)
            m_tokens.fail();
        return false;
    }
    number = numberOfDigits(m_tokens.current().text, negative);
    m_tokens.advance();
    return true;
}

SqlPart ConditionParser::negated(SqlPart part) {
    if (part.rank < Rank::Not)
        wrap(m_out, part);
    m_out.insert(part.begin, "NOT ");
    part.rank = Rank::Not;
    ++part.stack;
    ++part.height;
    return part;
}

} // namespace discaro::db

#include "db/dialect/DialectLike.h"

#include "db/pattern/LikePattern.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace discaro::db {

namespace {

// The least text, in the order of the NOCASE collation, behind all texts that begin with the folded
// prefix.
std::string behind(std::string prefix) {
    char& last = prefix.back();
    // Capitals sort as small letters, so what follows '@' is '['.
    last = last == '@' ? '[' : static_cast<char>(last + 1);
    return prefix;
}

SqlPart writeComparison(DialectSql& out, const FieldDef& field, std::string_view comparison, Value constant) {
    const size_t begin = out.text.size();
    out.name(field.name);
    out.text += comparison;
    out.constant(std::move(constant));
    return {begin};
}

SqlPart writeNotNull(DialectSql& out, const FieldDef& field, bool negated) {
    const size_t begin = out.text.size();
    out.name(field.name);
    out.text += " IS NOT NULL";
    if (!negated)
        return {begin};
    out.text += " OR NULL";
    return joined({begin}, {}, Rank::Or);
}

SqlPart writeNever(DialectSql& out, const FieldDef& field, bool negated) {
    const size_t begin = out.text.size();
    if (!negated) {
        out.text += '0';
        return {begin};
    }
    out.name(field.name);
    out.text += " <> ";
    out.name(field.name);
    return {begin};
}

// A stored Boolean is a number; its text is a word.
void writeTextOf(DialectSql& out, const FieldDef& field) {
    if (field.type != FieldType::Boolean)
        return out.name(field.name);
    out.text += "CASE WHEN ";
    out.name(field.name);
    out.text += " THEN 'true' WHEN NOT ";
    out.name(field.name);
    out.text += " THEN 'false' END";
}

SqlPart writeFunction(DialectSql& out, const FieldDef& field, std::string pattern) {
    const size_t begin = out.text.size();
    out.text += "discaro_like(";
    out.constant(std::move(pattern));
    out.text += ", ";
    writeTextOf(out, field);
    out.text += ')';
    return {begin};
}

bool hasWildcard(std::string_view pattern) {
    return pattern.find_first_of("*?#") != std::string_view::npos;
}

// The number whose text the pattern is; none for "007", "+7" and "7.0".
std::optional<int64_t> canonicalInteger(std::string_view pattern) {
    int64_t number = 0;
    const char* end = pattern.data() + pattern.size();
    const auto result = std::from_chars(pattern.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || textOf(Value(number)) != pattern)
        return std::nullopt;
    return number;
}

// 1E+15 and 1000000000000000 are one number to an integer field.
std::optional<int64_t> integerOf(const Value& pattern) {
    constexpr double kLimit = 9007199254740992.0;
    const double* number = std::get_if<double>(&pattern);
    if (number != nullptr && std::trunc(*number) == *number && std::abs(*number) <= kLimit)
        return static_cast<int64_t>(*number);
    return canonicalInteger(textOf(pattern));
}

SqlPart writeIntegerLike(DialectSql& out, const FieldDef& field, const Value& pattern, bool negated) {
    if (const auto number = integerOf(pattern)) {
        const SqlPart part = writeComparison(out, field, " = ", *number);
        out.noteSearch(part.begin);
        return part;
    }
    if (std::string text = textOf(pattern); hasWildcard(text))
        return writeFunction(out, field, std::move(text));
    return writeNever(out, field, negated);
}

SqlPart writeRange(DialectSql& out, const FieldDef& field, std::string prefix) {
    std::string end = behind(prefix);
    const SqlPart lower = writeComparison(out, field, " >= ", std::move(prefix));
    out.text += " COLLATE NOCASE AND ";
    const SqlPart upper = writeComparison(out, field, " < ", std::move(end));
    out.text += " COLLATE NOCASE";
    out.noteSearch(lower.begin);
    return joined(lower, upper, Rank::And);
}

SqlPart writeEqual(DialectSql& out, const FieldDef& field, std::string text) {
    const SqlPart part = writeComparison(out, field, " = ", std::move(text));
    out.text += " COLLATE NOCASE";
    out.noteSearch(part.begin);
    return part;
}

// An index search where the beginning allows one. A character of the folded beginning that is ASCII is so in the stored
// text too; but the last one may be composed with a mark behind it.
SqlPart writeTextLike(DialectSql& out, const FieldDef& field, std::string pattern) {
    const LikeShape shape = likeShape(pattern);
    const bool cut = shape.asciiHead < shape.head.size();
    std::string prefix = shape.head.substr(0, shape.asciiHead);
    if (!cut && shape.rest == LikeShape::Rest::Nothing)
        return writeEqual(out, field, std::move(prefix));
    if (prefix.empty())
        return writeFunction(out, field, std::move(pattern));
    const SqlPart part = writeRange(out, field, std::move(prefix));
    if (!cut && shape.rest == LikeShape::Rest::Anything && field.ascii)
        return part; // composition never changes such a text
    out.text += " AND ";
    out.spare.push_back({part.begin, out.text.size()});
    return joined(part, writeFunction(out, field, std::move(pattern)), Rank::And);
}

} // namespace

SqlPart writeLike(DialectSql& out, const FieldDef& field, const Value& pattern, bool negated) {
    if (isNull(pattern)) {
        const size_t begin = out.text.size();
        out.text += "NULL";
        return {begin};
    }
    std::string text = textOf(pattern);
    if (!text.empty() && text.find_first_not_of('*') == std::string::npos)
        return writeNotNull(out, field, negated);
    switch (field.type) {
    case FieldType::Integer:
        return writeIntegerLike(out, field, pattern, negated);
    case FieldType::Double:
    case FieldType::Boolean:
        return writeFunction(out, field, std::move(text));
    case FieldType::Text:
    case FieldType::LongText:
    case FieldType::Date:
        break;
    }
    return writeTextLike(out, field, std::move(text));
}

} // namespace discaro::db

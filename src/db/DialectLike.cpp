#include "db/DialectLike.h"

#include "base/Text.h"
#include "db/LikePattern.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace discaro::db {

namespace {

// Characters outside ASCII that composition turns into an ASCII one, so that a stored text may
// begin otherwise than its folded form: the sign for kelvin, the Greek question mark, the Greek
// accent varia.
struct Stranger {
    char folded;
    std::string_view stored;
};
constexpr std::array kStrangers = {
    Stranger{'k', "\u212A"},
    Stranger{';', "\u037E"},
    Stranger{'`', "\u1FEF"},
};

// More than this many places for a stranger in the beginning of a pattern do not narrow the search
// any further.
constexpr size_t kMaxStrangers = 3;

// Numbers of discs, directories and files, in the tables and wherever one refers to another. The
// program composes them itself, from ASCII letters and digits, so that composition never changes
// them.
bool isIdentifier(const FieldDef& field) {
    constexpr std::array<std::string_view, 4> kIdentifiers = {
        "id number", "parent id", "directory number", "drive id number"};
    for (const std::string_view name : kIdentifiers)
        if (base::equalAscii(name, field.name))
            return true;
    return false;
}

const Stranger* strangerFor(char folded) {
    for (const Stranger& stranger : kStrangers)
        if (stranger.folded == folded)
            return &stranger;
    return nullptr;
}

// The least text, in the order of the NOCASE collation, behind all texts that begin with the folded
// prefix.
std::string behind(std::string prefix) {
    char& last = prefix.back();
    // Capitals sort as small letters, so what follows '@' is '['.
    last = last == '@' ? '[' : static_cast<char>(last + 1);
    return prefix;
}

SqlPart writeComparison(DialectSql& out, const FieldDef& field, std::string_view comparison,
                        Value constant) {
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

SqlPart writeIntegerLike(DialectSql& out, const FieldDef& field, const Value& pattern,
                         bool negated) {
    if (const auto number = integerOf(pattern))
        return writeComparison(out, field, " = ", *number);
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
    return joined(lower, upper, Rank::And);
}

SqlPart writeEqual(DialectSql& out, const FieldDef& field, std::string text) {
    const SqlPart part = writeComparison(out, field, " = ", std::move(text));
    out.text += " COLLATE NOCASE";
    return part;
}

// How a pattern is searched in an index: the texts that begin with `prefix`, or are it.
struct Search {
    std::string prefix;            // folded, ASCII
    std::vector<size_t> strangers; // places in the prefix that a stranger may hold
    bool whole = false;            // equality instead of a range
    bool exact = false;            // the search finds nothing that does not match
};

Search searchOf(const LikeShape& shape, const FieldDef& field) {
    Search search;
    search.prefix = shape.head.substr(0, shape.asciiHead);
    const bool cut = search.prefix.size() < shape.head.size();
    search.whole = !cut && shape.rest == LikeShape::Rest::Nothing;
    search.exact = search.whole;
    if (isIdentifier(field)) {
        search.exact = search.whole || (!cut && shape.rest == LikeShape::Rest::Anything);
        return search;
    }
    for (size_t at = 0; at < search.prefix.size(); ++at) {
        if (strangerFor(search.prefix[at]) == nullptr)
            continue;
        search.exact = false;
        if (search.strangers.size() == kMaxStrangers) {
            search.prefix.resize(at);
            search.whole = false;
            break;
        }
        search.strangers.push_back(at);
    }
    return search;
}

SqlPart writeSearch(DialectSql& out, const FieldDef& field, const Search& search) {
    if (search.whole)
        return writeEqual(out, field, search.prefix);
    return writeRange(out, field, search.prefix);
}

// One branch for texts without a stranger and one for each place where the first stranger may stand.
SqlPart writeBranches(DialectSql& out, const FieldDef& field, const Search& search) {
    SqlPart part = writeSearch(out, field, search);
    for (const size_t place : search.strangers) {
        out.text += " OR ";
        const Stranger* stranger = strangerFor(search.prefix[place]);
        std::string prefix = search.prefix.substr(0, place).append(stranger->stored);
        part = joined(part, writeRange(out, field, std::move(prefix)), Rank::Or);
    }
    if (part.rank == Rank::Or)
        wrap(out, part);
    return part;
}

SqlPart writeTextLike(DialectSql& out, const FieldDef& field, std::string pattern) {
    const Search search = searchOf(likeShape(pattern), field);
    if (search.prefix.empty() && !search.exact)
        return writeFunction(out, field, std::move(pattern));
    const SqlPart part = writeBranches(out, field, search);
    if (search.exact)
        return part;
    out.text += " AND ";
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

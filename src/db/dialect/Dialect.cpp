#include "db/dialect/Dialect.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "db/dialect/DialectCondition.h"
#include "db/dialect/DialectSelect.h"
#include "db/dialect/DialectTokens.h"

namespace discaro::db {

namespace {

using base::ErrorNumber;
using base::RuntimeError;

constexpr size_t kMaxSortTerms = 64;

Query wholeTable(const TableDef& table) {
    Query query;
    query.table = &table;
    selectAll(query);
    return query;
}

std::string_view withoutBrackets(std::string_view text) {
    if (text.size() >= 2 && text.front() == '[' && text.back() == ']')
        return text.substr(1, text.size() - 2);
    return text;
}

// A text that is no statement: a table's name that is not in the schema, if it is made of words
// alone.
[[noreturn]] void failAsTable(Tokenizer& tokens) {
    if (!tokens.take(Symbol::Bracketed))
        do
            tokens.takeName();
        while (tokens.is(Symbol::Word));
    if (!tokens.is(Symbol::End))
        tokens.fail();
    throw RuntimeError(ErrorNumber::UnknownTable, shownOnError(withoutBrackets(base::trimBlanks(tokens.source()))));
}

// The catalogue is named by its bare file name; where it lies is the data source's business.
std::string takeExternalFile(Tokenizer& tokens) {
    std::string name = tokens.takeFileName();
    if (name.empty())
        tokens.fail();
    if (name.find_first_of(std::string_view("/\\\0", 3)) != std::string::npos)
        throw RuntimeError(ErrorNumber::NotAllowed, shownOnError(name));
    return name;
}

void parseFrom(Tokenizer& tokens, const Schema& schema, Query& query) {
    tokens.expect(Keyword::From);
    const std::string_view name = tokens.takeName();
    query.table = schema.find(name);
    if (query.table == nullptr)
        throw RuntimeError(ErrorNumber::UnknownTable, shownOnError(name));
    if (tokens.is(Keyword::In))
        query.externalFile = takeExternalFile(tokens);
}

void parseCondition(Tokenizer& tokens, Query& query, size_t parametersBefore) {
    DialectSql sql;
    sql.parametersBefore = parametersBefore;
    sql.text.reserve(128);
    ConditionParser(tokens, *query.table, sql).parse();
    query.condition = {sql.fields, sql.lean(), std::move(sql.searches)};
    query.where = std::move(sql.text);
    query.bindings = std::move(sql.bindings);
}

void parseWhere(Tokenizer& tokens, Query& query) {
    if (tokens.take(Keyword::Where))
        parseCondition(tokens, query, 0);
}

// A name in a sort expression may go without brackets even when blanks are in it.
int takeSortField(Tokenizer& tokens, const TableDef& table) {
    const size_t begin = tokens.current().begin;
    Tokenizer ahead = tokens;
    while (ahead.is(Symbol::Word) && ahead.is(Keyword::None)) {
        const size_t end = ahead.current().end;
        ahead.advance();
        const bool more = ahead.is(Symbol::Word) && ahead.is(Keyword::None);
        if (more || ahead.is(Symbol::Dot))
            continue;
        const int position = table.find(tokens.source().substr(begin, end - begin));
        if (position < 0)
            break;
        tokens = ahead;
        return position;
    }
    return takeField(tokens, table);
}

std::vector<SortTerm> parseSortTerms(Tokenizer& tokens, const TableDef& table) {
    std::vector<SortTerm> terms;
    do {
        if (terms.size() == kMaxSortTerms)
            throw RuntimeError(ErrorNumber::SyntaxError, "too many fields to sort by");
        terms.push_back({takeSortField(tokens, table)});
        terms.back().descending = tokens.take(Keyword::Desc);
        if (!terms.back().descending)
            tokens.take(Keyword::Asc);
    } while (tokens.take(Symbol::Comma));
    return terms;
}

void parseOrderBy(Tokenizer& tokens, Query& query) {
    if (!tokens.is(Keyword::Order))
        return;
    if (query.kind == Query::Kind::Aggregate)
        throw RuntimeError(ErrorNumber::NotAllowed, "an order of sums");
    tokens.advance();
    tokens.expect(Keyword::By);
    query.order = parseSortTerms(tokens, *query.table);
}

Query parseSelect(Tokenizer& tokens, const Schema& schema) {
    const std::vector<SelectItem> items = takeSelectItems(tokens);
    Query query;
    parseFrom(tokens, schema, query);
    resolveSelectItems(items, query);
    parseWhere(tokens, query);
    parseOrderBy(tokens, query);
    tokens.expectEnd();
    return query;
}

// delete from T, delete * from T, delete T.* from T
Query parseDelete(Tokenizer& tokens, const Schema& schema) {
    Query query;
    query.kind = Query::Kind::Delete;
    std::string_view qualifier;
    if (!tokens.is(Keyword::From) && !tokens.take(Symbol::Star)) {
        qualifier = tokens.takeName();
        tokens.expect(Symbol::Dot);
        tokens.expect(Symbol::Star);
    }
    parseFrom(tokens, schema, query);
    if (!qualifier.empty() && !base::equalAscii(qualifier, query.table->name))
        throw RuntimeError(ErrorNumber::NotAllowed, shownOnError(qualifier));
    parseWhere(tokens, query);
    tokens.expectEnd();
    return query;
}

} // namespace

Query parseStatement(std::string_view text, const Schema& schema) {
    if (const TableDef* table = schema.find(withoutBrackets(base::trimBlanks(text))))
        return wholeTable(*table);
    Tokenizer tokens(text);
    if (tokens.take(Keyword::Select))
        return parseSelect(tokens, schema);
    if (tokens.take(Keyword::Delete))
        return parseDelete(tokens, schema);
    failAsTable(tokens);
}

Query parseCriterion(std::string_view text, const TableDef& table, size_t parametersBefore) {
    Tokenizer tokens(text);
    Query query;
    query.table = &table;
    parseCondition(tokens, query, parametersBefore);
    tokens.expectEnd();
    return query;
}

std::vector<SortTerm> parseSort(std::string_view text, const TableDef& table) {
    Tokenizer tokens(text);
    if (tokens.is(Symbol::End))
        return {};
    std::vector<SortTerm> terms = parseSortTerms(tokens, table);
    tokens.expectEnd();
    return terms;
}

std::string orderSql(const std::vector<SortTerm>& terms, const TableDef& table) {
    DialectSql sql;
    for (const SortTerm& term : terms) {
        const FieldDef& field = table.fields[static_cast<size_t>(term.field)];
        sql.text += sql.text.empty() ? "" : ", ";
        sql.text += isText(field.type) ? "discaro_order(" : "+(";
        sql.name(field.name);
        sql.text += term.descending ? ") DESC" : ")";
    }
    return std::move(sql.text);
}

} // namespace discaro::db

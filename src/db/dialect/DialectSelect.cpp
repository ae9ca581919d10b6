#include "db/dialect/DialectSelect.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "base/Text.h"
#include "db/dialect/DialectSql.h"

#include <algorithm>
#include <array>

namespace discaro::db {

namespace {

using base::ErrorNumber;
using base::RuntimeError;

constexpr size_t kMaxItems = 100;

enum class Result { Integer, Double, SameAsField };

struct Function {
    std::string_view name;
    std::string_view sql;
    bool numbersOnly;
    Result result;
};

constexpr std::array kFunctions = {
    Function{"sum", "SUM(", true, Result::SameAsField},  Function{"count", "COUNT(", false, Result::Integer},
    Function{"min", "MIN(", false, Result::SameAsField}, Function{"max", "MAX(", false, Result::SameAsField},
    Function{"avg", "AVG(", true, Result::Double},
};

const Function* findFunction(std::string_view name) {
    const auto* function =
        std::ranges::find_if(kFunctions, [name](const Function& each) { return base::equalAscii(each.name, name); });
    return function == kFunctions.end() ? nullptr : function;
}

// *, T.*, [name] or T.[name]
void takeFieldInto(SelectItem& item, Tokenizer& tokens) {
    item.all = tokens.take(Symbol::Star);
    if (item.all)
        return;
    item.field = tokens.takeName();
    if (!tokens.take(Symbol::Dot))
        return;
    item.qualifier = item.field;
    item.all = tokens.take(Symbol::Star);
    item.field = item.all ? "*" : tokens.takeName();
}

SelectItem takeItem(Tokenizer& tokens) {
    SelectItem item;
    const bool word = tokens.is(Symbol::Word);
    takeFieldInto(item, tokens);
    if (word && item.qualifier.empty() && tokens.take(Symbol::LeftParenthesis)) {
        item.function = item.field;
        takeFieldInto(item, tokens);
        tokens.expect(Symbol::RightParenthesis);
    }
    if (tokens.take(Keyword::As))
        item.alias = tokens.takeName();
    return item;
}

void checkQualifier(const SelectItem& item, const TableDef& table) {
    if (!item.qualifier.empty() && !base::equalAscii(item.qualifier, table.name))
        throw RuntimeError(ErrorNumber::UnknownField,
                           std::string(shownOnError(item.qualifier)).append(".").append(shownOnError(item.field)));
}

int positionOf(const SelectItem& item, const TableDef& table) {
    const int position = table.find(item.field);
    if (position < 0)
        throw RuntimeError(ErrorNumber::UnknownField, shownOnError(item.field));
    return position;
}

void addColumn(const SelectItem& item, Query& query) {
    checkQualifier(item, *query.table);
    if (!item.alias.empty())
        throw RuntimeError(ErrorNumber::NotAllowed, shownOnError(item.alias));
    if (item.all)
        selectAll(query);
    else
        query.columns.push_back(positionOf(item, *query.table));
}

FieldType typeOf(const Function& function, const FieldDef& field) {
    if (function.result == Result::SameAsField)
        return field.type;
    return function.result == Result::Integer ? FieldType::Integer : FieldType::Double;
}

Query::Sum countOfRows(const Function& function, const SelectItem& item) {
    if (function.name != "count")
        throw RuntimeError(ErrorNumber::SyntaxError, std::string(function.name) + "(*)");
    return {std::string(item.alias.empty() ? function.name : item.alias), "COUNT(*)", FieldType::Integer};
}

Query::Sum resolveSum(const SelectItem& item, const TableDef& table) {
    const Function* function = findFunction(item.function);
    if (function == nullptr)
        throw RuntimeError(ErrorNumber::SyntaxError,
                           base::filledIn("there is no function %1", {shownOnError(item.function)}));
    checkQualifier(item, table);
    if (item.all)
        return countOfRows(*function, item);
    const FieldDef& field = table.fields[static_cast<size_t>(positionOf(item, table))];
    const bool number = field.type == FieldType::Integer || field.type == FieldType::Double;
    if (function->numbersOnly && !number)
        throw RuntimeError(ErrorNumber::DataTypeConversion, field.name);
    DialectSql sql;
    sql.text = function->sql;
    sql.name(field.name);
    sql.text += ')';
    std::string name = item.alias.empty() ? std::string(function->name) + " of " + field.name : std::string(item.alias);
    return {std::move(name), std::move(sql.text), typeOf(*function, field)};
}

} // namespace

std::vector<SelectItem> takeSelectItems(Tokenizer& tokens) {
    std::vector<SelectItem> items;
    do {
        if (items.size() == kMaxItems)
            throw RuntimeError(ErrorNumber::SyntaxError, "too many fields");
        items.push_back(takeItem(tokens));
    } while (tokens.take(Symbol::Comma));
    return items;
}

void resolveSelectItems(const std::vector<SelectItem>& items, Query& query) {
    const auto isSum = [](const SelectItem& item) { return !item.function.empty(); };
    const bool sums = std::ranges::any_of(items, isSum);
    if (sums && !std::ranges::all_of(items, isSum))
        throw RuntimeError(ErrorNumber::NotAllowed, "fields beside sums");
    query.kind = sums ? Query::Kind::Aggregate : Query::Kind::Rows;
    for (const SelectItem& item : items) {
        if (sums)
            query.aggregates.push_back(resolveSum(item, *query.table));
        else
            addColumn(item, query);
    }
}

void selectAll(Query& query) {
    for (size_t at = 0; at < query.table->fields.size(); ++at)
        query.columns.push_back(static_cast<int>(at));
}

} // namespace discaro::db

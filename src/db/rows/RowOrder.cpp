#include "db/rows/RowOrder.h"

#include "db/dialect/Dialect.h"
#include "db/rows/IndexWalk.h"
#include "db/rows/RowNumbers.h"
#include "db/rows/TextSorter.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

namespace discaro::db {

namespace {

// Rows that are fetched through an index sooner than the whole table is read.
constexpr int64_t kNarrow = 20000;
// Rows that are sorted sooner than an index is walked.
constexpr size_t kFew = 1 << 16;

const FieldDef& fieldOf(const RowQuery& query, const SortTerm& term) {
    return query.table->definition->fields[static_cast<size_t>(term.field)];
}

bool ordersByOneText(const RowQuery& query) {
    return query.order.size() == 1 && isText(fieldOf(query, query.order[0]).type);
}

// Whether the condition touches nothing but a field and the row number.
bool concernsOnly(const RowQuery& query, int field) {
    uint64_t fields = uint64_t{1} << field;
    if (query.table->numberField >= 0)
        fields |= uint64_t{1} << query.table->numberField;
    return (query.condition.fields & ~fields) == 0;
}

// The rows that meet a query's condition, in the order of their numbers: by a search in an index where one is narrow,
// else in one pass over the table.
class Filter {
public:
    Filter(Store& store, const RowQuery& query)
        : m_store(store)
        , m_query(query)
        , m_table(quotedName(query.table->definition->name))
        , m_narrow(narrowSearch()) {}

    // What stands behind the columns of a select, with a further condition.
    std::string from(std::string_view further = {}) const {
        std::string where;
        for (const std::string_view part :
             {std::string_view(m_query.condition.lean), std::string_view(m_narrow), further})
            if (!part.empty())
                where.append(where.empty() ? " WHERE (" : " AND (").append(part).append(")");
        return " FROM " + m_table + " NOT INDEXED" + where;
    }

    // Hands over the rows with a field of theirs until the taker has seen enough, and returns whether it has.
    bool gather(RowTaker& taker, std::string_view field) const {
        return run(taker, from("discaro_take(rowid, " + quotedName(field) + ")"), nullptr);
    }

    // Hands over the rows behind a number, without a field.
    void gatherBehind(RowTaker& taker, int64_t number) const {
        run(taker, from("rowid > " + m_query.nextPlaceholder() + " AND discaro_take(rowid)"), &number);
    }

private:
    std::string narrowSearch() const {
        for (const std::string& search : m_query.condition.searches)
            if (isNarrow(search))
                return "rowid IN (SELECT rowid FROM " + m_table + " WHERE " + search + ")";
        return {};
    }

    bool isNarrow(const std::string& search) const {
        const std::string probe =
            "SELECT 1 FROM " + m_table + " WHERE " + search + " LIMIT 1 OFFSET " + std::to_string(kNarrow);
        if (m_store.plan(probe).scans)
            return false;
        const auto statement = m_store.statement(probe);
        const StatementRun run(*statement);
        run->bindAll(m_query.bindings);
        return !run->step();
    }

    bool run(RowTaker& taker, const std::string& condition, const int64_t* behind) const {
        const auto statement = m_store.statement("SELECT 1" + condition + " ORDER BY rowid");
        const Connection::TakerScope scope(m_store.connection(), taker);
        const StatementRun run(*statement);
        run->bindAll(m_query.bindings);
        if (behind != nullptr)
            run->bind(m_query.nextParameter(), *behind);
        return run->step();
    }

    Store& m_store;
    const RowQuery& m_query;
    std::string m_table;
    std::string m_narrow;
};

// Keeps the numbers of rows, and their texts as long as there are few enough to be sorted.
class Gathered : public RowTaker {
public:
    explicit Gathered(size_t mostSorted)
        : m_mostSorted(mostSorted) {}

    bool take(int64_t number, const RowText& text) override {
        numbers.push_back(number);
        if (numbers.size() > m_mostSorted)
            return true;
        sorter.add(number, text);
        return false;
    }

    std::vector<int64_t> numbers;
    TextSorter sorter;

private:
    size_t m_mostSorted;
};

// Keeps the numbers of rows alone.
class Numbers : public RowTaker {
public:
    explicit Numbers(std::vector<int64_t>& numbers)
        : m_numbers(numbers) {}

    bool take(int64_t number, const RowText&) override {
        m_numbers.push_back(number);
        return false;
    }

private:
    std::vector<int64_t>& m_numbers;
};

// All rows in ascending order of a text field. Searches follow one another in a catalogue that rests, so the order is
// remembered until a row changes.
const std::vector<int64_t>& orderOfAll(Table& table, int field, IndexWalk& index) {
    OrderedRows& known = table.ordered;
    if (known.field != field || known.state != table.state())
        known = {field, table.state(), index.numbers()};
    return known.numbers;
}

std::vector<int64_t> among(std::vector<int64_t>& wanted, const std::vector<int64_t>& order) {
    std::vector<int64_t> numbers;
    numbers.reserve(wanted.size());
    const RowNumbers set(std::move(wanted));
    std::ranges::copy_if(order, std::back_inserter(numbers), [&set](int64_t number) { return set.contains(number); });
    return numbers;
}

std::vector<int64_t> filteredInOrder(Store& store, const RowQuery& query, const std::string& field) {
    RowQuery all = query;
    all.where.clear();
    all.bindings.clear();
    IndexWalk index(store, all, field);
    Gathered rows(index.possible() ? kFew : std::numeric_limits<size_t>::max());
    rows.numbers.reserve(mostRows(store, *query.table));
    const Filter filter(store, query);
    if (!filter.gather(rows, field)) {
        rows.sorter.sort();
        return rows.sorter.numbers();
    }
    Numbers rest(rows.numbers);
    filter.gatherBehind(rest, rows.numbers.back());
    return among(rows.numbers, orderOfAll(*query.table, query.order[0].field, index));
}

std::vector<int64_t> inOrderOfText(Store& store, const RowQuery& query) {
    const SortTerm term = query.order[0];
    const std::string& field = fieldOf(query, term).name;
    IndexWalk index(store, query, field);
    std::vector<int64_t> numbers =
        concernsOnly(query, term.field) && index.possible() ? index.numbers() : filteredInOrder(store, query, field);
    if (term.descending)
        std::ranges::reverse(numbers);
    return numbers;
}

// An index may serve for the order of one number, under the same condition as for a text.
std::string sqlInOrder(Store& store, const RowQuery& query) {
    const SortTerm& first = query.order[0];
    const bool one = query.order.size() == 1;
    const std::string ties = one && first.descending ? ", rowid DESC" : ", rowid";
    if (one && concernsOnly(query, first.field))
        return "SELECT rowid" + query.from() + " ORDER BY " + quotedName(fieldOf(query, first).name) +
               (first.descending ? " DESC" : "") + ties;
    return "SELECT rowid" + Filter(store, query).from() + " ORDER BY " +
           orderSql(query.order, *query.table->definition) + ties;
}

std::vector<int64_t> sortedBySqlite(Store& store, const RowQuery& query) {
    const std::string sql = sqlInOrder(store, query);
    const auto statement = store.statement(sql);
    const StatementRun run(*statement);
    run->bindAll(query.bindings);
    std::vector<int64_t> numbers;
    while (run->step())
        numbers.push_back(run->integer(0));
    return numbers;
}

} // namespace

std::vector<int64_t> numbersInOrder(Store& store, const RowQuery& query) {
    const ReadSpan span(store);
    store.noteVersion();
    return ordersByOneText(query) ? inOrderOfText(store, query) : sortedBySqlite(store, query);
}

} // namespace discaro::db

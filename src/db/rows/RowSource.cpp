#include "db/rows/RowSource.h"

#include "base/RuntimeError.h"

#include <algorithm>
#include <utility>

namespace discaro::db {

namespace {

using base::ErrorNumber;
using base::RuntimeError;

constexpr size_t kMostAhead = 256;
constexpr uint64_t kNeverRead = UINT64_MAX;
constexpr uint64_t kAllFields = UINT64_MAX;

} // namespace

std::string RowQuery::filter(std::string_view further) const {
    if (where.empty() && further.empty())
        return {};
    if (where.empty() || further.empty())
        return std::string(" WHERE ").append(where).append(further);
    return std::string(" WHERE (").append(where).append(") AND (").append(further).append(")");
}

std::string RowQuery::from(std::string_view further) const {
    return " FROM " + quotedName(table->definition->name) + filter(further);
}

RowSource::RowSource(Store& store, RowQuery query)
    : m_store(store)
    , m_query(std::move(query))
    , m_window(m_query.layout->size())
    , m_windowState(kNeverRead) {}

void RowSource::requireRow() const {
    if (m_place != Place::On)
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
}

void RowSource::stand(size_t windowRow) {
    m_at = windowRow;
    m_number = m_window.number(windowRow);
    m_place = Place::On;
    m_gone = false;
    m_stale = false;
}

void RowSource::standUnread(int64_t number) {
    m_number = number;
    m_place = Place::On;
    m_gone = false;
    m_windowState = kNeverRead;
}

bool RowSource::advanceInWindow() {
    if (m_gone || !fresh() || m_at + 1 >= m_window.size())
        return false;
    stand(m_at + 1);
    return true;
}

size_t RowSource::readAhead() {
    const bool usedUp = m_at + 1 >= m_window.size();
    m_ahead = usedUp ? std::min(m_ahead * 4, kMostAhead) : 1;
    return m_ahead;
}

void RowSource::emptyWindow(size_t rows) {
    m_windowState = kNeverRead;
    m_window.clear(rows > 1 ? m_used : kAllFields);
}

// What was read before stays until there is something to put in its place.
bool RowSource::fill(Statement& statement, size_t rows) {
    if (!statement.step())
        return false;
    emptyWindow(rows);
    do
        m_window.append(statement);
    while (!m_window.full(rows) && statement.step());
    m_windowState = m_query.table->changed;
    return true;
}

bool RowSource::fill(std::span<const int64_t> numbers) {
    const ReadSpan span(m_store);
    bool any = false;
    for (const int64_t number : numbers) {
        const StatementRun run(exactStatement());
        run->bind(1, number);
        if (!run->step())
            continue;
        if (!std::exchange(any, true))
            emptyWindow(numbers.size());
        m_window.append(*run);
        if (m_window.full(numbers.size()))
            break;
    }
    if (any)
        m_windowState = m_query.table->changed;
    return any;
}

const Cell& RowSource::cell(size_t field) {
    requireRow();
    if (m_gone)
        throw RuntimeError(ErrorNumber::RecordGone);
    m_used |= uint64_t{1} << field;
    if (!fresh() || m_stale || !m_window.has(field)) [[unlikely]]
        refresh(field);
    return m_window.cell(m_at, field);
}

// Reads the current row again. What was read ahead stays, if it is still right and has not grown too much.
void RowSource::refresh(size_t field) {
    if (!fresh() || !m_window.has(field) || m_window.full(SIZE_MAX))
        return readCurrent();
    const StatementRun run(exactStatement());
    run->bind(1, m_number);
    if (!run->step())
        throw RuntimeError(ErrorNumber::RecordGone);
    m_window.replace(m_at, *run);
    m_stale = false;
}

void RowSource::readCurrent() {
    if (!fill({&m_number, 1}))
        throw RuntimeError(ErrorNumber::RecordGone);
    stand(0);
}

bool RowSource::exists() {
    if (m_place != Place::On || m_gone)
        return false;
    if (fresh())
        return true;
    const StatementRun run(exactStatement());
    run->bind(1, m_number);
    m_gone = !run->step();
    return !m_gone;
}

Statement& RowSource::exactStatement() {
    if (m_exact == nullptr)
        m_exact = m_store.statement(m_query.layout->select + " WHERE rowid=?1");
    return *m_exact;
}

void RowSource::rowChanged(bool wasFresh) {
    if (wasFresh)
        m_windowState = m_query.table->changed;
    m_stale = true;
}

void RowSource::bindCriterion(Statement& statement, const Criterion& criterion) const {
    int parameter = m_query.nextParameter();
    for (const Value& value : criterion.bindings)
        statement.bind(parameter++, value);
}

int64_t RowSource::countAll() {
    const auto statement = m_store.statement("SELECT count(*)" + m_query.from());
    const StatementRun run(*statement);
    bindQuery(*run);
    return run->step() ? run->integer(0) : 0;
}

int64_t RowSource::countWhere(std::string_view further, int64_t number) {
    const auto statement = m_store.statement("SELECT count(*)" + m_query.from(further));
    const StatementRun run(*statement);
    bindQuery(*run);
    run->bind(m_query.nextParameter(), number);
    return run->step() ? run->integer(0) : 0;
}

} // namespace discaro::db

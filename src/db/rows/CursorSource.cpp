#include "db/rows/CursorSource.h"

#include "base/RuntimeError.h"

#include <algorithm>
#include <limits>

namespace discaro::db {

namespace {

constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();
constexpr int64_t kWorthStepping = 64;
constexpr int64_t kMarkEach = 256;

} // namespace

CursorSource::CursorSource(Store& store, RowQuery query)
    : RowSource(store, std::move(query)) {}

bool CursorSource::readForward(int64_t from, size_t rows) {
    if (m_forward == nullptr)
        m_forward = m_store.statement(m_query.layout->select + m_query.filter("rowid>=" + m_query.nextPlaceholder()) +
                                      " ORDER BY rowid");
    const StatementRun run(*m_forward);
    bindQuery(*run);
    run->bind(m_query.nextParameter(), from);
    return fill(*run, rows);
}

bool CursorSource::readBackward(int64_t from) {
    if (m_backward == nullptr)
        m_backward = m_store.statement(m_query.layout->select + m_query.filter("rowid<=" + m_query.nextPlaceholder()) +
                                       " ORDER BY rowid DESC");
    const StatementRun run(*m_backward);
    bindQuery(*run);
    run->bind(m_query.nextParameter(), from);
    return fill(*run, 1);
}

void CursorSource::first() {
    stopReadingAhead();
    if (!readForward(kLowest, 1))
        return leave(Place::None);
    stand(0);
    rememberIndex(0);
}

void CursorSource::last() {
    stopReadingAhead();
    m_index = -1;
    if (!readBackward(kHighest))
        return leave(Place::None);
    stand(0);
}

void CursorSource::next() {
    if (place() == Place::Before)
        return first();
    requireRow();
    // Another handle may have deleted the current row; then the next one has its place.
    const int64_t index = indexKnown() && fresh() && !gone() ? m_index + 1 : -1;
    if (!advanceInWindow()) {
        // The number of a row deleted may have been given to a new one.
        const int64_t from = gone() ? number() : number() + (number() < kHighest ? 1 : 0);
        if ((number() == kHighest && !gone()) || !readForward(from, readAhead()))
            return leave(Place::After);
        stand(0);
    }
    rememberIndex(index);
}

void CursorSource::previous() {
    if (place() == Place::After)
        return last();
    requireRow();
    stopReadingAhead();
    const int64_t index = indexKnown() && m_index > 0 ? m_index - 1 : -1;
    if (number() == kLowest || !readBackward(number() - 1))
        return leave(Place::Before);
    stand(0);
    rememberIndex(index);
}

bool CursorSource::find(const Criterion& criterion) {
    const auto statement =
        m_store.statement(m_query.layout->select + m_query.filter(criterion.where) + " ORDER BY rowid LIMIT 1");
    const StatementRun run(*statement);
    bindQuery(*run);
    bindCriterion(*run, criterion);
    if (!fill(*run, 1))
        return false;
    stopReadingAhead();
    stand(0);
    m_index = -1;
    return true;
}

void CursorSource::moveTo(int64_t index) {
    if (index < 0 || index >= count())
        throw base::RuntimeError(base::ErrorNumber::NoCurrentRecord);
    const bool near =
        place() == Place::On && !gone() && indexKnown() && index >= m_index && index - m_index <= kWorthStepping;
    if (near)
        step(index - m_index);
    else if (!jumpTo(index))
        throw base::RuntimeError(base::ErrorNumber::NoCurrentRecord);
    rememberIndex(index);
}

void CursorSource::step(int64_t rows) {
    for (; rows > 0; --rows)
        next();
}

bool CursorSource::jumpTo(int64_t index) {
    stopReadingAhead();
    std::vector<int64_t> numbers;
    numbersAt(index, 1, numbers);
    const bool found = !numbers.empty() && readForward(numbers.front(), 1);
    if (found)
        stand(0);
    return found;
}

int64_t CursorSource::count() {
    Table& table = *m_query.table;
    if (m_query.wholeTable()) {
        if (!table.count)
            table.count = countAll();
        return *table.count;
    }
    const uint64_t state = table.state();
    if (m_count < 0 || m_countState != state) {
        m_count = countAll();
        m_countState = state;
    }
    return m_count;
}

int64_t CursorSource::index() {
    if (!exists())
        return -1;
    if (indexKnown())
        return m_index;
    if (const auto lowest = firstOfDense())
        rememberIndex(number() - *lowest);
    else
        rememberIndex(countWhere("rowid<" + m_query.nextPlaceholder(), number()));
    return m_index;
}

// The lowest row number of a table that has no gaps in its numbers, where place and number go together.
std::optional<int64_t> CursorSource::firstOfDense() {
    if (!m_query.wholeTable())
        return {};
    const std::string table = m_query.from();
    const auto statement =
        m_store.statement("SELECT (SELECT min(rowid)" + table + "),(SELECT max(rowid)" + table + ")");
    const StatementRun run(*statement);
    if (!run->step())
        return {};
    const int64_t lowest = run->integer(0);
    const auto span = static_cast<uint64_t>(run->integer(1)) - static_cast<uint64_t>(lowest);
    if (span + 1 != static_cast<uint64_t>(count()))
        return {};
    return lowest;
}

void CursorSource::numbersAt(int64_t place, int64_t most, std::vector<int64_t>& numbers) {
    if (const auto lowest = firstOfDense()) {
        for (int64_t left = std::min(count() - place, most); left > 0; --left)
            numbers.push_back(*lowest + place++);
        return;
    }
    learnMarks();
    if (m_marks.empty())
        return;
    const int64_t mark = std::min(place / kMarkEach, static_cast<int64_t>(m_marks.size()) - 1);
    const std::string limits =
        " LIMIT " + std::to_string(most) + " OFFSET ?" + std::to_string(m_query.nextParameter() + 1);
    const auto statement = m_store.statement("SELECT rowid" + m_query.from("rowid>=" + m_query.nextPlaceholder()) +
                                             " ORDER BY rowid" + limits);
    const StatementRun run(*statement);
    bindQuery(*run);
    run->bind(m_query.nextParameter(), m_marks[static_cast<size_t>(mark)]);
    run->bind(m_query.nextParameter() + 1, place - mark * kMarkEach);
    while (run->step())
        numbers.push_back(run->integer(0));
}

// Rows added come behind all others, so they move no mark.
void CursorSource::learnMarks() {
    if (!m_marks.empty() && m_marksState == indexState())
        return;
    m_marks.clear();
    const auto statement = m_store.statement("SELECT rowid" + m_query.from() + " ORDER BY rowid");
    const StatementRun run(*statement);
    bindQuery(*run);
    for (int64_t place = 0; run->step(); ++place)
        if (place % kMarkEach == 0)
            m_marks.push_back(run->integer(0));
    m_marksState = indexState();
}

uint64_t CursorSource::indexState() const {
    return m_query.wholeTable() ? m_query.table->deleted : m_query.table->changed;
}

void CursorSource::rememberIndex(int64_t index) {
    m_index = index;
    m_indexState = indexState();
}

void CursorSource::rowChanged(bool wasFresh) {
    RowSource::rowChanged(wasFresh);
    if (!m_query.wholeTable() && m_indexState + 1 == m_query.table->changed)
        m_indexState = m_query.table->changed;
}

} // namespace discaro::db

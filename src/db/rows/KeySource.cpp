#include "db/rows/KeySource.h"

#include "base/RuntimeError.h"
#include "db/rows/RowOrder.h"

#include <algorithm>
#include <unordered_set>

namespace discaro::db {

KeySource::KeySource(Store& store, RowQuery query, Growth growth)
    : RowSource(store, std::move(query))
    , m_growth(growth) {
    collect();
}

void KeySource::append(Statement& statement) {
    while (statement.step())
        m_numbers.push_back(statement.integer(0));
}

void KeySource::collect() {
    if (ascending())
        collectAscending();
    else
        m_numbers = numbersInOrder(m_store, m_query);
    m_seenInserted = m_query.table->inserted;
    m_seenDeleted = m_query.table->deleted;
}

void KeySource::collectAscending() {
    const auto statement = m_store.statement("SELECT rowid" + m_query.from() + " ORDER BY rowid");
    const StatementRun run(*statement);
    bindQuery(*run);
    m_numbers.clear();
    append(*run);
}

void KeySource::follow() {
    if (m_growth == Growth::Fixed)
        return;
    if (m_seenDeleted != m_query.table->deleted)
        followDeletions();
    if (m_seenInserted == m_query.table->inserted)
        return;
    const auto statement =
        m_store.statement("SELECT rowid" + m_query.from("rowid>" + m_query.nextPlaceholder()) + " ORDER BY rowid");
    const StatementRun run(*statement);
    bindQuery(*run);
    run->bind(m_query.nextParameter(), m_numbers.empty() ? INT64_MIN : m_numbers.back());
    append(*run);
    m_seenInserted = m_query.table->inserted;
}

void KeySource::followDeletions() {
    collect();
    if (place() != Place::On)
        return;
    const auto here = std::ranges::lower_bound(m_numbers, number());
    m_index = static_cast<size_t>(here - m_numbers.begin());
    if (here == m_numbers.end() || *here != number())
        RowSource::rowDeleted();
}

void KeySource::standAt(size_t index) {
    m_index = index;
    m_inSequence = false;
    standUnread(m_numbers[index]);
}

void KeySource::standBehind(size_t index) {
    m_index = index;
    if (advanceInWindow() && number() == m_numbers[index])
        return;
    m_inSequence = true;
    standUnread(m_numbers[index]);
}

// The rows behind this one come along while the recordset goes through them in sequence.
void KeySource::readCurrent() {
    const size_t rows = m_inSequence ? readAhead() : 1;
    m_inSequence = false;
    if (rows == 1)
        stopReadingAhead();
    const size_t known = std::min(rows, m_numbers.size() - m_index);
    const int64_t wanted = number();
    if (gone() || !fill(std::span(m_numbers).subspan(m_index, known)))
        throw base::RuntimeError(base::ErrorNumber::RecordGone);
    stand(0);
    if (number() == wanted)
        return;
    standUnread(wanted);
    throw base::RuntimeError(base::ErrorNumber::RecordGone);
}

void KeySource::first() {
    follow();
    if (m_numbers.empty())
        return leave(Place::None);
    standAt(0);
}

void KeySource::last() {
    follow();
    if (m_numbers.empty())
        return leave(Place::None);
    standAt(m_numbers.size() - 1);
}

void KeySource::next() {
    if (place() == Place::Before)
        return first();
    requireRow();
    follow();
    const size_t following = gone() ? m_index : m_index + 1;
    if (following >= m_numbers.size())
        return leave(Place::After);
    standBehind(following);
}

void KeySource::previous() {
    if (place() == Place::After)
        return last();
    requireRow();
    follow();
    if (m_index == 0)
        return leave(Place::Before);
    standAt(m_index - 1);
}

void KeySource::moveTo(int64_t index) {
    if (index < 0 || index >= count())
        throw base::RuntimeError(base::ErrorNumber::NoCurrentRecord);
    if (place() == Place::On && index == this->index() + 1)
        return next();
    standAt(static_cast<size_t>(index));
}

bool KeySource::find(const Criterion& criterion) {
    follow();
    const auto statement =
        m_store.statement("SELECT rowid FROM " + quotedName(m_query.table->definition->name) + " WHERE " +
                          (criterion.where.empty() ? "1" : criterion.where) + " ORDER BY rowid");
    const StatementRun run(*statement);
    bindCriterion(*run, criterion);
    return ascending() ? findAscending(*run) : findInOrder(*run);
}

bool KeySource::findAscending(Statement& matches) {
    auto from = m_numbers.begin();
    while (matches.step()) {
        const int64_t number = matches.integer(0);
        from = std::lower_bound(from, m_numbers.end(), number);
        if (from == m_numbers.end())
            return false;
        if (*from == number) {
            standAt(static_cast<size_t>(from - m_numbers.begin()));
            return true;
        }
    }
    return false;
}

bool KeySource::findInOrder(Statement& matches) {
    std::unordered_set<int64_t> wanted;
    while (matches.step())
        wanted.insert(matches.integer(0));
    const auto found = wanted.empty()
                           ? m_numbers.end()
                           : std::ranges::find_if(m_numbers, [&](int64_t number) { return wanted.contains(number); });
    if (found == m_numbers.end())
        return false;
    standAt(static_cast<size_t>(found - m_numbers.begin()));
    return true;
}

int64_t KeySource::count() {
    follow();
    return static_cast<int64_t>(m_numbers.size());
}

int64_t KeySource::index() {
    follow();
    return place() == Place::On && !gone() ? static_cast<int64_t>(m_index) : -1;
}

void KeySource::numbersAt(int64_t place, int64_t most, std::vector<int64_t>& numbers) {
    const int64_t there = std::min(count() - place, most);
    if (there > 0)
        numbers.insert(numbers.end(), m_numbers.begin() + place, m_numbers.begin() + place + there);
}

void KeySource::rowInserted(int64_t number) {
    if (m_growth == Growth::Fixed)
        m_numbers.push_back(number);
}

void KeySource::rowDeleted() {
    RowSource::rowDeleted();
    m_numbers.erase(m_numbers.begin() + static_cast<std::ptrdiff_t>(m_index));
    // What others have deleted before is still to be followed.
    if (m_query.table->deleted == m_seenDeleted + 1)
        m_seenDeleted = m_query.table->deleted;
}

} // namespace discaro::db

#include "db/rows/RowPage.h"

#include "base/RuntimeError.h"

#include <algorithm>

namespace discaro::db {

namespace {

using base::ErrorNumber;
using base::RuntimeError;

// What a tall screen shows fits in half of it: whoever paints from any row of the middle on needs one page.
constexpr int64_t kPage = 256;
constexpr uint64_t kNeverRead = UINT64_MAX;

// Long texts are read once they are asked for.
uint64_t shortFields(const RecordLayout& layout) {
    uint64_t mask = 0;
    for (size_t field = 0; field < layout.size(); ++field)
        if (layout.definition.fields[field].type != FieldType::LongText)
            mask |= uint64_t{1} << field;
    return mask;
}

} // namespace

RowPage::RowPage(Store& store, RowSource& rows)
    : m_store(store)
    , m_source(rows)
    , m_window(rows.query().layout->size())
    , m_wanted(shortFields(*rows.query().layout))
    , m_state(kNeverRead) {}

bool RowPage::covers(int64_t place) const {
    return m_state == m_source.query().table->changed && place >= m_first &&
           place - m_first < static_cast<int64_t>(m_rows.size());
}

bool RowPage::holds(int64_t place, size_t field) const {
    return covers(place) && m_window.has(field);
}

const Cell& RowPage::cell(int64_t place, size_t field) {
    m_wanted |= uint64_t{1} << field;
    if (place >= 0 && !holds(place, field))
        read(std::max<int64_t>(place - kPage / 2, 0));
    if (place >= 0 && !covers(place))
        read(place); // long texts have cut the page short
    if (!covers(place))
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
    const auto row = m_rows[static_cast<size_t>(place - m_first)];
    if (!row)
        throw RuntimeError(ErrorNumber::RecordGone);
    return m_window.cell(*row, field);
}

void RowPage::read(int64_t first) {
    m_state = kNeverRead;
    m_first = first;
    m_rows.clear();
    m_window.clear(m_wanted);
    m_numbers.clear();
    m_source.numbersAt(first, kPage, m_numbers);
    const ReadSpan span(m_store);
    const auto statement = m_store.statement(m_source.query().layout->select + " WHERE rowid=?1");
    for (const int64_t number : m_numbers) {
        if (m_window.full(SIZE_MAX))
            break;
        const StatementRun run(*statement);
        run->bind(1, number);
        const bool there = run->step();
        m_rows.push_back(there ? std::optional(m_window.size()) : std::nullopt);
        if (there)
            m_window.append(*run);
    }
    m_state = m_source.query().table->changed;
}

} // namespace discaro::db

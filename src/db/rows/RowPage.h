#pragma once

#include "db/rows/RowSource.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace discaro::db {

// Rows of a recordset read by their places beside its current row, a page of them at a time.
class RowPage {
public:
    // Both must outlive it.
    RowPage(Store& store, RowSource& rows);

    // A cell of the row at a 0-based place, as it is stored now; its text lies in window(). Valid until the next call.
    // Throws NoCurrentRecord where there is no such place, RecordGone.
    const Cell& cell(int64_t place, size_t field);
    const RowWindow& window() const { return m_window; }

private:
    bool covers(int64_t place) const;
    bool holds(int64_t place, size_t field) const;
    void read(int64_t first);

    Store& m_store;
    RowSource& m_source;
    RowWindow m_window;
    uint64_t m_wanted; // the fields that come with a page
    uint64_t m_state;  // the table's changes when the page was read
    int64_t m_first = 0;
    std::vector<int64_t> m_numbers;
    std::vector<std::optional<size_t>> m_rows; // in the window, for each place of the page; none for a row that is gone
};

} // namespace discaro::db

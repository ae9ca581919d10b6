#pragma once

#include "db/pattern/FoldBuffer.h"
#include "db/sqlite/RowTaker.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// Row numbers with a text each, brought into the order of the texts (base::orderKey): null first, rows with equal texts
// by their number.
class TextSorter {
public:
    void add(int64_t number, const RowText& text);
    void sort();

    size_t size() const { return m_rows.size(); }
    // Of the row at a place.
    int64_t number(size_t place) const { return m_rows[place].number; }
    std::string_view key(size_t place) const { return keyOf(m_rows[place]); }
    std::vector<int64_t> numbers() const;

private:
    struct Row {
        uint64_t first; // the first bytes of the key as a number, which decides most comparisons
        int64_t number;
        size_t begin;
        uint32_t length;
        bool text;
    };

    std::string_view keyOf(const Row& row) const { return std::string_view(m_keys).substr(row.begin, row.length); }

    std::vector<Row> m_rows;
    std::string m_keys;
    FoldBuffer m_buffer;
};

} // namespace discaro::db

#pragma once

#include "db/sqlite/Statement.h"
#include "db/value/Value.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

struct TextPlace {
    uint32_t begin;
    uint32_t length;
};

// One stored value; text lies in the window that holds the cell.
struct Cell {
    union Content {
        int64_t integer = 0;
        double real;
        TextPlace text;
    };

    Statement::CellType type = Statement::CellType::Null;
    Content content;
};

// A few rows in memory: their numbers and the raw values of their fields, in buffers that are used again.
class RowWindow {
public:
    explicit RowWindow(size_t fields)
        : m_fields(fields) {}

    // Empties it, to hold some of the fields from now on: bit 0 for field 0.
    void clear(uint64_t fields);
    bool has(size_t field) const { return (m_read >> field & 1U) != 0; }
    // Takes over the statement's row: the row number in column 0, the fields behind it.
    void append(const Statement& statement);
    // The same in place of a row that the window has. The old text stays behind until clear.
    void replace(size_t row, const Statement& statement);

    size_t size() const { return m_numbers.size(); }
    // Whether enough has been read ahead.
    bool full(size_t rows) const { return size() >= rows || m_text.size() >= kTextLimit; }
    int64_t number(size_t row) const { return m_numbers[row]; }
    const Cell& cell(size_t row, size_t field) const { return m_cells[row * m_fields + field]; }
    std::string_view text(const Cell& cell) const {
        return std::string_view(m_text).substr(cell.content.text.begin, cell.content.text.length);
    }

private:
    static constexpr size_t kTextLimit = 1 << 20;

    void readCells(const Statement& statement, Cell* cells);
    Cell read(const Statement& statement, int column);

    size_t m_fields;
    uint64_t m_read = 0;
    std::vector<int64_t> m_numbers;
    std::vector<Cell> m_cells;
    std::string m_text;
};

} // namespace discaro::db

#include "db/engine/RowWindow.h"

namespace discaro::db {

void RowWindow::clear(uint64_t fields) {
    m_read = fields;
    m_numbers.clear();
    m_cells.clear();
    m_text.clear();
}

void RowWindow::append(const Statement& statement) {
    m_cells.resize(m_cells.size() + m_fields);
    readCells(statement, &m_cells[m_cells.size() - m_fields]);
    m_numbers.push_back(statement.integer(0));
}

void RowWindow::replace(size_t row, const Statement& statement) {
    readCells(statement, &m_cells[row * m_fields]);
}

void RowWindow::readCells(const Statement& statement, Cell* cells) {
    for (size_t field = 0; field < m_fields; ++field)
        if (has(field))
            cells[field] = read(statement, static_cast<int>(field) + 1);
}

Cell RowWindow::read(const Statement& statement, int column) {
    Cell cell;
    cell.type = statement.type(column);
    switch (cell.type) {
    case Statement::CellType::Null:
        break;
    case Statement::CellType::Integer:
        cell.content.integer = statement.integer(column);
        break;
    case Statement::CellType::Real:
        cell.content.real = statement.real(column);
        break;
    case Statement::CellType::Text: {
        const std::string_view text = statement.text(column);
        cell.content.text = {static_cast<uint32_t>(m_text.size()), static_cast<uint32_t>(text.size())};
        m_text += text;
        break;
    }
    }
    return cell;
}

} // namespace discaro::db

#include "db/rows/RowWriter.h"

#include "db/engine/Store.h"

#include <bit>

namespace discaro::db {

namespace {

constexpr size_t kMostUpdates = 32;

} // namespace

std::string RowWriter::insertSql(const std::string& number) const {
    std::string names;
    std::string values;
    const auto add = [&](const FieldDef& field, const std::string& value) {
        names.append(names.empty() ? "" : ",").append(quotedName(field.name));
        values.append(values.empty() ? "" : ",").append(value);
    };
    for (size_t field = 0; field < m_layout->size(); ++field)
        if (!isNumber(field))
            add(m_layout->definition.fields[field], "?" + std::to_string(field + 1));
    if (m_table.numberField >= 0)
        add(m_table.definition->fields[static_cast<size_t>(m_table.numberField)], number);
    return "INSERT INTO " + quotedName(m_layout->definition.name) + "(" + names + ") VALUES(" + values + ")";
}

bool RowWriter::isNumber(size_t field) const {
    return m_layout->columns[field] == m_table.numberField;
}

// Once a row stands behind all numbers ever given, the engine's own choice, the highest and one, is right for those
// that follow it, as long as nobody else can write and nothing is deleted.
Statement& RowWriter::insertStatement() {
    const bool plain = m_table.numberFree && m_store.connection().inTransaction();
    auto& statement = plain ? m_insert : m_insertNumbered;
    if (statement == nullptr)
        statement = m_store.prepare(insertSql(plain ? "NULL" : m_table.freeNumber));
    return *statement;
}

std::string RowWriter::updateSql(uint64_t mask) const {
    std::string assignments;
    for (uint64_t rest = mask; rest != 0; rest &= rest - 1) {
        const auto field = static_cast<size_t>(std::countr_zero(rest));
        assignments.append(assignments.empty() ? "" : ",")
            .append(quotedName(m_layout->definition.fields[field].name))
            .append("=?");
    }
    return "UPDATE " + quotedName(m_layout->definition.name) + " SET " + assignments + " WHERE rowid=?";
}

Statement& RowWriter::updateStatement(uint64_t mask) {
    if (const auto known = m_updates.find(mask); known != m_updates.end())
        return *known->second;
    if (m_updates.size() >= kMostUpdates)
        m_updates.clear();
    auto statement = m_store.prepare(updateSql(mask));
    return *m_updates.emplace(mask, std::move(statement)).first->second;
}

int64_t RowWriter::insert(const EditBuffer& row) {
    return m_store.write([&] {
        const StatementRun run(insertStatement());
        for (size_t field = 0; field < m_layout->size(); ++field)
            if (!isNumber(field))
                row.bind(field, *run, static_cast<int>(field) + 1);
        run->step();
        m_table.noteInsert();
        m_table.numberFree = true;
        return m_store.connection().lastRowNumber();
    });
}

bool RowWriter::update(int64_t number, const EditBuffer& row, uint64_t mask) {
    SaveGroup* const group = SaveGroup::current();
    if (group != nullptr && mask != 0 && !m_store.transactionOpen() && group->takes(m_store))
        return group->save(m_store, *this, number, row, mask);
    return write(number, row, mask);
}

bool RowWriter::write(int64_t number, const EditBuffer& row, uint64_t mask) {
    return m_store.write([&] {
        if (mask == 0)
            return true;
        const StatementRun run(updateStatement(mask));
        int parameter = 0;
        for (uint64_t rest = mask; rest != 0; rest &= rest - 1)
            row.bind(static_cast<size_t>(std::countr_zero(rest)), *run, ++parameter);
        run->bind(++parameter, number);
        run->step();
        if (m_store.connection().changedRows() == 0)
            return false;
        m_table.noteChange();
        return true;
    });
}

bool RowWriter::remove(int64_t number) {
    return m_store.write([&] {
        const auto statement =
            m_store.statement("DELETE FROM " + quotedName(m_layout->definition.name) + " WHERE rowid=?");
        const StatementRun run(*statement);
        run->bind(1, number);
        run->step();
        const bool found = m_store.connection().changedRows() > 0;
        if (found)
            m_store.noteAll();
        return found;
    });
}

} // namespace discaro::db

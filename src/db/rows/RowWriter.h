#pragma once

#include "db/engine/EditBuffer.h"
#include "db/engine/SaveGroup.h"
#include "db/schema/Table.h"
#include "db/sqlite/Statement.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

namespace discaro::db {

class Store;

// Writes rows of one layout with statements that stay prepared. Every write goes through the store's guard.
class RowWriter final : public RowSaver {
public:
    // Store and table must outlive it.
    RowWriter(Store& store, Table& table, std::shared_ptr<const RecordLayout> layout)
        : m_store(store)
        , m_table(table)
        , m_layout(std::move(layout)) {}

    // The new row's number.
    int64_t insert(const EditBuffer& row);
    // Writes the fields of the mask (bit 0 for field 0), none other, within the group of saves that is in force. False
    // when the row is gone.
    bool update(int64_t number, const EditBuffer& row, uint64_t mask);
    // The same whether or not there is a group.
    bool write(int64_t number, const EditBuffer& row, uint64_t mask) override;
    // Deletes with cascades. False when the row is gone.
    bool remove(int64_t number);

private:
    std::string insertSql(const std::string& number) const;
    Statement& insertStatement();
    bool isNumber(size_t field) const;
    std::string updateSql(uint64_t mask) const;
    Statement& updateStatement(uint64_t mask);

    Store& m_store;
    Table& m_table;
    std::shared_ptr<const RecordLayout> m_layout;
    std::shared_ptr<Statement> m_insert;         // the engine chooses the number
    std::shared_ptr<Statement> m_insertNumbered; // for a table whose numbers are never given again
    std::unordered_map<uint64_t, std::shared_ptr<Statement>> m_updates;
};

} // namespace discaro::db

#pragma once

#include "db/schema/Definitions.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace discaro::db {

class RowWriter;

// The fields of a recordset: what they are called and which columns of the table they are.
struct RecordLayout {
    RecordLayout(TableDef shown, std::vector<int> positions);
    RecordLayout(const RecordLayout&) = delete;
    RecordLayout& operator=(const RecordLayout&) = delete;

    const TableDef definition;      // the table's name, the fields in the recordset's order
    const std::vector<int> columns; // their positions in the table; empty for an aggregate
    const std::string select;       // SELECT rowid and the fields FROM the table; "" for an aggregate

    size_t size() const { return definition.fields.size(); }
};

// The numbers of all rows of a table in ascending order of a text field, as they stood in a state of the table.
struct OrderedRows {
    int field = -1; // none yet
    uint64_t state = 0;
    std::vector<int64_t> numbers;
};

// A table of an open file, with what happened to its rows since the file was opened. The counts only grow; whoever
// remembers something of the rows compares them to see whether it still holds.
struct Table {
    const TableDef* definition = nullptr; // in the store's schema
    int numberField = -1;                 // the field that the database fills itself, -1 when there is none
    std::string freeNumber;  // SQL: the number for a new row, or null where the engine's own choice is right
    bool numberFree = false; // within a transaction: the engine's own choice is right for the next row
    std::shared_ptr<const RecordLayout> layout;
    std::shared_ptr<RowWriter> writer; // of the whole layout, once a row is to be written

    uint64_t inserted = 0;
    uint64_t deleted = 0;
    uint64_t changed = 0; // changes and deletions
    std::optional<int64_t> count;
    OrderedRows ordered; // the last order that a search has needed, 8 bytes a row

    uint64_t state() const { return inserted + changed; }
    void noteInsert();
    void noteChange() { ++changed; }
    // Anything may have happened.
    void noteAll();
};

// The layout with all fields of a table.
std::shared_ptr<const RecordLayout> wholeLayout(const TableDef& table);
// The layout with some of them, at the positions given.
std::shared_ptr<const RecordLayout> partLayout(const TableDef& table, std::vector<int> positions);

} // namespace discaro::db

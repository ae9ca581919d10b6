#pragma once

#include "db/engine/EditBuffer.h"
#include "db/schema/Definitions.h"
#include "db/value/Value.h"

#include <memory>

namespace discaro::db {

class RowSource;
struct RecordLayout;

// The row that the fields of a recordset show and set: the current one of its rows, or the one that is being changed or
// added.
struct CurrentRow {
    explicit CurrentRow(std::unique_ptr<RowSource> source);
    ~CurrentRow();
    CurrentRow(const CurrentRow&) = delete;
    CurrentRow& operator=(const CurrentRow&) = delete;

    // Drops the edit and the rows; what the fields are called stays known.
    void close();

    const FieldDef& definition(int position) const;
    // As Field::Value and its assignments promise.
    Value value(int position) const;
    template <typename Given>
    void assign(int position, const Given& given);

    std::unique_ptr<RowSource> rows; // null when the recordset is closed
    std::shared_ptr<const RecordLayout> layout;
    EditBuffer edit;
};

} // namespace discaro::db

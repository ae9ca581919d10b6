#pragma once

#include "db/engine/RowWindow.h"
#include "db/schema/Definitions.h"
#include "db/sqlite/Statement.h"
#include "db/value/Value.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// The row being added or changed: which fields have been set, and to what. Values are converted to what the field
// holds as they come in; its buffers are used again for the next row.
class EditBuffer {
public:
    enum class Kind { None, Add, Change };

    // What a field was set to.
    struct Slot {
        Statement::CellType type = Statement::CellType::Null;
        int64_t integer = 0;
        double real = 0;
        std::string text;
    };

    void begin(Kind kind, size_t fields);
    void end() { m_kind = Kind::None; }
    Kind kind() const { return m_kind; }
    bool active() const { return m_kind != Kind::None; }

    // The setters throw DataTypeConversion and then leave the field as it was.
    void setNull(size_t field);
    void set(size_t field, FieldType type, bool value);
    void set(size_t field, FieldType type, int64_t number);
    void set(size_t field, FieldType type, double number);
    void set(size_t field, FieldType type, std::string_view text);
    void set(size_t field, FieldType type, const Value& value);

    bool assigned(size_t field) const { return (m_assigned >> field & 1U) != 0; }
    // The fields set, bit 0 for field 0.
    uint64_t mask() const { return m_assigned; }
    // What a field was set to; null when it was not.
    Value value(size_t field, FieldType type) const;
    // Whether a field's value is what the window's cell holds already.
    bool equals(size_t field, const RowWindow& window, const Cell& cell) const;
    // Binds without copying: this buffer must stay as it is until the statement is reset.
    void bind(size_t field, Statement& statement, int parameter) const;

    // What the fields of a mask were set to, and the same put into a buffer again.
    std::vector<Slot> values(uint64_t mask) const;
    void put(uint64_t mask, std::span<const Slot> values);

private:
    Slot& assign(size_t field, Statement::CellType type);
    void setInteger(size_t field, int64_t number);
    void setReal(size_t field, double number);
    void setText(size_t field, std::string_view text);

    Kind m_kind = Kind::None;
    uint64_t m_assigned = 0;
    std::vector<Slot> m_slots;
};

// A stored value as the field's type shows it.
Value valueOf(const RowWindow& window, const Cell& cell, FieldType type);

} // namespace discaro::db

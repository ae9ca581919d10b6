#pragma once

#include "db/schema/Definitions.h"
#include "db/value/Value.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace discaro::db {

class Recordset;
struct CurrentRow;

// One field of a recordset's current row, or of the row being edited or added while an edit is in
// progress. A Field is a light handle that belongs to its recordset and dies with it; it follows
// the recordset from row to row.
//
// Reading. Value gives what an edit in progress has set, else the stored value of the current row,
// read afresh when something has changed. In a row begun with AddNew a field not set yet is null.
// Throws NoCurrentRecord where there is no row, RecordGone when another handle deleted the row,
// HandleClosed when the recordset is closed.
//
// Writing, the only way that writes go: assignment between AddNew or Edit and Update. It throws
// NoEditInProgress outside, NotAllowed for a recordset that can't be changed and for a number that
// the database gives itself, and DataTypeConversion (3421) for a value that the field can't hold;
// the field then keeps what it had.
//   Integer  takes whole numbers, other numbers rounded half to even, and numeric text; 64 bits
//   Double   takes numbers and numeric text
//   Text, LongText
//            take anything, as textOf writes it. Bytes that are not UTF-8 are read as text without a
//            stated encoding; a NUL inside the text survives
//   Boolean  takes true and false, numbers (not 0 is true), "true" and "false" in any case
//   Date     takes and gives an existing date as the text "MM/dd/yy", with " hh:mm:ss AM" or "PM" behind it where it
//            has a time; takes "YYYY-MM-DD" and "YYYY-MM-DD HH:MM:SS" too, the forms that are stored and that
//            conditions compare. Years are 1980 to 2079; others are given with four digits, which are taken as well
// Null is allowed everywhere. Numeric text is the whole text, blanks at both ends apart, with "."
// as its point.
class Field {
public:
    Field(const Field&) = default;

    // Copies the other field's value, not the handle.
    Field& operator=(const Field& other);
    Field& operator=(const db::Value& value);
    Field& operator=(std::string_view text);
    Field& operator=(const std::string& text) { return *this = std::string_view(text); }
    Field& operator=(const char* text) { return *this = std::string_view(text); }
    Field& operator=(std::nullptr_t);
    template <std::integral Number>
    Field& operator=(Number number);
    template <std::floating_point Number>
    Field& operator=(Number number) {
        setDouble(static_cast<double>(number));
        return *this;
    }

    // The name as the table declares it, or as an aggregate's "As" gives it.
    const std::string& Name() const;
    FieldType Type() const;
    db::Value Value() const;

    // The value as text and as a number by textOf and numberOf.
    std::string Text() const { return textOf(Value()); }
    double Number() const { return numberOf(Value()); }
    bool IsNull() const { return isNull(Value()); }

private:
    friend class Recordset;
    Field(CurrentRow& row, int position)
        : m_row(&row)
        , m_position(position) {}

    void setBoolean(bool value);
    void setInteger(int64_t number);
    void setDouble(double number);

    CurrentRow* m_row;
    int m_position;
};

template <std::integral Whole>
Field& Field::operator=(Whole number) {
    if constexpr (std::same_as<Whole, bool>)
        setBoolean(number);
    else if (std::in_range<int64_t>(number))
        setInteger(static_cast<int64_t>(number));
    else
        setDouble(static_cast<double>(number));
    return *this;
}

} // namespace discaro::db

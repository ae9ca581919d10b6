#include "db/engine/EditBuffer.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "db/value/Conversion.h"

#include <bit>
#include <cmath>

namespace discaro::db {

namespace {

using CellType = Statement::CellType;

[[noreturn]] void refuse(std::string_view what) {
    throw base::RuntimeError(base::ErrorNumber::DataTypeConversion, what);
}

bool holdsText(FieldType type) {
    return type == FieldType::Text || type == FieldType::LongText;
}

Value integerValue(int64_t number, FieldType type) {
    if (type == FieldType::Boolean)
        return number != 0;
    if (type == FieldType::Double)
        return static_cast<double>(number);
    return number;
}

} // namespace

void EditBuffer::begin(Kind kind, size_t fields) {
    m_slots.resize(fields);
    m_assigned = 0;
    m_kind = kind;
}

EditBuffer::Slot& EditBuffer::assign(size_t field, CellType type) {
    m_assigned |= uint64_t{1} << field;
    m_slots[field].type = type;
    return m_slots[field];
}

std::vector<EditBuffer::Slot> EditBuffer::values(uint64_t mask) const {
    std::vector<Slot> values;
    values.reserve(static_cast<size_t>(std::popcount(mask)));
    for (uint64_t rest = mask; rest != 0; rest &= rest - 1)
        values.push_back(m_slots[static_cast<size_t>(std::countr_zero(rest))]);
    return values;
}

void EditBuffer::put(uint64_t mask, std::span<const Slot> values) {
    m_slots.resize(static_cast<size_t>(std::bit_width(mask)));
    m_assigned = mask;
    auto value = values.begin();
    for (uint64_t rest = mask; rest != 0; rest &= rest - 1)
        m_slots[static_cast<size_t>(std::countr_zero(rest))] = *value++;
}

void EditBuffer::setNull(size_t field) {
    assign(field, CellType::Null);
}

void EditBuffer::setInteger(size_t field, int64_t number) {
    assign(field, CellType::Integer).integer = number;
}

void EditBuffer::setReal(size_t field, double number) {
    if (!std::isfinite(number))
        refuse("the number is too large");
    assign(field, CellType::Real).real = number;
}

void EditBuffer::setText(size_t field, std::string_view text) {
    if (base::isValidUtf8(text))
        assign(field, CellType::Text).text.assign(text);
    else
        assign(field, CellType::Text).text = base::decodeUnlabelled(text);
}

void EditBuffer::set(size_t field, FieldType type, bool value) {
    if (type == FieldType::Boolean)
        setInteger(field, value ? 1 : 0);
    else if (holdsText(type))
        setText(field, textOf(value));
    else
        refuse("the field does not hold true and false");
}

void EditBuffer::set(size_t field, FieldType type, int64_t number) {
    if (type == FieldType::Integer)
        setInteger(field, number);
    else if (type == FieldType::Double)
        setReal(field, static_cast<double>(number));
    else if (type == FieldType::Boolean)
        setInteger(field, number != 0 ? 1 : 0);
    else if (holdsText(type))
        setText(field, textOf(number));
    else
        refuse("the number is not a date");
}

void EditBuffer::set(size_t field, FieldType type, double number) {
    if (type == FieldType::Double)
        setReal(field, number);
    else if (type == FieldType::Integer)
        setInteger(field, integerFrom(number));
    else if (type == FieldType::Boolean)
        setInteger(field, number != 0 ? 1 : 0);
    else if (holdsText(type))
        setText(field, textOf(number));
    else
        refuse("the number is not a date");
}

void EditBuffer::set(size_t field, FieldType type, std::string_view text) {
    switch (type) {
    case FieldType::Text:
    case FieldType::LongText:
        return setText(field, text);
    case FieldType::Integer:
        return setInteger(field, integerFrom(text));
    case FieldType::Double:
        return setReal(field, doubleFrom(text));
    case FieldType::Boolean:
        return setInteger(field, booleanFrom(text) ? 1 : 0);
    case FieldType::Date:
        return setText(field, dateFrom(text));
    }
}

void EditBuffer::set(size_t field, FieldType type, const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        set(field, type, std::string_view(*text));
    else if (const auto* integer = std::get_if<int64_t>(&value))
        set(field, type, *integer);
    else if (const auto* real = std::get_if<double>(&value))
        set(field, type, *real);
    else if (const auto* boolean = std::get_if<bool>(&value))
        set(field, type, *boolean);
    else
        setNull(field);
}

Value EditBuffer::value(size_t field, FieldType type) const {
    if (!assigned(field))
        return {};
    const Slot& slot = m_slots[field];
    switch (slot.type) {
    case CellType::Integer:
        return integerValue(slot.integer, type);
    case CellType::Real:
        return slot.real;
    case CellType::Text:
        return type == FieldType::Date ? shortDate(slot.text) : slot.text;
    case CellType::Null:
        break;
    }
    return {};
}

bool EditBuffer::equals(size_t field, const RowWindow& window, const Cell& cell) const {
    const Slot& slot = m_slots[field];
    if (slot.type != cell.type)
        return false;
    switch (slot.type) {
    case CellType::Integer:
        return slot.integer == cell.content.integer;
    case CellType::Real:
        return slot.real == cell.content.real;
    case CellType::Text:
        return slot.text == window.text(cell);
    case CellType::Null:
        break;
    }
    return true;
}

void EditBuffer::bind(size_t field, Statement& statement, int parameter) const {
    if (!assigned(field))
        return statement.bindNull(parameter);
    const Slot& slot = m_slots[field];
    switch (slot.type) {
    case CellType::Integer:
        return statement.bind(parameter, slot.integer);
    case CellType::Real:
        return statement.bind(parameter, slot.real);
    case CellType::Text:
        return statement.bind(parameter, std::string_view(slot.text));
    case CellType::Null:
        return statement.bindNull(parameter);
    }
}

Value valueOf(const RowWindow& window, const Cell& cell, FieldType type) {
    switch (cell.type) {
    case CellType::Integer:
        return integerValue(cell.content.integer, type);
    case CellType::Real:
        // What an integer column can't hold the engine stores as a real number.
        if (type == FieldType::Integer)
            return integerFrom(cell.content.real);
        return cell.content.real;
    case CellType::Text:
        return type == FieldType::Date ? shortDate(window.text(cell)) : std::string(window.text(cell));
    case CellType::Null:
        break;
    }
    return {};
}

} // namespace discaro::db

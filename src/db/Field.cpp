#include "db/Field.h"

#include "db/rows/CurrentRow.h"

namespace discaro::db {

Field& Field::operator=(const Field& other) {
    if (this != &other)
        *this = other.Value();
    return *this;
}

Field& Field::operator=(const db::Value& value) {
    m_row->assign(m_position, value);
    return *this;
}

Field& Field::operator=(std::string_view text) {
    m_row->assign(m_position, text);
    return *this;
}

Field& Field::operator=(std::nullptr_t) {
    return *this = db::Value();
}

void Field::setBoolean(bool value) {
    m_row->assign(m_position, value);
}

void Field::setInteger(int64_t number) {
    m_row->assign(m_position, number);
}

void Field::setDouble(double number) {
    m_row->assign(m_position, number);
}

const std::string& Field::Name() const {
    return m_row->definition(m_position).name;
}

FieldType Field::Type() const {
    return m_row->definition(m_position).type;
}

db::Value Field::Value() const {
    return m_row->value(m_position);
}

} // namespace discaro::db

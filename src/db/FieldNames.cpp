#include "db/FieldNames.h"

#include "base/Text.h"

namespace discaro::db {

FieldNames::FieldNames(const TableDef& table)
    : m_table(table) {
    m_slots.fill(-1);
    for (size_t position = 0; position < table.fields.size(); ++position) {
        size_t slot = slotOf(table.fields[position].name);
        while (m_slots[slot] >= 0)
            slot = (slot + 1) % kSlots;
        m_slots[slot] = static_cast<int8_t>(position);
    }
}

// Bit 5 is all that tells capitals from small letters, so it is left out of every character.
size_t FieldNames::slotOf(std::string_view name) {
    uint32_t hash = static_cast<uint32_t>(name.size());
    for (const char c : name)
        hash = hash * 31 + (static_cast<unsigned char>(c) & 0xDFU);
    return (hash ^ (hash >> 7) ^ (hash >> 14)) % kSlots;
}

int FieldNames::find(std::string_view name) const {
    for (size_t slot = slotOf(name); m_slots[slot] >= 0; slot = (slot + 1) % kSlots)
        if (base::equalAscii(m_table.fields[static_cast<size_t>(m_slots[slot])].name, name))
            return m_slots[slot];
    return -1;
}

} // namespace discaro::db

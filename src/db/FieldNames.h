#pragma once

#include "db/Schema.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace discaro::db {

// Finds a field's position by its name, whatever the capitals, without looking at all fields.
class FieldNames {
public:
    // The table must have at most kMaxFields fields and must outlive this.
    explicit FieldNames(const TableDef& table);

    // -1 when there is none of that name.
    int find(std::string_view name) const;

    static constexpr size_t kMaxFields = 64;

private:
    static constexpr size_t kSlots = 128;

    static size_t slotOf(std::string_view name);

    const TableDef& m_table;
    std::array<int8_t, kSlots> m_slots; // position of a field, -1 where free
};

} // namespace discaro::db

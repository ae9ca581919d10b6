#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// Integer holds 64 bits. LongText is text without a width.
enum class FieldType { Integer, Double, Text, LongText, Boolean, Date };

// Whether fields of this type are compared and ordered as texts, without regard to case.
bool isText(FieldType type);

// Of a table or a recordset: a set of fields is 64 bits.
inline constexpr size_t kMostFields = 64;

struct FieldDef {
    std::string name;
    FieldType type;
    bool ascii = false; // a text that whoever fills it composes of ASCII alone
};

// A table with its fields in the order of their positions. Names compare without regard to ASCII
// case.
struct TableDef {
    std::string name;
    std::vector<FieldDef> fields;

    // The position of the field, -1 when the table has none of that name.
    int find(std::string_view name) const;
};

// A part of an order.
struct SortTerm {
    int field = 0; // its position in the table
    bool descending = false;
    bool operator==(const SortTerm&) const = default;
};

struct Schema {
    std::vector<TableDef> tables;

    // The table of that name, null when there is none. Valid as long as `tables` is not changed.
    const TableDef* find(std::string_view name) const;
};

// A name of the schema as SQL writes it: in double quotes.
std::string quotedName(std::string_view name);

} // namespace discaro::db

#pragma once

#include "db/engine/Store.h"
#include "db/rows/RowSource.h"
#include "db/rows/TextSorter.h"
#include "db/sqlite/RowTaker.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// At least the number of a table's rows, as far as memory is worth reserving for them: what is not used costs nothing.
size_t mostRows(Store& store, const Table& table);

// Puts the rows of a query into the order of one text field by walking the index on that field. The index has plain
// texts in their order (RowText); the others are taken out, sorted, and put between them.
class IndexWalk {
public:
    // `walked` is the query without an order, its condition one of the field and the row number alone.
    IndexWalk(Store& store, const RowQuery& walked, std::string_view field);

    // Whether there is such an index and the engine would use it. Holds as long as the lock.
    bool possible();

    // The numbers of the rows in ascending order of the field.
    std::vector<int64_t> numbers();

private:
    class Collector;
    class Merger;

    std::string sql(std::string_view further) const;
    std::string sqlFrom() const;
    // Walks from a text on, from the beginning without one.
    // Returns whether the taker has ended it.
    bool walk(RowTaker& taker, std::optional<std::string_view> from);
    std::vector<int64_t> merged(Collector& collected);

    Store& m_store;
    const RowQuery& m_query;
    std::string m_field; // quoted
};

} // namespace discaro::db

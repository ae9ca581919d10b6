#pragma once

#include "db/engine/Store.h"
#include "db/rows/RowSource.h"

#include <cstdint>
#include <vector>

namespace discaro::db {

// The numbers of the rows of a query with an order, in that order; equal ones by their number. Text goes by
// base::orderKey, null first; descending is ascending turned round.
//
// The index on the field to order by is walked on its own where the condition touches nothing but that field and the
// row number. Else the condition comes first, through an index where a search in one is known to be narrow, in one pass
// over the table otherwise; then few rows are sorted, and many are picked, their numbers kept as bits, from the order
// of all rows, which the table remembers until one changes. So no row is fetched through an index of many rows.
std::vector<int64_t> numbersInOrder(Store& store, const RowQuery& query);

} // namespace discaro::db

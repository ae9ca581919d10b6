#include "db/rows/OpenRows.h"

#include "db/rows/CursorSource.h"
#include "db/rows/KeySource.h"

namespace discaro::db {

std::unique_ptr<RowSource> openRows(Store& store, RowQuery query, bool snapshot) {
    store.noteOthers();
    if (snapshot || !query.order.empty())
        return std::make_unique<KeySource>(store, std::move(query), KeySource::Growth::Fixed);
    if (!query.wholeTable() && store.plan(query.layout->select + query.filter() + " ORDER BY rowid").sorts)
        return std::make_unique<KeySource>(store, std::move(query), KeySource::Growth::Follows);
    return std::make_unique<CursorSource>(store, std::move(query));
}

} // namespace discaro::db

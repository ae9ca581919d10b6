#pragma once

#include "db/rows/RowSource.h"

#include <memory>

namespace discaro::db {

// The source that serves a query over a table best. That of a snapshot holds the row numbers of now.
std::unique_ptr<RowSource> openRows(Store& store, RowQuery query, bool snapshot);

} // namespace discaro::db

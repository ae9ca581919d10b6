#pragma once

#include "db/DataSource.h"
#include "db/Database.h"
#include "db/Recordset.h"

namespace discaro::catalogue {

// Counts the catalogue anew into the master row and saves it. The size is null over no sizes, and the highest number
// handed out stays as it is.
void countIntoMaster(db::DataSource& master, db::Database& catalogue);

// Gives the current row of a recordset over Directories its subtree totals: what stands directly in it plus one
// aggregate query over all directories beneath it, and saves the row. A sum of exactly 1 is left out, as is none.
// Each statement that fails is passed over; without a catalogue the query is one of them.
void rollUpCurrentDirectory(db::Database* catalogue, db::Recordset& directories);

} // namespace discaro::catalogue

#pragma once

#include "db/Database.h"
#include "db/Recordset.h"
#include "db/value/Value.h"

namespace discaro::catalogue {

// The catalogue-wide counters of the master row.
struct MasterTotals {
    db::Value directories;
    db::Value files;
    db::Value kilobytes; // sum over all files; null when no file has a size
    db::Value discs;
};

// The sum of all files' sizes in kilobytes; null over no sizes.
db::Value totalFileSize(db::Database& catalogue);

// Writes the four counters into the master row, which must be under Edit.
void writeMasterTotals(db::Recordset& master, const MasterTotals& totals);

// Gives the current row of a recordset over Directories its subtree totals: what stands directly in it plus one
// aggregate query over all directories beneath it, and saves the row. A sum of exactly 1 is left out, as is none.
// Each statement that fails is passed over; without a catalogue the query is one of them.
void rollUpCurrentDirectory(db::Database* catalogue, db::Recordset& directories);

} // namespace discaro::catalogue

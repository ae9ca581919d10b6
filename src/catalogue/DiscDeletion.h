#pragma once

#include "catalogue/Discs.h"
#include "db/DataSource.h"

#include <cstdint>
#include <string>

namespace discaro::catalogue {

// The value of a fact of the current row of a recordset over Drive, as stored. What can't be read is empty.
std::string factValue(const DiscFact& fact, db::Recordset& discs);

// What the user is asked before the disc of that name goes.
std::string deletionQuestion(const std::string& preferredName);

// Deletes the current disc with its directories and files in a transaction that stays open, and moves on to the
// next disc, from the last one to the first.
void deleteCurrentDisc(db::Recordset& discs);

// Deletes the program tags of a disc, through a handle of its own.
void deleteTagsOfDisc(int64_t discNumber);

// Counts the catalogue anew into the master row and saves it. The highest number handed out stays as it is.
void RefreshMasterTotals(db::DataSource& master);

} // namespace discaro::catalogue

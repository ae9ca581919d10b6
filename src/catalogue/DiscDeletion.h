#pragma once

#include "db/DataSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::catalogue {

// One line of a disc's details: a picture's key (empty for none), what it is, its value.
struct DiscFact {
    std::string_view icon;
    std::string_view text;
    std::string value;
};

// The details of the current row of a recordset over Drive, in the order shown. What can't be read is empty.
std::vector<DiscFact> discFacts(db::Recordset& discs);

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

#pragma once

#include "catalogue/Texts.h"
#include "db/Recordset.h"

#include <span>
#include <string>
#include <string_view>

// What several windows say of a disc.
namespace discaro::catalogue {

// The criterion by which a data source finds the row of a disc, a directory or a file. The number stands in it as it
// is: one with a quotation mark makes a criterion that the store refuses.
std::string rowCondition(std::string_view number);

// That the disc on which the recordset stands has the preferred name which the user would like to give to another.
// Told under kDuplicateNameTitle. Throws as the reading of a field does.
std::string duplicateNameMessage(db::Recordset& discs);

// One line of a disc's facts.
struct DiscFact {
    std::string_view icon;  // the key of its picture, empty for none
    std::string_view text;  // what it is
    std::string_view field; // of Drive, empty for a line without a value
    bool whole = false;     // a number that is shown without its fraction where there is room for little
    std::string_view unit = {};
};

// The facts in the order shown.
std::span<const DiscFact> discFacts();

} // namespace discaro::catalogue

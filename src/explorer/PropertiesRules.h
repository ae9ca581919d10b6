#pragma once

#include "db/Recordset.h"

#include <functional>
#include <string>

// What the properties windows do that needs no window.
namespace discaro::explorer {

// A disc's preferred name as its properties window has it.
struct NameChange {
    std::string disc;    // disc number
    std::string opening; // the name when the window opened
    std::string wanted;  // the name in the box
};

enum class NameVerdict {
    Same,  // the name from the opening, case included
    Free,  // no later disc has it
    Taken, // a later disc has it
};

// Judges a name over the rows of `Drive`. The discs compared are those behind the current row, up
// to the end, by exact text; a name that an earlier disc has goes unnoticed. `tell` gets the
// message while the recordset stands on the disc that has the name.
//
// Unless the verdict is Same the recordset has moved and stands on the disc again, where it can be
// found; NoMatch tells. Errors of the recordset pass through: NoCurrentRecord when it stands on no
// row, and the store's.
NameVerdict judgeName(db::Recordset& discs, const NameChange& change,
                      const std::function<void(const std::string& message)>& tell);

} // namespace discaro::explorer

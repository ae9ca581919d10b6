#pragma once

#include "db/Database.h"

#include <string>
#include <string_view>
#include <vector>

namespace discaro::explorer {

struct Disc {
    std::string name;   // the name that the user knows it by
    std::string number; // decimal
};

// The discs of the catalogue in the order in which it holds them, as far as they can be read. Throws as
// db::Database::OpenRecordset does, and when another program locks the catalogue on the way.
std::vector<Disc> readDiscs(db::Database& catalogue);

// A disc's line in the list of discs.
std::string discLine(std::string_view name, std::string_view number);

} // namespace discaro::explorer

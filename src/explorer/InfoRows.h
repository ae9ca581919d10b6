#pragma once

#include "db/DataSource.h"

#include <string>
#include <vector>

namespace discaro::explorer {

// One fact of a pane: a picture's key (empty: none), what it is, and its value.
struct InfoRow {
    std::string icon;
    std::string text;
    std::string value;
};

// The facts of the disc, and of the directory, that the source stands on. A value that can't be read is empty; so are
// all where the source stands on no row.
std::vector<InfoRow> discInfo(const db::DataSource& discs);
std::vector<InfoRow> directoryInfo(const db::DataSource& directories);

} // namespace discaro::explorer

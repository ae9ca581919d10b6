#pragma once

#include "db/DataSource.h"

#include <string>

// What the explorer tells the windows that tag programs and simulate directories, in the shared variables. The sources
// stand on the disc and on the directory; a field that can't be read leaves its variable as it was.
namespace discaro::explorer {

// A file's row of the listing.
struct TaggedFile {
    std::string number;
    std::string name;
    std::string size; // as the listing shows it
};

void handOverFile(const TaggedFile& file, const db::DataSource& discs, const db::DataSource& directories);
void handOverDirectory(const db::DataSource& discs, const db::DataSource& directories);
void handOverDisc(const db::DataSource& discs);

// discName is the disc's line in the list of discs.
void simulateDirectory(const db::DataSource& directories, const std::string& discName);

} // namespace discaro::explorer

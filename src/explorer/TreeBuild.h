#pragma once

#include "db/Database.h"

#include <string>
#include <string_view>

namespace discaro::explorer {

// One node that a row of the catalogue gives.
struct TreeRow {
    std::string parent; // key of the node above
    std::string key;
    std::string text;
};

// Where the nodes go.
class TreeSink {
public:
    virtual ~TreeSink() = default;

    // What the first node says of the rows, told once before they come.
    virtual void nameFirst(std::string_view text) = 0;
    // Adds a node below the one with the parent's key; adds nothing when there is none, or when the key is in use.
    virtual void add(const TreeRow& row) = 0;
    // How far the rows have been read, 0 to 100; told before each.
    virtual void progress(double percent) = 0;
    // The row is done. False ends the build.
    virtual bool rowDone() { return true; }
};

// All directories of one disc, each below its parent, in one pass over the rows. A directory whose parent is missing or
// comes later is left out, and all below it with it. Nothing is thrown: a row that can't be read is left out, and the
// build ends where the rows can't be moved through, or when the catalogue is locked.
void buildDisc(db::Recordset& directories, TreeSink& sink);

// The root directory of every disc under the disc's name, below the first node. The rows are those of root
// directories; the names are read from the catalogue, and one that can't be read leaves the node without one.
void buildAllContents(db::Recordset& roots, db::Database& catalogue, TreeSink& sink);

} // namespace discaro::explorer

#pragma once

#include "db/sqlite/Connection.h"
#include "scanner/core/ScanRig.h"
#include "support/FaultVfs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace discaro::test {

// Everything that the catalogue file holds, as text, read by a connection of its own after what the journal restores;
// checks the file's integrity.
std::string wholeCatalogue();

// A scan rig on a file layer that can fail. Its catalogue holds one disc, number 1; the next one is in the drive.
class StoreRig : public testing::Test {
protected:
    StoreRig();

    enum class Cache { Small, Usual };

    // The catalogue as it was at first, open in the data sources. With a small cache changed pages reach the file
    // all along, else at the commit.
    void putBack(Cache cache);
    void closeAll();
    // What the catalogue holds now is what putBack brings back.
    void keepAsFirst();

    // What the box said when the last scan could not be saved; empty when it said nothing.
    std::string toldReason() const;

    static scanner::ScanOptions action(const char* errorAction);

    FaultVfs layer; // there before the rig's catalogue and after it
    ScanRig rig;
    std::string before; // the whole catalogue at first

private:
    static std::filesystem::path untouched();
};

} // namespace discaro::test

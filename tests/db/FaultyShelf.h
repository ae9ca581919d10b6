#pragma once

#include "db/Shelf.h"
#include "db/engine/Store.h"
#include "support/FaultVfs.h"

#include <filesystem>
#include <memory>
#include <string>

namespace discaro::db::test {

// A shelf on a disk that can fail. Its file can be put back as it was.
class FaultyShelf : public Shelf {
protected:
    std::filesystem::path untouched() const { return folder() / "untouched"; }
    // What the file holds now is what putBack brings back.
    void keepAsFirst() const { std::filesystem::copy_file(path(), untouched()); }
    void putBack() const {
        std::filesystem::remove(path());
        std::filesystem::copy_file(untouched(), path());
    }

    // The discs, with so small a cache that changed pages reach the file before the commit.
    std::unique_ptr<DataSource> source() const {
        auto opened = std::make_unique<DataSource>();
        opened->SetDatabaseName(path());
        opened->SetRecordSource("Discs");
        opened->Refresh();
        opened->Database()->store()->connection().execute("PRAGMA cache_size=3");
        return opened;
    }

    static void add(Recordset& discs, int number) {
        discs.AddNew();
        discs("id number") = number;
        discs.Update();
    }

    // Files with long names, in an open transaction or each by itself.
    static void addLongNames(DataSource& discs, int count) {
        const auto files = discs.Database()->OpenRecordset("Files");
        for (int i = 0; i < count; ++i) {
            files->AddNew();
            files->Fields("directory number") = "C2D1";
            files->Fields("file name") = std::string(40, static_cast<char>('a' + i % 26));
            files->Update();
        }
    }

    discaro::test::FaultVfs disk;
};

} // namespace discaro::db::test

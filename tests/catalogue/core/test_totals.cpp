#include "catalogue/Names.h"
#include "catalogue/Totals.h"
#include "catalogue/core/CatalogueFile.h"

namespace discaro::catalogue {
namespace {

class DirectoryTotals : public CatalogueFile {
protected:
    // A directory without sizes where none is given.
    static void add(db::Recordset& rows, const char* number, const db::Value& size, int64_t files) {
        rows.AddNew();
        rows(directories::kIdNumber) = number;
        rows(directories::kSize) = size;
        rows(directories::kNumberOfFiles) = files;
        rows.Update();
    }
};

TEST_F(DirectoryTotals, OfADirectoryWhoseOwnSizeIsUnknownTheTotalSizeIsUnknownToo) {
    const auto catalogue = open();
    const auto rows = catalogue->OpenRecordset(kDirectories);
    add(*rows, "C1D1", {}, 2);
    add(*rows, "C1D1S1", 5.0, 3);
    rows->MoveFirst();
    rollUpCurrentDirectory(catalogue.get(), *rows);
    EXPECT_TRUE((*rows)(directories::kTotalSize).IsNull());
    EXPECT_EQ((*rows)(directories::kTotalNumberOfFiles).Text(), "5");
    EXPECT_TRUE((*rows)(directories::kTotalNumberOfSubdirectories).IsNull());
}

TEST_F(DirectoryTotals, TakeInTheDirectoriesBeneathOfWhichTheSizeIsKnown) {
    const auto catalogue = open();
    const auto rows = catalogue->OpenRecordset(kDirectories);
    add(*rows, "C1D1", 1.5, 0);
    add(*rows, "C1D1S1", {}, 3);
    add(*rows, "C1D1S2", 4.0, 0);
    add(*rows, "C2D1", 100.0, 100);
    rows->MoveFirst();
    rollUpCurrentDirectory(catalogue.get(), *rows);
    EXPECT_EQ((*rows)(directories::kTotalSize).Text(), "5.5");
    EXPECT_EQ((*rows)(directories::kTotalNumberOfFiles).Text(), "3");
}

} // namespace
} // namespace discaro::catalogue

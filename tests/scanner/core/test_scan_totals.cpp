#include "base/RuntimeError.h"
#include "scanner/core/ScanRig.h"

#include <gtest/gtest.h>

// Totals over discs of several kinds, and the numbers of discs and directories.
namespace discaro::test {
namespace {

using Texts = std::vector<std::string>;

scanner::ScanOptions options(const char* level, const char* freeNumber = "") {
    return {.DetailLevel = level, .ErrorAction = "ignore", .LogErrors = "true", .UseFreeNumber = freeNumber};
}

std::string kilobytes(int count) {
    return std::string(static_cast<size_t>(count) * 1024, 'k');
}

// 7 KB: 2 in the root, 3 in A, 2 in A\B.
MemoryNode disc() {
    return folder("", {file("ROOT", kilobytes(2)),
                       folder("A", {file("A1", kilobytes(3)), folder("B", {file("B1", kilobytes(2))})})});
}

} // namespace

TEST(MinimalTotals, AreRightForEveryDirectory) {
    ScanRig rig;
    rig.insert(disc());
    rig.scan(options("minimal"));
    EXPECT_EQ(rig.column("directories", "Size"), (Texts{"2", "3", "2"}));
    EXPECT_EQ(rig.column("directories", "Total Size"), (Texts{"7", "5", "2"}));
    EXPECT_EQ(rig.column("directories", "number of files"), (Texts{"1", "1", "1"}));
    EXPECT_EQ(rig.column("directories", "Total number of files"), (Texts{"3", "1", "1"}))
        << "the one file beneath A is a sum of exactly 1, which is dropped";
    EXPECT_EQ(rig.column("directories", "Total number of Subdirectories"), (Texts{"1", "1", "0"}))
        << "so is the one directory in A";
    EXPECT_TRUE(rig.isNull("Master Table", {}, "Total Size"));
}

TEST(MinimalTotals, ABasicDiscBesideOneCountsAloneInTheCataloguesSize) {
    ScanRig rig;
    rig.insert(disc());
    rig.scan(options("minimal"));
    rig.insert(folder("", {file("ONE", kilobytes(4))}));
    rig.scan(options("basic"));
    EXPECT_EQ(rig.master("Total Size"), "4");
    EXPECT_EQ(rig.master("Total number of files"), "4");
    EXPECT_EQ(rig.master("Total number of directories"), "4");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total Size"), "7");
}

TEST(NullSums, OfAChainOfDirectoriesEachAddsWhatIsBeneathItButASumOfOne) {
    ScanRig rig;
    rig.insert(folder("", {folder("A", {folder("B", {folder("C")})})}));
    rig.scan(options("basic"));
    EXPECT_EQ(rig.column("directories", "number of subdirectories"), (Texts{"1", "1", "1", "0"}));
    // Beneath the root 1 + 1 + 0, beneath A 1 + 0, which is dropped, beneath B 0, beneath C nothing.
    EXPECT_EQ(rig.column("directories", "Total number of Subdirectories"), (Texts{"3", "1", "1", "0"}));
    EXPECT_EQ(rig.column("directories", "Total Size"), (Texts{"0", "0", "0", "0"}));
}

TEST(NullSums, OfDirectoriesThatWereNotCompletedAddNothing) {
    ScanRig rig;
    rig.insert(disc());
    // Each directory's row is saved when it is begun and when it is complete; those of A and B stay incomplete.
    rig.directories.beforeUpdate = [saves = 0]() mutable {
        ++saves;
        if (saves == 4 || saves == 6)
            throw base::RuntimeError(ErrorNumber::InvalidValue);
    };
    rig.scan(options("basic"));
    ASSERT_EQ(rig.column("directories", "Size"), (Texts{"2", "", ""}));
    EXPECT_EQ(rig.column("directories", "Total Size"), (Texts{"2", "", ""}));
    EXPECT_EQ(rig.column("directories", "Total number of files"), (Texts{"1", "", ""}));
    EXPECT_EQ(rig.column("directories", "Total number of Subdirectories"), (Texts{"1", "", ""}));
}

TEST(Numbers, TheNextIsBehindTheHighestEverGivenAndAFreeOneFillsTheGap) {
    ScanRig rig;
    rig.insert(folder(""));
    for (int i = 0; i < 9; ++i)
        rig.scan(options("basic"));
    ASSERT_EQ(rig.master("scanned cd-roms"), "9");
    rig.discs.Recordset().FindFirst("[id number] = 5");
    rig.discs.Recordset().Delete();
    rig.scan(options("basic"));
    EXPECT_EQ(rig.column("drive", "id number").back(), "10");
    EXPECT_EQ(rig.master("scanned cd-roms"), "10");
    rig.scan(options("basic", "true"));
    EXPECT_EQ(rig.column("drive", "id number").back(), "5");
    EXPECT_EQ(rig.master("scanned cd-roms"), "10");
    EXPECT_EQ(rig.count("directories"), 10);
}

TEST(Numbers, ADiscWithoutSubdirectoriesHasOneRowThatIsItsRoot) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), file("B")}));
    rig.scan(options("basic"));
    EXPECT_EQ(rig.column("directories", "id number"), Texts{"C1D1"});
    EXPECT_EQ(rig.column("directories", "Parent id"), Texts{"R"});
    EXPECT_EQ(rig.column("directories", "directory name"), Texts{rig.root});
    EXPECT_EQ(rig.column("directories", "Total number of files"), Texts{"2"});
}

} // namespace discaro::test

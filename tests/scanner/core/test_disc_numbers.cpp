#include "app/Module1.h"
#include "scanner/core/ScanRig.h"
#include "support/RawDatabase.h"

#include <gtest/gtest.h>

// The numbers that discs get.
namespace discaro::test {
namespace {

using Texts = std::vector<std::string>;

scanner::ScanOptions anyFree() {
    return {.DetailLevel = "basic", .ErrorAction = "ignore", .LogErrors = "true", .UseFreeNumber = "true"};
}

// Another program adds a disc of this number, a directory and a file, while the data sources of the scan are open.
void addDiscElsewhere(int number, int scanned) {
    RawDatabase other(app::Module1::cataloguePath());
    const std::string disc = std::to_string(number);
    const std::string directory = "'C" + disc + "D1'";
    other.execute("INSERT INTO \"Drive\" (\"id number\") VALUES (" + disc + ")");
    other.execute("INSERT INTO \"Directories\" (\"id number\", \"drive id number\") VALUES (" + directory + ", " +
                  disc + ")");
    other.execute("INSERT INTO \"Files\" (\"directory number\", \"file name\") VALUES (" + directory + ", 'THEIRS')");
    other.execute("UPDATE \"Master Table\" SET \"scanned cd-roms\" = " + std::to_string(scanned));
}

class DiscNumbers : public testing::Test {
protected:
    DiscNumbers() { rig.insert(folder("", {file("A")})); }

    ScanRig rig;
};

TEST_F(DiscNumbers, TheNextOneIsReadWhenAnotherProgramHasAddedADisc) {
    EXPECT_EQ(rig.masterSource.Recordset().Fields("scanned cd-roms").Text(), "0");
    EXPECT_EQ(rig.discs.Recordset().RecordCount(), 0);
    EXPECT_EQ(rig.files.Recordset().RecordCount(), 0);
    addDiscElsewhere(7, 7);
    rig.scan();
    EXPECT_EQ(rig.watcher.log.back(), "finished");
    EXPECT_EQ(rig.column("drive", "id number"), (Texts{"7", "8"}));
    EXPECT_EQ(rig.master("scanned cd-roms"), "8");
    EXPECT_EQ(rig.master("real cd-roms scanned"), "2") << "theirs counts too";
    EXPECT_EQ(rig.master("Total number of directories"), "2");
    EXPECT_EQ(rig.master("Total number of files"), "2");
}

TEST_F(DiscNumbers, TheNextOneSkipsThoseThatADiscHasAndIsKept) {
    rig.scan(anyFree());
    EXPECT_EQ(rig.master("scanned cd-roms"), "0");
    addDiscElsewhere(2, 0);
    addDiscElsewhere(4, 0);
    rig.scan();
    EXPECT_EQ(rig.column("drive", "id number"), (Texts{"1", "2", "4", "3"}));
    EXPECT_EQ(rig.master("scanned cd-roms"), "3");
    rig.scan();
    EXPECT_EQ(rig.column("drive", "id number"), (Texts{"1", "2", "4", "3", "5"}));
    EXPECT_EQ(rig.master("scanned cd-roms"), "5");
}

TEST_F(DiscNumbers, TheNextOneNeverComesBackAndAFreeOneDoes) {
    addDiscElsewhere(3, 9);
    rig.scan();
    rig.scan(anyFree());
    EXPECT_EQ(rig.column("drive", "id number"), (Texts{"3", "10", "1"}));
    EXPECT_EQ(rig.master("scanned cd-roms"), "10");
}

TEST_F(DiscNumbers, ADiscThatGetsNoneIsNotKept) {
    RawDatabase(app::Module1::cataloguePath()).execute("DELETE FROM \"Master Table\"");
    rig.scan();
    ASSERT_GE(rig.watcher.log.size(), 2U);
    EXPECT_TRUE(rig.watcher.log[rig.watcher.log.size() - 2].starts_with("not saved: "));
    EXPECT_EQ(rig.count("drive"), 0);
    EXPECT_EQ(rig.count("directories"), 0);
    EXPECT_EQ(rig.count("files"), 0);
}

} // namespace
} // namespace discaro::test

#include "explorer/CatalogueRig.h"
#include "explorer/ListingRows.h"
#include "explorer/Queries.h"

#include <gtest/gtest.h>

namespace discaro::explorer {

namespace {

class ListingRows : public testing::Test {
protected:
    std::vector<ListingRow> listed(const std::string& directory = "C1D1") {
        app::Module1::OpenCatalogue();
        const auto rows = app::Module1::CatalogueDb->OpenRecordset(filesQuery(directory));
        FileRows files(*rows);
        std::vector<ListingRow> list;
        for (; !rows->Eof(); rows->MoveNext())
            list.push_back(files.row());
        return list;
    }
    ListingRow onlyRow(const test::FileRow& row) {
        m_rig.add(row);
        return listed().at(0);
    }

    test::CatalogueRig m_rig;
};

} // namespace

TEST_F(ListingRows, AFileFillsAllColumns) {
    const auto row =
        onlyRow({.directory = "C1D1", .name = "Game.exe", .extension = ".exe", .size = 1536.0, .icons = 12});
    EXPECT_EQ(row.key, "1id");
    EXPECT_EQ(row.tag, "1");
    EXPECT_EQ(row.text, "Game.exe");
    EXPECT_EQ(row.kind, "exe");
    const std::vector<std::string> wanted = {"1,536 Kb", "000000001536", ".exe File", "04/28/99",
                                             "99/04/28", "RA",           "12",        "000,000,000,012"};
    EXPECT_EQ(row.subItems, wanted);
}

TEST_F(ListingRows, AnExtensionInCapitalsKeepsThem) {
    const auto row = onlyRow({.directory = "C1D1", .name = "SETUP.EXE", .extension = ".EXE"});
    EXPECT_EQ(row.kind, "setup");
    EXPECT_EQ(row.subItems[2], ".EXE File");
}

TEST_F(ListingRows, AnExtensionThatIsNotStoredIsFoundInTheName) {
    const auto row = onlyRow({.directory = "C1D1", .name = "Archive.tar.ZIP", .extension = ""});
    EXPECT_EQ(row.kind, "zip");
    EXPECT_EQ(row.subItems[2], ".zip File");
}

TEST_F(ListingRows, AnExtensionFoundInTheNameIsLowerCasedAndNoMore) {
    const auto row = onlyRow({.directory = "C1D1", .name = "x.U\u0308B\u00C4", .extension = ""});
    EXPECT_EQ(row.subItems[2], ".u\u0308b\u00E4 File") << "the characters are those of the name";
}

TEST_F(ListingRows, ANameWithoutADotIsAFileOfNoExtension) {
    const auto row = onlyRow({.directory = "C1D1", .name = "readme", .extension = ""});
    EXPECT_EQ(row.kind, "file");
    EXPECT_EQ(row.subItems[2], ". File");
}

TEST_F(ListingRows, ANameWithoutADotTakesOverWhatWasFoundBefore) {
    for (const char* name : {"first", "notes.TXT", "second", "third.", "fourth"})
        m_rig.add(test::FileRow{.directory = "C1D1", .name = name, .extension = ""});
    m_rig.add(test::FileRow{.directory = "C1D1", .name = "fifth.exe", .extension = ".exe"});
    m_rig.add(test::FileRow{.directory = "C1D1", .name = "sixth", .extension = ""});
    const auto rows = listed();
    ASSERT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows[0].subItems[2], ". File");
    EXPECT_EQ(rows[1].subItems[2], ".txt File");
    EXPECT_EQ(rows[2].subItems[2], ".txt File");
    EXPECT_EQ(rows[2].kind, "text");
    EXPECT_EQ(rows[3].subItems[2], ". File");
    EXPECT_EQ(rows[4].subItems[2], ". File");
    EXPECT_EQ(rows[6].subItems[2], ". File") << "a stored extension is not searched for";
    EXPECT_EQ(listed()[0].subItems[2], ". File") << "each listing begins anew";
}

TEST_F(ListingRows, AZeroByteFileReadsOneKilobyte) {
    const auto row = onlyRow({.directory = "C1D1", .name = "empty.txt", .extension = ".txt", .size = 0.0});
    EXPECT_EQ(row.subItems[0], "1 Kb");
    EXPECT_EQ(row.subItems[1], "000000000001");
}

TEST_F(ListingRows, WhatWasNotScannedGoesInAsItIs) {
    const auto row =
        onlyRow({.directory = "C1D1", .name = "a.txt", .extension = ".txt", .size = {}, .attributes = "", .date = ""});
    const std::vector<std::string> wanted = {"1 Kb", "000000000001", ".txt File", "", "", "", "", ""};
    EXPECT_EQ(row.subItems, wanted);
}

TEST_F(ListingRows, FieldsThatHoldOtherThingsThanTheyShouldAreShownAsTheyAre) {
    m_rig.run("INSERT INTO Files(\"directory number\", \"file name\", \"file size\", \"File "
              "date\", \"number of "
              "icons\") VALUES ('C1D1', x'41ff00', 'large', 20200101, 'many')");
    const auto rows = listed();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].key, "1id");
    EXPECT_EQ(rows[0].subItems[3], "20200101");
}

TEST_F(ListingRows, ADirectoryHasItsNumberForKeyAndTheListedNodeForTag) {
    m_rig.addRoot(1);
    m_rig.add(test::DirectoryRow{.number = "C1D1S1", .name = "Docs"});
    app::Module1::OpenCatalogue();
    const auto rows = app::Module1::CatalogueDb->OpenRecordset(subdirectoriesQuery("C1D1"));
    const auto row = directoryRow(*rows, 2);
    EXPECT_EQ(row.key, "C1D1S1");
    EXPECT_EQ(row.text, "Docs");
    EXPECT_EQ(row.kind, "folder");
    EXPECT_EQ(row.tag, "2");
    EXPECT_TRUE(row.subItems.empty());
}

TEST_F(ListingRows, TheEndOfTheKeyTellsFilesFromDirectories) {
    EXPECT_TRUE(isFileKey("17id"));
    EXPECT_FALSE(isFileKey("C1D1S17"));
    EXPECT_FALSE(isFileKey(""));
    EXPECT_FALSE(isFileKey("d"));
}

} // namespace discaro::explorer

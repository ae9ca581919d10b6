#include "catalogue/Discs.h"
#include "explorer/CatalogueRig.h"
#include "explorer/TagHandOver.h"

#include <gtest/gtest.h>

namespace discaro::explorer {

namespace {

namespace shared = app::Module1;

class TagHandOver : public testing::Test {
protected:
    TagHandOver() {
        for (std::string* variable : variables())
            *variable = "before";
        m_rig.add(test::DiscRow{.number = 3, .name = "Games", .totalSize = 650.25});
        m_rig.add(test::DirectoryRow{.number = "C3D1",
                                     .name = "D:\\",
                                     .path = "D:\\",
                                     .size = 10,
                                     .totalSize = 99.5,
                                     .totalFiles = 17,
                                     .totalSubdirectories = 4});
        open(m_discs, "drive");
        open(m_directories, "directories");
    }
    ~TagHandOver() override {
        for (std::string* variable : variables())
            variable->clear();
    }
    static std::vector<std::string*> variables() {
        return {&shared::TagKey,           &shared::TagDisc,      &shared::TagDiscName, &shared::TagDirectory,
                &shared::TagDirectoryPath, &shared::TagFile,      &shared::TagFileName, &shared::TagSize,
                &shared::TagFileCount,     &shared::SimDirectory, &shared::SimParent,   &shared::SimSubdirectories,
                &shared::SimFiles,         &shared::SimSize,      &shared::SimDiscName};
    }
    void open(db::DataSource& source, const char* table) {
        source.SetDatabaseName(m_rig.path());
        source.SetRecordSource(table);
        source.Refresh();
    }

    test::CatalogueRig m_rig;
    db::DataSource m_discs;
    db::DataSource m_directories;
};

} // namespace

TEST_F(TagHandOver, AFileIsToldWithTheListingsText) {
    handOverFile({.number = "42", .name = "setup.exe", .size = "1,536 Kb"}, m_discs, m_directories);
    EXPECT_EQ(shared::TagKey, "FILE42");
    EXPECT_EQ(shared::TagDisc, "3");
    EXPECT_EQ(shared::TagDiscName, "Games");
    EXPECT_EQ(shared::TagDirectory, "C3D1");
    EXPECT_EQ(shared::TagDirectoryPath, "D:\\");
    EXPECT_EQ(shared::TagFile, "42");
    EXPECT_EQ(shared::TagFileName, "setup.exe");
    EXPECT_EQ(shared::TagSize, "1,536 Kb");
    EXPECT_EQ(shared::TagFileCount, "1");
}

TEST_F(TagHandOver, ADirectoryIsToldWithItsTotals) {
    handOverDirectory(m_discs, m_directories);
    EXPECT_EQ(shared::TagKey, "DIRC3D1");
    EXPECT_EQ(shared::TagDisc, "3");
    EXPECT_EQ(shared::TagDirectory, "C3D1");
    EXPECT_EQ(shared::TagFile, "");
    EXPECT_EQ(shared::TagFileName, "");
    EXPECT_EQ(shared::TagSize, "99.5");
    EXPECT_EQ(shared::TagFileCount, "17");
}

TEST_F(TagHandOver, ADirectoryWithoutATotalIsToldWithItsOwnSize) {
    m_rig.run("UPDATE Directories SET \"Total Size\" = NULL");
    m_directories.Refresh();
    handOverDirectory(m_discs, m_directories);
    EXPECT_EQ(shared::TagSize, "10");
}

TEST_F(TagHandOver, ADiscIsToldInKilobytes) {
    handOverDisc(m_discs);
    EXPECT_EQ(shared::TagKey, "CD3");
    EXPECT_EQ(shared::TagDiscName, "Games");
    EXPECT_EQ(shared::TagDirectory, "");
    EXPECT_EQ(shared::TagDirectoryPath, "");
    EXPECT_EQ(shared::TagFile, "");
    EXPECT_EQ(shared::TagSize, "665856");
    EXPECT_EQ(shared::TagFileCount, "");
}

TEST_F(TagHandOver, WhatCannotBeReadStaysAsItWas) {
    m_directories.Close();
    handOverDirectory(m_discs, m_directories);
    EXPECT_EQ(shared::TagKey, "before");
    EXPECT_EQ(shared::TagDisc, "3");
    EXPECT_EQ(shared::TagDirectory, "before");
    EXPECT_EQ(shared::TagSize, "before");
}

TEST_F(TagHandOver, TheSimulatorGetsTheDirectoryAndTheDiscsLine) {
    m_rig.add(test::DirectoryRow{
        .number = "C3D1S1", .name = "Docs", .totalSize = 7, .totalFiles = 2, .totalSubdirectories = 1});
    m_directories.Refresh();
    m_directories.Recordset().FindFirst(catalogue::rowCondition("C3D1S1"));
    simulateDirectory(m_directories, "Games       (CD-ROM No. 3)");
    EXPECT_EQ(shared::SimDirectory, "C3D1S1");
    EXPECT_EQ(shared::SimParent, "C3D1");
    EXPECT_EQ(shared::SimSubdirectories, "1");
    EXPECT_EQ(shared::SimFiles, "2");
    EXPECT_EQ(shared::SimSize, "7");
    EXPECT_EQ(shared::SimDiscName, "Games       (CD-ROM No. 3)");
}

} // namespace discaro::explorer

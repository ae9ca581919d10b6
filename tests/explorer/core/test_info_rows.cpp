#include "catalogue/Discs.h"
#include "explorer/CatalogueRig.h"
#include "explorer/InfoRows.h"

#include <gtest/gtest.h>

namespace discaro::explorer {

namespace {

class InfoRows : public testing::Test {
protected:
    void open(db::DataSource& source, const char* table) {
        source.SetDatabaseName(m_rig.path());
        source.SetRecordSource(table);
        source.Refresh();
    }
    std::vector<std::string> values(const std::vector<InfoRow>& rows) {
        std::vector<std::string> list;
        for (const InfoRow& row : rows)
            list.push_back(row.value);
        return list;
    }

    test::CatalogueRig m_rig;
    db::DataSource m_source;
};

} // namespace

TEST_F(InfoRows, ADiscHasTenFacts) {
    m_rig.add(test::DiscRow{.number = 1234, .name = "Games", .totalSize = 650.25});
    open(m_source, "drive");
    const auto rows = discInfo(m_source);
    ASSERT_EQ(rows.size(), 10U);
    const std::vector<std::string> wanted = {"1,234",  "Games", "LABEL", "1A2B-3C4D", "CDFS",
                                             "650 Mb", "0 Mb",  "",      "Scanned.",  ""};
    EXPECT_EQ(values(rows), wanted);
    EXPECT_EQ(rows[0].icon, "cdnum");
    EXPECT_EQ(rows[2].text, "Volume Label");
    EXPECT_EQ(rows[7].icon, "");
    EXPECT_EQ(rows[9].icon, "autrun");
}

TEST_F(InfoRows, TheFreeSizeIsAsStored) {
    m_rig.add(test::DiscRow{.number = 1, .name = "A"});
    m_rig.run("UPDATE Drive SET \"free size\" = 12.375, \"Total Size\" = NULL");
    open(m_source, "drive");
    const auto rows = discInfo(m_source);
    EXPECT_EQ(rows[6].value, "12.375 Mb");
    EXPECT_EQ(rows[5].value, "") << "there is nothing to cut";
}

TEST_F(InfoRows, ADirectoryHasTwelveFacts) {
    m_rig.add(test::DirectoryRow{.number = "C7D1",
                                 .name = "D:\\",
                                 .path = "D:\\",
                                 .files = 1234,
                                 .subdirectories = 3,
                                 .size = 1536,
                                 .totalSize = 20480.9,
                                 .totalFiles = 56789,
                                 .totalSubdirectories = 40,
                                 .comments = "A note"});
    open(m_source, "directories");
    const auto rows = directoryInfo(m_source);
    ASSERT_EQ(rows.size(), 12U);
    const std::vector<std::string> wanted = {"7", "D:\\", "D:\\",     "",          "1,234", "56,789",
                                             "3", "40",   "1,536 Kb", "20,480 Kb", "",      "A note"};
    EXPECT_EQ(values(rows), wanted);
    EXPECT_EQ(rows[4].icon, "nfile");
    EXPECT_EQ(rows[9].icon, "tsize");
    EXPECT_EQ(rows[9].text, "Total Size");
}

TEST_F(InfoRows, WhereThereIsNoRowAllValuesAreEmpty) {
    open(m_source, "drive");
    for (const InfoRow& row : discInfo(m_source))
        EXPECT_EQ(row.value, "") << row.text;
    const db::DataSource neverOpened;
    for (const InfoRow& row : directoryInfo(neverOpened))
        EXPECT_EQ(row.value, "") << row.text;
}

TEST_F(InfoRows, ASearchThatFindsNothingShowsTheRowThatWasThere) {
    m_rig.add(test::DiscRow{.number = 1, .name = "First"});
    open(m_source, "drive");
    m_source.Recordset().FindFirst(catalogue::rowCondition("99"));
    EXPECT_EQ(discInfo(m_source)[1].value, "First");
}

} // namespace discaro::explorer

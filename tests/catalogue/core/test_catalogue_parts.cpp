#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "catalogue/core/CatalogueFile.h"
#include "db/DBEngine.h"
#include "db/DataSource.h"
#include "db/sqlite/Connection.h"
#include "support/CountedSleeps.h"
#include "support/RawDatabase.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace discaro::catalogue {
namespace {

using db::DBEngine;

namespace fs = std::filesystem;

// A catalogue that another program has been at.
class CatalogueParts : public CatalogueFile {
protected:
    void run(const std::string& sql) const { test::RawDatabase(path()).execute(sql); }
    std::string text(const std::string& sql) const { return test::RawDatabase(path()).text(sql); }
    // All that the file says of its tables, indexes and triggers.
    std::string objects() const {
        return text("SELECT group_concat(sql, char(10)) FROM (SELECT sql FROM sqlite_schema ORDER "
                    "BY type, name)");
    }

    // As catalogues were made before there were the notes of numbers.
    void makeOld() const {
        run("DROP TRIGGER \"Files numbered\"; DROP TRIGGER \"Prog Tag numbered\"; DROP TABLE "
            "\"Row Numbers\"");
    }

    static std::string add(db::Recordset& rows) {
        rows.AddNew();
        rows.Update();
        rows.MoveLast();
        return rows("id number").Text();
    }

    const std::string m_whole = objects();
};

TEST_F(CatalogueParts, AMissingMasterRowIsMadeWhenTheCatalogueIsOpened) {
    run("DELETE FROM \"Master Table\"");
    const auto master = open()->OpenRecordset(kMasterTable);
    EXPECT_EQ(master->RecordCount(), 1);
    EXPECT_EQ((*master)(masterTable::kScannedCdRoms).Text(), "0");
    EXPECT_EQ((*master)(masterTable::kScanError).Text(), "no error");
}

TEST_F(CatalogueParts, MissingIndexesAndTriggersAreMadeAndNothingElseIsTouched) {
    run("INSERT INTO Drive(\"id number\") VALUES (7);"
        "INSERT INTO Directories(\"drive id number\", \"id number\") VALUES (7, 'C7D1');"
        "UPDATE \"Master Table\" SET \"scanned cd-roms\" = 9;"
        "CREATE INDEX mine ON Drive(\"volume name\")");
    const std::string before = objects();
    run("DROP INDEX \"Drive id number\"; DROP INDEX \"Files file name\";"
        "DROP TRIGGER \"Drive deleted\"; DROP TRIGGER \"Directories deleted\"");
    const auto database = open();
    EXPECT_EQ(objects(), before);
    EXPECT_EQ(text("SELECT \"scanned cd-roms\" FROM \"Master Table\""), "9");
    database->Execute("delete * from Drive");
    EXPECT_EQ(text("SELECT count(*) FROM Directories"), "0");
}

TEST_F(CatalogueParts, AWholeCatalogueIsNotWrittenWhenItIsOpened) {
    const auto changed = fs::last_write_time(path());
    const std::string counter = text("PRAGMA data_version");
    open()->OpenRecordset(kDrive);
    EXPECT_EQ(fs::last_write_time(path()), changed);
    EXPECT_EQ(text("PRAGMA data_version"), counter);
}

TEST_F(CatalogueParts, WhatRowsStandAgainstStaysMissingAndTheRestIsMade) {
    run("DROP INDEX \"Drive id number\"; DROP INDEX \"Files file name\";"
        "INSERT INTO Drive(\"id number\") VALUES (7), (7)");
    EXPECT_EQ(open()->OpenRecordset(kDrive)->RecordCount(), 2);
    EXPECT_EQ(text("SELECT count(*) FROM sqlite_schema WHERE name = 'Drive id number'"), "0");
    EXPECT_EQ(text("SELECT count(*) FROM sqlite_schema WHERE name = 'Files file name'"), "1");
}

TEST_F(CatalogueParts, RowsThatStandAgainstAnIndexAreAskedAgainOnlyWhenTheFileHasChanged) {
    run("DROP INDEX \"Drive id number\"; INSERT INTO Drive(\"id number\") VALUES (7), (7)");
    open();
    {
        discaro::test::CountedSleeps sleeps;
        test::RawDatabase other(path());
        other.execute("BEGIN IMMEDIATE");
        open();
        EXPECT_EQ(sleeps.takeMilliseconds(), 0) << "nothing is to be written";
    }
    run("UPDATE Drive SET \"id number\" = rowid");
    open();
    EXPECT_EQ(objects(), m_whole);
}

TEST_F(CatalogueParts, ACatalogueThatCantBeWrittenOpensAsItIs) {
    makeOld();
    run("DELETE FROM \"Master Table\"");
    db::Connection::setLockWait(0);
    {
        test::RawDatabase other(path());
        other.execute("BEGIN IMMEDIATE");
        EXPECT_EQ(open()->OpenRecordset(kMasterTable)->RecordCount(), 0);
    }
    db::Connection::setLockWait(2000);
    const bool root = ::getuid() == 0;
    using enum fs::perms;
    const auto reading = owner_read | group_read | others_read;
    fs::permissions(folder(), reading | owner_exec | group_exec | others_exec);
    fs::permissions(path(), reading);
    if (root) {
        ASSERT_EQ(::seteuid(65534), 0);
    }
    const int64_t rows = open()->OpenRecordset(kMasterTable)->RecordCount();
    if (root) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    fs::permissions(folder(), owner_all);
    fs::permissions(path(), owner_all);
    EXPECT_EQ(rows, 0);
    EXPECT_EQ(open()->OpenRecordset(kMasterTable)->RecordCount(), 1);
    EXPECT_EQ(objects(), m_whole);
}

TEST_F(CatalogueParts, AForeignDatabaseGetsNothing) {
    run("DROP INDEX \"Files file name\"; PRAGMA application_id = 5");
    const std::string before = objects();
    EXPECT_THROW(open(), base::RuntimeError);
    EXPECT_EQ(objects(), before);
}

// ---- Numbers are given once

class RowNumbers : public CatalogueParts, public testing::WithParamInterface<std::string_view> {
protected:
    std::string all() const { return "delete * from [" + std::string(GetParam()) + "]"; }
};

TEST_P(RowNumbers, OfDeletedRowsAreNotGivenAgain) {
    auto rows = open()->OpenRecordset(GetParam());
    EXPECT_EQ(add(*rows), "1");
    EXPECT_EQ(add(*rows), "2");
    rows->Delete();
    EXPECT_EQ(add(*rows), "3");
    open()->Execute(all());
    rows.reset();
    rows = open()->OpenRecordset(GetParam());
    EXPECT_EQ(add(*rows), "4");
    EXPECT_EQ(add(*rows), "5");
}

TEST_P(RowNumbers, AreKeptWhenAnotherProgramDeletes) {
    const auto rows = open()->OpenRecordset(GetParam());
    add(*rows);
    add(*rows);
    run("DELETE FROM \"" + std::string(GetParam()) + "\"");
    EXPECT_EQ(add(*rows), "3");
}

TEST_P(RowNumbers, GoOnWithinATransactionWhateverItDeletes) {
    const auto rows = open()->OpenRecordset(GetParam());
    DBEngine::BeginTrans();
    add(*rows);
    add(*rows);
    open()->Execute(all());
    EXPECT_EQ(add(*rows), "3");
    rows->Delete();
    EXPECT_EQ(add(*rows), "4");
    DBEngine::CommitTrans();
    open()->Execute(all());
    DBEngine::BeginTrans();
    EXPECT_EQ(add(*rows), "5");
    DBEngine::CommitTrans();
}

TEST_P(RowNumbers, ThatAnUndoneTransactionGaveAreFree) {
    auto keeper = std::make_unique<db::DataSource>();
    keeper->SetDatabaseName(path());
    keeper->SetRecordSource(std::string(GetParam()));
    keeper->Refresh();
    EXPECT_EQ(add(keeper->Recordset()), "1");
    DBEngine::BeginTrans();
    EXPECT_EQ(add(keeper->Recordset()), "2");
    open()->Execute(all());
    EXPECT_EQ(add(keeper->Recordset()), "3");
    keeper.reset();
    EXPECT_EQ(add(*open()->OpenRecordset(GetParam())), "2");
}

TEST_P(RowNumbers, OfACatalogueMadeWithoutTheNotesAreKeptFromItsOpeningOn) {
    makeOld();
    run("INSERT INTO \"" + std::string(GetParam()) + "\" (\"id number\") VALUES (40), (41)");
    const auto rows = open()->OpenRecordset(GetParam());
    EXPECT_EQ(objects(), m_whole);
    rows->MoveLast();
    rows->Delete();
    EXPECT_EQ(add(*rows), "42");
    open()->Execute(all());
    EXPECT_EQ(add(*rows), "43");
}

TEST_P(RowNumbers, BeyondSixtyFourBitsAreAnError) {
    run("INSERT INTO \"" + std::string(GetParam()) + "\" (\"id number\") VALUES (" + std::to_string(INT64_MAX) + ")");
    const auto rows = open()->OpenRecordset(GetParam());
    rows->Delete();
    EXPECT_THROW(add(*rows), base::RuntimeError);
    EXPECT_EQ(rows->RecordCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, RowNumbers, testing::Values(kFiles, kProgTag),
                         [](const auto& row) { return row.param == kFiles ? "Files" : "ProgTag"; });

TEST_F(CatalogueParts, ADiscsFilesKeepTheirNumbersWhenItIsDeleted) {
    run("INSERT INTO Drive(\"id number\") VALUES (1);"
        "INSERT INTO Directories(\"drive id number\", \"id number\") VALUES (1, 'C1D1');"
        "INSERT INTO Files(\"directory number\") VALUES ('C1D1'), ('C1D1'), ('C1D1')");
    open()->OpenRecordset(kDrive)->Delete();
    EXPECT_EQ(text("SELECT count(*) FROM Files"), "0");
    EXPECT_EQ(add(*open()->OpenRecordset(kFiles)), "4");
}

} // namespace
} // namespace discaro::catalogue

#include "db/Shelf.h"
#include "db/sqlite/Connection.h"
#include "support/Files.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using discaro::test::overwriteFile;
using discaro::test::RawDatabase;
using discaro::test::writeFile;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace fs = std::filesystem;

class OpeningErrors : public Shelf {
protected:
    int errorOfOpening(const fs::path& file) const {
        return errorOf([&] { DBEngine::OpenDatabase(file); });
    }
};

TEST_F(OpeningErrors, AMissingFileIsNeverCreated) {
    EXPECT_EQ(errorOfOpening(folder() / "lost.db"), number(ErrorNumber::FileMissing));
    EXPECT_EQ(errorOfOpening(folder() / "no folder" / "lost.db"), number(ErrorNumber::FileMissing));
    EXPECT_EQ(errorOfOpening(path() / "below a file"), number(ErrorNumber::FileMissing));
    EXPECT_EQ(errorOfOpening({}), number(ErrorNumber::FileMissing));
    EXPECT_THAT(listing(), ElementsAre("shelf.db"));
}

TEST_F(OpeningErrors, AFolderAndAPipeAreNoCatalogues) {
    EXPECT_EQ(errorOfOpening(folder()), number(ErrorNumber::NotACatalogue));
    ASSERT_EQ(::mkfifo((folder() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorOfOpening(folder() / "pipe"), number(ErrorNumber::NotACatalogue));
}

TEST_F(OpeningErrors, OtherFilesAreNoCatalogues) {
    writeFile(folder() / "empty");
    EXPECT_EQ(errorOfOpening(folder() / "empty"), number(ErrorNumber::NotACatalogue));
    writeFile(folder() / "short", "x");
    EXPECT_EQ(errorOfOpening(folder() / "short"), number(ErrorNumber::NotACatalogue));
    writeFile(folder() / "long", std::string(100'000, 'x'));
    EXPECT_EQ(errorOfOpening(folder() / "long"), number(ErrorNumber::NotACatalogue));
    EXPECT_EQ(fs::file_size(folder() / "empty"), 0U);
}

TEST_F(OpeningErrors, AnotherProgramsDatabaseIsNoCatalogue) {
    RawDatabase(folder() / "other.db").execute("CREATE TABLE Discs(a)");
    EXPECT_EQ(errorOfOpening(folder() / "other.db"), number(ErrorNumber::NotACatalogue));
}

TEST_F(OpeningErrors, ADatabaseOfANewerVersionIsRefused) {
    RawDatabase(path()).execute("PRAGMA user_version=4");
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::NotACatalogue));
    RawDatabase(path()).execute("PRAGMA user_version=2");
    EXPECT_EQ(errorOfOpening(path()), 0);
}

TEST_F(OpeningErrors, ADatabaseWithoutOneOfTheTablesIsNoCatalogue) {
    RawDatabase(path()).execute("DROP TABLE Things");
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::NotACatalogue));
}

TEST_F(OpeningErrors, ATableWhoseFieldHidesTheRowNumbersIsNotSeen) {
    RawDatabase raw(path());
    raw.execute("CREATE TABLE Hiding(rowid TEXT, word TEXT)");
    raw.execute("CREATE TABLE Naming(word TEXT, rowid INTEGER PRIMARY KEY)");
    raw.execute("INSERT INTO Naming VALUES('seen', 7)");
    const auto database = open();
    EXPECT_EQ(errorOf([&] { database->OpenRecordset("Hiding"); }), number(ErrorNumber::UnknownTable));
    const auto rows = database->OpenRecordset("Naming");
    EXPECT_EQ(rows->RowNumber(), 7);
    EXPECT_EQ((*rows)("word").Text(), "seen");
}

TEST_F(OpeningErrors, ATableWithOtherFieldsIsNoCatalogue) {
    RawDatabase(path()).execute("ALTER TABLE Things RENAME COLUMN day TO night");
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::NotACatalogue));
    RawDatabase(path()).execute("ALTER TABLE Things RENAME COLUMN night TO DAY");
    EXPECT_EQ(errorOfOpening(path()), 0);
    RawDatabase(path()).execute("ALTER TABLE Things ADD COLUMN more TEXT");
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::NotACatalogue));
}

TEST_F(OpeningErrors, AViewIsNoTable) {
    RawDatabase(path()).execute("ALTER TABLE Things RENAME TO Stuff; CREATE VIEW Things AS SELECT * FROM Stuff");
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::NotACatalogue));
}

TEST_F(OpeningErrors, ACatalogueCutShortIsDamaged) {
    const auto size = fs::file_size(path());
    fs::resize_file(path(), size - 8192);
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::CatalogueDamaged));
}

TEST_F(OpeningErrors, ADamagedFirstPageIsReported) {
    overwriteFile(path(), 100, std::string(400, '\xff'));
    EXPECT_EQ(errorOfOpening(path()), number(ErrorNumber::CatalogueDamaged));
}

TEST_F(OpeningErrors, DamageFurtherInShowsWhereItIsRead) {
    addFiles("C1D1", 2000);
    const auto size = fs::file_size(path());
    overwriteFile(path(), static_cast<std::streamoff>(size / 2), std::string(size / 2, '\xee'));
    const auto database = open();
    EXPECT_EQ(errorOf([&] {
                  const auto files = database->OpenRecordset("Files");
                  for (; !files->Eof(); files->MoveNext())
                      (void)files->Fields("file name").Value();
                  (void)database->OpenRecordset("select * from Files order by [file size]");
              }),
              number(ErrorNumber::CatalogueDamaged));
}

TEST_F(OpeningErrors, ATextWhereANumberBelongsReadsAsText) {
    RawDatabase(path()).execute("INSERT INTO Things(whole, flag) VALUES('odd', x'00ff')");
    const auto things = open()->OpenRecordset("Things");
    EXPECT_EQ((*things)("whole").Value(), Value(std::string("odd")));
    EXPECT_EQ((*things)("flag").Value(), Value(std::string("\0\xff", 2)));
}

TEST_F(OpeningErrors, AJournalLeftInWriteAheadModeIsTakenIn) {
    RawDatabase(path()).execute("PRAGMA journal_mode=WAL; INSERT INTO Discs VALUES(1, 'one')");
    EXPECT_EQ(count("Discs"), 1);
    EXPECT_EQ(RawDatabase(path()).text("PRAGMA journal_mode"), "delete");
    EXPECT_THAT(listing(), ElementsAre("shelf.db"));
}

class LockedCatalogues : public Shelf {
protected:
    LockedCatalogues() { Connection::setLockWait(0); }
};

TEST_F(LockedCatalogues, AnotherProgramsWriteLockIsReported) {
    const auto database = open();
    const auto discs = database->OpenRecordset("Discs");
    discs->AddNew();
    (*discs)("id number") = 1;
    {
        RawDatabase other(path());
        other.execute("BEGIN EXCLUSIVE");
        EXPECT_EQ(errorOf([&] { discs->Update(); }), number(ErrorNumber::CatalogueLocked));
        EXPECT_EQ(errorOf([] { DBEngine::BeginTrans(); }), number(ErrorNumber::CatalogueLocked));
        EXPECT_EQ(errorOf([&] { database->OpenRecordset("Files"); }), number(ErrorNumber::CatalogueLocked));
    }
    discs->Update();
    EXPECT_EQ(discs->RecordCount(), 1);
}

TEST_F(LockedCatalogues, OpeningOneIsReported) {
    RawDatabase other(path());
    other.execute("BEGIN EXCLUSIVE");
    EXPECT_EQ(errorOf([&] { open(); }), number(ErrorNumber::CatalogueLocked));
}

TEST_F(LockedCatalogues, ATransactionKeepsOtherProgramsOut) {
    const auto database = open();
    DBEngine::BeginTrans();
    RawDatabase other(path());
    EXPECT_THROW(other.execute("BEGIN EXCLUSIVE"), std::runtime_error);
    DBEngine::CommitTrans();
    EXPECT_NO_THROW(other.execute("BEGIN EXCLUSIVE"));
}

// Rights do not bind the superuser, so as one the test goes on as somebody else.
class ReadOnlyCatalogues : public Shelf {
protected:
    ReadOnlyCatalogues() {
        addDisc(1, "one");
        setRights(0755, 0444);
    }
    ~ReadOnlyCatalogues() override {
        setRights(0755, 0644);
        actAs(0);
    }

    void setRights(unsigned ofFolder, unsigned ofFile) const {
        actAs(0);
        fs::permissions(folder(), fs::perms(ofFolder));
        fs::permissions(path(), fs::perms(ofFile));
        actAs(kNobody);
    }

    static void actAs(uid_t user) {
        if (::getuid() == 0) {
            EXPECT_EQ(::seteuid(user), 0);
        }
    }

    static constexpr uid_t kNobody = 65534;

    void expectReadingOnly() const {
        const auto database = open();
        EXPECT_FALSE(database->Updatable());
        const auto discs = database->OpenRecordset("Discs");
        EXPECT_EQ((*discs)("prefered name").Text(), "one");
        const int readOnly = number(ErrorNumber::CatalogueReadOnly);
        EXPECT_EQ(errorOf([&] { discs->AddNew(); }), readOnly);
        EXPECT_EQ(errorOf([&] { discs->Edit(); }), readOnly);
        EXPECT_EQ(errorOf([&] { discs->Delete(); }), readOnly);
        EXPECT_EQ(errorOf([&] { database->Execute("delete * from Discs"); }), readOnly);
        EXPECT_EQ(errorOf([] { DBEngine::BeginTrans(); }), readOnly);
        EXPECT_FALSE(DBEngine::InTransaction());
        EXPECT_FALSE(discs->Updatable());
    }
};

TEST_F(ReadOnlyCatalogues, AFileWithoutRightsToWriteOpensForReading) {
    expectReadingOnly();
}

TEST_F(ReadOnlyCatalogues, AFileInAFolderWithoutRightsToWriteOpensForReading) {
    setRights(0555, 0666);
    expectReadingOnly();
}

TEST_F(ReadOnlyCatalogues, AnUnreadableFileIsAFailureOfTheStorage) {
    setRights(0755, 0);
    EXPECT_EQ(errorOf([&] { open(); }), number(ErrorNumber::StorageFailure));
}

class Creating : public Shelf {};

TEST_F(Creating, NeverOverwrites) {
    addDisc(1, "one");
    EXPECT_EQ(errorOf([&] { make("shelf.db"); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(count("Discs"), 1);
    fs::create_symlink(folder() / "nowhere", folder() / "link");
    EXPECT_EQ(errorOf([&] { make("link"); }), number(ErrorNumber::NotAllowed));
    EXPECT_THAT(listing(), ElementsAre("link", "shelf.db"));
}

TEST_F(Creating, WhatAnInterruptedCreationLeftDoesNotMatter) {
    writeFile(folder() / "new.db.new", "half a file");
    make("new.db");
    EXPECT_THAT(listing(), ElementsAre("new.db", "shelf.db"));
    EXPECT_NO_THROW(DBEngine::OpenDatabase(folder() / "new.db"));
}

TEST_F(Creating, InAMissingFolderFails) {
    EXPECT_EQ(errorOf([&] { make("no folder/new.db"); }), number(ErrorNumber::PathMissing));
}

TEST_F(Creating, AFailingStatementLeavesNothing) {
    const std::vector<std::string> broken = {"CREATE TABLE Discs(a)", "CREATE NONSENSE"};
    EXPECT_NE(errorOf([&] { DBEngine::CreateDatabase(folder() / "new.db", format(), broken); }), 0);
    EXPECT_THAT(listing(), ElementsAre("shelf.db"));
}

TEST_F(Creating, TheFileSaysWhatItIs) {
    RawDatabase raw(path());
    EXPECT_EQ(raw.text("PRAGMA application_id"), std::to_string(format().applicationId));
    EXPECT_EQ(raw.text("PRAGMA user_version"), "3");
    EXPECT_EQ(raw.text("PRAGMA integrity_check"), "ok");
}

} // namespace
} // namespace discaro::db::test

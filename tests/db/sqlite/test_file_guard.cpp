#include "db/FaultyShelf.h"
#include "db/engine/Engine.h"
#include "support/Files.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

// A catalogue that other programs replace, move, remove or write over without minding SQLite's locks.
namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using discaro::test::FaultVfs;
using discaro::test::overwriteFile;
using discaro::test::RawDatabase;
using discaro::test::readFile;
using testing::ElementsAre;

namespace fs = std::filesystem;

enum class Deed { Replaced, MovedAway, Removed, Overwritten, OverwrittenByOlder, Emptied };

std::ostream& operator<<(std::ostream& out, Deed deed) {
    static constexpr const char* kNames[] = {"Replaced",    "MovedAway",          "Removed",
                                             "Overwritten", "OverwrittenByOlder", "Emptied"};
    return out << kNames[static_cast<int>(deed)];
}

class FileGuard : public FaultyShelf {
protected:
    FileGuard() {
        fs::copy_file(path(), older());
        addDisc(1, "old");
        addFiles("C1D1", 150);
        keepAsFirst();
        m_original = readFile(path());
        make("other.db");
        RawDatabase(other()).execute(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 900) "
            "INSERT INTO Files(\"file name\") SELECT 'a file of another catalogue ' || i FROM n");
    }

    fs::path older() const { return folder() / "older"; }
    fs::path other() const { return folder() / "other.db"; }
    fs::path moved() const { return folder() / "moved.db"; }
    void putBack() const {
        fs::remove(moved());
        FaultyShelf::putBack();
    }

    // As some time later; a file's time goes in steps.
    void touch() const { fs::last_write_time(path(), fs::file_time_type::clock::now() + std::chrono::hours(1)); }

    // What another program does to the catalogue. Afterwards m_left is what it has left under the name.
    void perform(Deed deed) {
        switch (deed) {
        case Deed::Replaced:
            fs::copy_file(other(), folder() / "new");
            fs::rename(folder() / "new", path());
            break;
        case Deed::MovedAway:
            fs::rename(path(), moved());
            fs::copy_file(other(), path());
            break;
        case Deed::Removed:
            fs::remove(path());
            break;
        case Deed::Overwritten:
            fs::copy_file(other(), path(), fs::copy_options::overwrite_existing);
            break;
        case Deed::OverwrittenByOlder:
            fs::copy_file(older(), path(), fs::copy_options::overwrite_existing);
            break;
        case Deed::Emptied:
            fs::resize_file(path(), 0);
            break;
        }
        m_left = readFile(path());
        m_done = true;
    }

    // The file under the name is what the other program has left, nothing lies beside it, and one that was moved
    // away is whole and as it was.
    void expectNothingTouched(Deed deed) const {
        EXPECT_EQ(fs::exists(path()), deed != Deed::Removed);
        EXPECT_TRUE(readFile(path()) == m_left);
        EXPECT_FALSE(fs::exists(path().string() + "-journal"));
        if (deed == Deed::MovedAway) {
            EXPECT_TRUE(readFile(moved()) == m_original);
        }
    }

    fs::path half() const { return folder() / "half"; }
    // A copy of a catalogue and its journal as a program leaves them that is killed in the middle of a change.
    void leaveHalfAChange(const fs::path& catalogue) const {
        RawDatabase another(catalogue, FaultVfs::name());
        another.execute("PRAGMA cache_size=3; BEGIN; UPDATE Files SET \"file name\" = 'changed'");
        fs::copy_file(catalogue, half());
        fs::copy_file(catalogue.string() + "-journal", half().string() + "-journal");
    }

    // In place, so that the file does not grow.
    static void changeRows(DataSource& discs) {
        const auto files = discs.Database()->OpenRecordset("Files");
        for (; !files->Eof(); files->MoveNext()) {
            files->Edit();
            files->Fields("file size") = 6;
            files->Update();
        }
    }

    // The description of the error; empty for none.
    static std::string told(const std::function<void()>& action) {
        try {
            action();
            return {};
        } catch (const base::RuntimeError& error) {
            return error.description();
        }
    }

    static constexpr const char* kReplaced = "The catalogue file was replaced, removed or changed by another program";

    std::string m_original;
    std::string m_left;
    bool m_done = false;
};

class ForeignDeeds : public FileGuard, public testing::WithParamInterface<Deed> {};

TEST_P(ForeignDeeds, AtAnyPointOfATransactionCommitNothingAndTouchNothing) {
    int acted = 0;
    for (int at = 0;; ++at) {
        SCOPED_TRACE(at);
        putBack();
        m_done = false;
        auto discs = source();
        disk.actAt(at, [this] { perform(GetParam()); });
        // As a scan does, which passes over what fails on the way.
        std::string error = told([] { DBEngine::BeginTrans(); });
        if (error.empty()) {
            base::skipErrors([&] { add(discs->Recordset(), 2); });
            base::skipErrors([&] { addLongNames(*discs, 200); });
            error = told([] { DBEngine::CommitTrans(); });
        }
        const int operations = disk.operations();
        discs.reset();
        disk.heal();
        ASSERT_FALSE(DBEngine::InTransaction());
        if (at >= operations)
            break;
        ASSERT_EQ(m_done, !error.empty());
        if (!m_done)
            continue;
        ++acted;
        ASSERT_THAT(error, testing::HasSubstr(kReplaced));
        // The last operation deletes the journal: what was moved away then has been written whole.
        if (at + 1 < operations)
            ASSERT_NO_FATAL_FAILURE(expectNothingTouched(GetParam()));
        else
            ASSERT_TRUE(readFile(path()) == m_left);
        if (GetParam() == Deed::Replaced || GetParam() == Deed::Overwritten) {
            ASSERT_EQ(count("Files"), 900);
        }
    }
    EXPECT_GT(acted, 20);
}

TEST_P(ForeignDeeds, BeforeATransactionKeepItFromBeginning) {
    const auto discs = source();
    perform(GetParam());
    EXPECT_THAT(told([] { DBEngine::BeginTrans(); }), testing::HasSubstr(kReplaced));
    EXPECT_FALSE(DBEngine::InTransaction());
    expectNothingTouched(GetParam());
}

TEST_P(ForeignDeeds, KeepASingleRowFromBeingSavedAndASecondHandleFromOpening) {
    auto discs = source();
    discs->Recordset().Edit();
    discs->Recordset()("prefered name") = "new";
    perform(GetParam());
    EXPECT_EQ(errorOf([&] { discs->Recordset().Update(); }), number(ErrorNumber::CatalogueReplaced));
    EXPECT_EQ(errorOf([&] { discs->Database()->Execute("delete * from Discs"); }),
              number(ErrorNumber::CatalogueReplaced));
    EXPECT_EQ(errorOf([&] { open(); }), number(ErrorNumber::CatalogueReplaced));
    expectNothingTouched(GetParam());
    discs.reset();
    expectNothingTouched(GetParam());
    const bool whole = GetParam() != Deed::Removed && GetParam() != Deed::Emptied;
    EXPECT_EQ(errorOf([&] { open()->OpenRecordset("Discs"); }) == 0, whole);
}

TEST_P(ForeignDeeds, AreToldInTheMiddleOfATransactionNotAtItsEndAlone) {
    const auto discs = source();
    DBEngine::BeginTrans();
    addLongNames(*discs, 200);
    perform(GetParam());
    base::skipErrors([&] { addLongNames(*discs, 64); });
    EXPECT_THAT(told([&] { add(discs->Recordset(), 2); }), testing::HasSubstr(kReplaced));
    expectNothingTouched(GetParam());
    EXPECT_THAT(told([] { DBEngine::CommitTrans(); }), testing::HasSubstr(kReplaced));
    expectNothingTouched(GetParam());
}

TEST_P(ForeignDeeds, DoNotReachAFileThroughATransactionThatIsGivenUp) {
    auto discs = source();
    DBEngine::BeginTrans();
    addLongNames(*discs, 200);
    perform(GetParam());
    discs.reset();
    expectNothingTouched(GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, ForeignDeeds,
                         testing::Values(Deed::Replaced, Deed::MovedAway, Deed::Removed, Deed::Overwritten,
                                         Deed::OverwrittenByOlder, Deed::Emptied),
                         testing::PrintToStringParamName());

// ---- Other ways to meet another file

TEST_F(FileGuard, AFileThatWasOnlyTouchedIsRolledBackWhole) {
    auto discs = source();
    DBEngine::BeginTrans();
    addLongNames(*discs, 200);
    ASSERT_FALSE(readFile(path()) == m_original);
    touch();
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::CatalogueReplaced));
    EXPECT_TRUE(readFile(path()) == m_original);
    add(discs->Recordset(), 2);
    EXPECT_EQ(count("Discs"), 2);
}

TEST_F(FileGuard, AFileThatTheRollbackLeavesAsAnotherStaysForeign) {
    RawDatabase(untouched())
        .execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
                 "INSERT INTO Files(\"file size\") SELECT 5 FROM n");
    const auto countOn = [this] {
        overwriteFile(path(), 24, std::string_view("\0\0\7\7", 4));
        touch();
    };
    const auto cutShort = [this] { fs::resize_file(path(), fs::file_size(path()) - 1); };
    for (const std::function<void()>& act : std::vector<std::function<void()>>{countOn, cutShort}) {
        putBack();
        auto discs = source();
        DBEngine::BeginTrans();
        changeRows(*discs);
        ASSERT_FALSE(readFile(path()) == readFile(untouched()));
        act();
        EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::CatalogueReplaced));
        m_left = readFile(path());
        EXPECT_EQ(errorOf([&] { add(discs->Recordset(), 2); }), number(ErrorNumber::CatalogueReplaced));
        EXPECT_TRUE(readFile(path()) == m_left);
        EXPECT_EQ(errorOf([&] { open(); }), number(ErrorNumber::CatalogueReplaced));
        discs.reset();
        EXPECT_EQ(count("Discs"), 1);
    }
}

TEST_F(FileGuard, AFileMovedAwayAndBackIsItsOwnAgain) {
    const auto discs = source();
    fs::rename(path(), moved());
    EXPECT_NE(errorOf([&] { add(discs->Recordset(), 2); }), 0);
    fs::rename(moved(), path());
    discs->Recordset().Update();
    EXPECT_EQ(count("Discs"), 2);
}

TEST_F(FileGuard, AnotherProgramsJournalBesideTheNewFileIsLeftAlone) {
    const auto discs = source();
    const auto rows = discs->Database()->OpenRecordset("Files");
    perform(Deed::MovedAway);
    RawDatabase another(path());
    another.execute("PRAGMA cache_size=3; BEGIN; UPDATE Files SET \"file name\" = 'changed'");
    const std::string journal = path().string() + "-journal";
    ASSERT_TRUE(fs::exists(journal));
    // A look at the file that was moved away must not play that journal into it.
    EXPECT_EQ(discs->Database()->OpenRecordset("select * from Discs")->RecordCount(), 1);
    EXPECT_EQ(errorOf([&] { add(discs->Recordset(), 2); }), number(ErrorNumber::CatalogueReplaced));
    EXPECT_TRUE(fs::exists(journal));
    EXPECT_TRUE(readFile(moved()) == m_original);
    another.execute("ROLLBACK");
    EXPECT_EQ(another.text("SELECT count(*) FROM Files WHERE \"file name\" = 'changed'"), "0");
    EXPECT_EQ(another.text("PRAGMA integrity_check"), "ok");
}

TEST_F(FileGuard, ALinkThatLeadsElsewhereNowIsNoticed) {
    const fs::path link = folder() / "link.db";
    fs::create_symlink(path(), link);
    DataSource discs;
    discs.SetDatabaseName(link);
    discs.SetRecordSource("Discs");
    discs.Refresh();
    fs::remove(link);
    fs::create_symlink(other(), link);
    EXPECT_EQ(errorOf([&] { DBEngine::OpenDatabase(link); }), number(ErrorNumber::CatalogueReplaced));
    discs.Close();
    EXPECT_EQ(DBEngine::OpenDatabase(link)->OpenRecordset("Files")->RecordCount(), 900);
}

TEST_F(FileGuard, AHandleThatNobodyWorksThroughMakesRoomForTheNewFile) {
    const auto idle = open();
    perform(Deed::Replaced);
    EXPECT_EQ(open()->OpenRecordset("Files")->RecordCount(), 900);
    EXPECT_FALSE(idle->IsOpen());
}

TEST_F(FileGuard, WhatAnotherProgramWritesByTheRulesIsNoReasonToRefuse) {
    const auto discs = source();
    for (int i = 2; i < 5; ++i) {
        RawDatabase(path()).execute("INSERT INTO Discs(\"id number\") VALUES(" + std::to_string(10 * i) + ")");
        add(discs->Recordset(), i);
    }
    RawDatabase(path()).execute("PRAGMA cache_size=3; BEGIN; UPDATE Files SET \"file size\" = 7;"
                                "ROLLBACK; VACUUM");
    add(discs->Recordset(), 5);
    EXPECT_EQ(count("Discs"), 8);
}

TEST_F(FileGuard, NoPageOfACopyThatWentAnotherWayIsMixedWithTheFilesOwn) {
    const auto database = open();
    const auto discs = database->OpenRecordset("Discs");
    const auto files = database->OpenRecordset("Files");
    discs->Edit();
    (*discs)("prefered name") = "ours";
    discs->Update();
    fs::copy_file(untouched(), moved());
    RawDatabase(moved()).execute("UPDATE Files SET \"file name\" = 'theirs'");
    ASSERT_EQ(readFile(path()).substr(0, 100), readFile(moved()).substr(0, 100));
    fs::copy_file(moved(), path(), fs::copy_options::overwrite_existing);
    fs::last_write_time(path(), fs::file_time_type::clock::now() + std::chrono::hours(1));
    const auto named = [&](const char* query) { return database->OpenRecordset(query)->RecordCount(); };
    EXPECT_EQ(named("select * from Files where [file name] like 'theirs'"), 150);
    EXPECT_EQ(named("select * from Discs where [prefered name] like 'old'"), 1);
    files->Edit();
    (*files)("file size") = -6;
    files->Update();
    RawDatabase raw(path());
    EXPECT_EQ(raw.text("SELECT count(*) FROM Files WHERE \"file name\" = 'theirs'"), "150");
    EXPECT_EQ(raw.text("SELECT count(*) FROM Files WHERE \"file size\" = -6"), "1");
    EXPECT_EQ(raw.text("SELECT \"prefered name\" FROM Discs"), "old");
    EXPECT_EQ(raw.text("PRAGMA integrity_check"), "ok");
}

TEST_F(FileGuard, WhatTheConnectionWritesItselfKeepsItsPages) {
    const auto database = open();
    const auto files = database->OpenRecordset("Files");
    const auto version = [&] { return database->store()->connection().number("PRAGMA data_version"); };
    const int64_t before = version();
    for (int i = 0; i < 3; ++i) {
        files->Edit();
        (*files)("file size") = i;
        files->Update();
    }
    DBEngine::BeginTrans();
    files->MoveNext();
    files->Delete();
    DBEngine::CommitTrans();
    EXPECT_EQ(version(), before);
}

TEST_F(FileGuard, AJournalThatADeadProgramLeftIsPlayedBackAsEver) {
    const auto discs = source();
    leaveHalfAChange(path());
    fs::copy_file(half(), path(), fs::copy_options::overwrite_existing);
    fs::rename(half().string() + "-journal", path().string() + "-journal");
    EXPECT_EQ(discs->Database()->OpenRecordset("select * from Files where [file name] like 'changed'")->RecordCount(),
              0);
    EXPECT_TRUE(readFile(path()) == m_original);
    add(discs->Recordset(), 2);
    EXPECT_EQ(count("Discs"), 2);
}

TEST_F(FileGuard, AJournalThatADeadProgramLeftOfALongerFileIsSetAside) {
    leaveHalfAChange(other());
    const std::string journal = path().string() + "-journal";
    fs::copy_file(half().string() + "-journal", journal);
    EXPECT_EQ(count("Files"), 150);
    EXPECT_TRUE(readFile(path()) == m_original);
    addDisc(2, "new");
    EXPECT_FALSE(fs::exists(journal));
    EXPECT_TRUE(readFile(journal + ".1") == readFile(half().string() + "-journal"));
}

TEST_F(FileGuard, AJournalIsLeftToAProgramThatIsChangingTheFile) {
    leaveHalfAChange(other());
    RawDatabase another(path());
    another.execute("BEGIN IMMEDIATE");
    const std::string journal = path().string() + "-journal";
    fs::copy_file(half().string() + "-journal", journal, fs::copy_options::overwrite_existing);
    EXPECT_EQ(count("Files"), 150);
    EXPECT_TRUE(fs::exists(journal));
}

// ---- Journal modes

class JournalModes : public Shelf {
protected:
    static std::string modeOf(const Database& database) {
        return RawDatabase(database.Name()).text("PRAGMA journal_mode");
    }
};

TEST_F(JournalModes, AWriteAheadLogIsTurnedBackBeforeASingleRow) {
    const auto database = open();
    const auto discs = database->OpenRecordset("Discs");
    RawDatabase(path()).execute("PRAGMA journal_mode=WAL; INSERT INTO Discs VALUES(1, 'one')");
    discs->AddNew();
    (*discs)("id number") = 2;
    discs->Update();
    EXPECT_EQ(modeOf(*database), "delete");
    EXPECT_EQ(count("Discs"), 2);
    EXPECT_THAT(listing(), ElementsAre("shelf.db"));
}

TEST_F(JournalModes, AndBeforeATransaction) {
    const auto database = open();
    RawDatabase(path()).execute("PRAGMA journal_mode=WAL; INSERT INTO Discs VALUES(1, 'one')");
    DBEngine::BeginTrans();
    addDisc(2, "two");
    EXPECT_FALSE(fs::exists(path().string() + "-wal"));
    DBEngine::CommitTrans();
    EXPECT_EQ(modeOf(*database), "delete");
    EXPECT_EQ(count("Discs"), 2);
}

TEST_F(JournalModes, AProgramThatKeepsTheLogOpenKeepsUsFromWriting) {
    Connection::setLockWait(0);
    const auto database = open();
    const auto discs = database->OpenRecordset("Discs");
    {
        RawDatabase another(path());
        another.execute("PRAGMA journal_mode=WAL; INSERT INTO Discs VALUES(1, 'one')");
        EXPECT_EQ(errorOf([] { DBEngine::BeginTrans(); }), number(ErrorNumber::CatalogueLocked));
        discs->AddNew();
        (*discs)("id number") = 2;
        EXPECT_EQ(errorOf([&] { discs->Update(); }), number(ErrorNumber::CatalogueLocked));
        EXPECT_EQ(database->OpenRecordset("Discs")->RecordCount(), 1);
    }
    discs->Update();
    EXPECT_EQ(count("Discs"), 2);
    EXPECT_EQ(modeOf(*database), "delete");
}

} // namespace
} // namespace discaro::db::test

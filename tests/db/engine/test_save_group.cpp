#include "db/FaultyShelf.h"
#include "db/engine/SaveGroup.h"
#include "db/engine/Store.h"
#include "support/RawDatabase.h"
#include "support/RefusedMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <new>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using discaro::test::FaultVfs;
using discaro::test::RawDatabase;
using testing::ElementsAre;

constexpr int kFiles = 3000;

// A file of some hundred pages on a disk that can fail. A round changes one row in thirty, from the first on.
class SaveGroups : public FaultyShelf {
protected:
    SaveGroups() {
        addDisc(1, "one");
        addDisc(2, "two");
        addDirectories({"C1D1"});
        addFiles("C1D1", kFiles);
    }

    // How many saves were refused.
    static int change(Recordset& files, double size) {
        int refused = 0;
        for (files.MoveFirst(); !files.Eof(); files.MoveTo(files.AbsolutePosition() + 30)) {
            refused += base::skipErrors([&] {
                files.Edit();
                files("file size") = size;
                files.Update();
            })
                           ? 0
                           : 1;
            if (files.AbsolutePosition() + 30 >= kFiles)
                break;
        }
        return refused;
    }
    static void rename(Recordset& discs, int place, const char* name = "new") {
        discs.MoveTo(place);
        discs.Edit();
        discs("prefered name") = name;
        discs.Update();
    }
    // Seen by another program.
    int changed(double size) const {
        RawDatabase raw(path(), FaultVfs::name());
        EXPECT_EQ(raw.text("PRAGMA integrity_check"), "ok");
        return std::stoi(raw.text("SELECT count(*) FROM Files WHERE \"file size\"=" + std::to_string(size)));
    }
    bool isLocked() const {
        RawDatabase raw(path(), FaultVfs::name());
        try {
            raw.execute("BEGIN IMMEDIATE");
        } catch (const std::runtime_error&) {
            return true;
        }
        return false;
    }
    // Operations of the disk that a piece of work takes.
    template <typename Work>
    int operations(Work work) {
        disk.heal();
        work();
        return disk.operations();
    }
};

TEST_F(SaveGroups, CostOneCommit) {
    const auto files = open()->OpenRecordset("Files");
    const int single = operations([&] { change(*files, -1); });
    const int grouped = operations([&] {
        SaveGroup group;
        change(*files, -2);
        group.End();
    });
    EXPECT_EQ(changed(-2), 100);
    // Each of a hundred pages goes into the journal and into the file, once either way; all else is done once only.
    EXPECT_LT(grouped, 100 * 5);
    EXPECT_GT(single, 100 * 8);
}

TEST_F(SaveGroups, AreSeenAtOnceAndReachTheDiscAtTheEnd) {
    const auto files = open()->OpenRecordset("Files");
    {
        const SaveGroup group;
        change(*files, -1);
        EXPECT_EQ(open()->OpenRecordset("select * from Files where [file size] = -1")->RecordCount(), 100);
        EXPECT_TRUE(isLocked());
    }
    EXPECT_EQ(changed(-1), 100);
}

TEST_F(SaveGroups, GoOnAfterTheirEnd) {
    const auto files = open()->OpenRecordset("Files");
    SaveGroup group;
    for (const double size : {-1.0, -2.0}) {
        change(*files, size);
        group.End();
        EXPECT_EQ(changed(size), 100);
    }
}

TEST_F(SaveGroups, ARefusedSaveTakesNoOtherWithIt) {
    const auto discs = open()->OpenRecordset("Discs");
    SaveGroup group;
    const auto renumber = [&](int place, int given) {
        discs->MoveTo(place);
        discs->Edit();
        (*discs)("id number") = given;
        discs->Update();
    };
    renumber(0, 7);
    EXPECT_EQ(errorOf([&] { renumber(1, 7); }), number(ErrorNumber::RuleViolated));
    renumber(1, 8);
    group.End();
    RawDatabase raw(path());
    EXPECT_EQ(raw.text("SELECT group_concat(\"id number\") FROM Discs"), "7,8");
}

TEST_F(SaveGroups, OnADiskTooFullForTheGroupEachIsSavedByItself) {
    const auto files = open()->OpenRecordset("Files");
    disk.limitSpace(32 << 10); // the journal of a row, not of a hundred
    SaveGroup group;
    EXPECT_EQ(change(*files, -1), 0);
    EXPECT_TRUE(disk.failed());
    group.End();
    disk.heal();
    EXPECT_EQ(changed(-1), 100);
}

TEST_F(SaveGroups, OnADiskTooFullForAnyEachIsRefused) {
    const auto files = open()->OpenRecordset("Files");
    SaveGroup group;
    disk.limitSpace(1 << 10);
    EXPECT_EQ(change(*files, -1), 100);
    disk.heal();
    group.End();
    EXPECT_EQ(changed(-1), 0);
}

TEST_F(SaveGroups, OneFailureOfTheDiskLosesNothing) {
    const auto files = open()->OpenRecordset("Files");
    const int all = operations([&] {
        const SaveGroup group;
        change(*files, -1);
    });
    for (const auto fault : {FaultVfs::Fault::DiskFull, FaultVfs::Fault::WriteError})
        for (int failing = 0; failing < all; failing += failing < all - 40 ? 23 : 1) {
            SCOPED_TRACE(failing);
            const double size = -2 - failing;
            disk.failAt(failing, fault, false);
            SaveGroup group;
            const int refused = change(*files, size);
            const int lost = errorOf([&] { group.End(); }) == 0 ? 0 : 1;
            EXPECT_TRUE(disk.failed());
            disk.heal();
            EXPECT_GE(changed(size), 100 - refused - lost);
            ASSERT_LE(refused + lost, 1);
        }
}

TEST_F(SaveGroups, ARowThatGoesWhileTheyAreDoneAgainIsToldAtTheEnd) {
    const auto database = open();
    const auto discs = database->OpenRecordset("Discs");
    const std::string done = database->store()->connection().text("SELECT total_changes()");
    // What the connection has counted stays when the group is undone: the second time disc 2 goes with the first save.
    RawDatabase(path(), FaultVfs::name())
        .execute("CREATE TRIGGER losing AFTER UPDATE ON Discs WHEN new.\"id number\" = 1 "
                 "AND total_changes() >= " +
                 done + " + 2 BEGIN DELETE FROM Discs WHERE \"id number\" = 2; END");
    SaveGroup group;
    rename(*discs, 0);
    rename(*discs, 1);
    disk.failAt(0, FaultVfs::Fault::DiskFull, false);
    EXPECT_EQ(errorOf([&] { group.End(); }), number(ErrorNumber::RecordGone));
    EXPECT_TRUE(disk.failed());
    EXPECT_EQ(RawDatabase(path()).text("SELECT group_concat(\"prefered name\") FROM Discs"), "new");
    EXPECT_EQ(errorOf([&] { group.End(); }), 0);
}

TEST_F(SaveGroups, AfterAFullGroupThatCouldNotBeCommittedEachIsSavedByItself) {
    const auto discs = open()->OpenRecordset("Discs");
    SaveGroup group(2);
    rename(*discs, 0);
    rename(*discs, 1);
    EXPECT_TRUE(isLocked());
    disk.failAt(0, FaultVfs::Fault::DiskFull, false);
    rename(*discs, 0, "newer");
    EXPECT_TRUE(disk.failed());
    EXPECT_FALSE(isLocked());
    EXPECT_EQ(RawDatabase(path()).text("SELECT group_concat(\"prefered name\") FROM Discs"), "newer,new");
    group.End();
}

TEST_F(SaveGroups, WhatWasCommittedIsNotDoneAgain) {
    const auto discs = open()->OpenRecordset("Discs");
    SaveGroup group;
    rename(*discs, 0);
    group.End();
    RawDatabase(path(), FaultVfs::name()).execute("UPDATE Discs SET \"prefered name\" = 'theirs'");
    rename(*discs, 1);
    disk.failAt(0, FaultVfs::Fault::DiskFull, false);
    group.End();
    EXPECT_TRUE(disk.failed());
    EXPECT_EQ(RawDatabase(path()).text("SELECT group_concat(\"prefered name\") FROM Discs"), "theirs,new");
}

TEST_F(SaveGroups, AKillLeavesNoneOfThem) {
    const pid_t child = ::fork();
    if (child == 0) {
        const auto files = open()->OpenRecordset("Files");
        SaveGroup group;
        change(*files, -1);
        std::raise(SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(changed(-1), 0);
}

TEST_F(SaveGroups, WithinATransactionTheyBelongToIt) {
    DataSource files;
    files.SetDatabaseName(path());
    files.SetRecordSource("Files");
    files.Refresh();
    {
        SaveGroup group;
        change(files.Recordset(), -1);
        DBEngine::BeginTrans();
        EXPECT_EQ(change(files.Recordset(), -2), 0);
        group.End();
        EXPECT_TRUE(DBEngine::InTransaction());
    }
    files.Close();
    EXPECT_EQ(changed(-2), 0);
    EXPECT_EQ(changed(-1), 100);
}

TEST_F(SaveGroups, OtherWritesCommitWhatWasSavedBefore) {
    const auto database = open();
    const auto files = database->OpenRecordset("Files");
    const auto discs = database->OpenRecordset("Discs");
    SaveGroup group;
    change(*files, -1);
    discs->AddNew();
    (*discs)("id number") = 3;
    discs->Update();
    EXPECT_EQ(changed(-1), 100);
    change(*files, -2);
    discs->MoveTo(1);
    discs->Delete();
    EXPECT_EQ(changed(-2), 100);
    change(*files, -3);
    database->Execute("delete * from Discs where [id number] = 3");
    EXPECT_EQ(changed(-3), 100);
}

TEST_F(SaveGroups, AnInnerOneBelongsToTheOuter) {
    const auto files = open()->OpenRecordset("Files");
    SaveGroup outer;
    {
        SaveGroup inner;
        change(*files, -1);
        inner.End();
    }
    EXPECT_TRUE(isLocked());
    outer.End();
    EXPECT_EQ(changed(-1), 100);
}

TEST_F(SaveGroups, ALockedFileRefusesEachAsItWouldWithoutAGroup) {
    Connection::setLockWait(0);
    const auto files = open()->OpenRecordset("Files");
    SaveGroup group;
    {
        RawDatabase other(path(), FaultVfs::name());
        other.execute("BEGIN IMMEDIATE");
        files->Edit();
        (*files)("file size") = -1;
        EXPECT_EQ(errorOf([&] { files->Update(); }), number(ErrorNumber::CatalogueLocked));
    }
    EXPECT_EQ(change(*files, -1), 0);
    group.End();
    EXPECT_EQ(changed(-1), 100);
}

TEST_F(SaveGroups, ASaveThatRunsOutOfMemoryTakesNoOtherWithIt) {
    const auto discs = open()->OpenRecordset("Discs");
    SaveGroup group;
    discs->Edit();
    (*discs)("id number") = 7;
    discs->Update();
    discs->Edit();
    (*discs)("prefered name") = "another name";
    {
        const discaro::test::RefusedMemory refused;
        EXPECT_THROW(discs->Update(), std::bad_alloc);
    }
    group.End();
    EXPECT_EQ(RawDatabase(path()).text("SELECT \"id number\" || \"prefered name\" FROM Discs"), "7one");
}

TEST_F(SaveGroups, RowsThatAnotherProgramHasChangedAreReadAnewAfterASave) {
    const auto files = open()->OpenRecordset("Files");
    for (int moves = 0; moves < 10; ++moves) {
        (*files)("directory number").Text();
        (*files)("file size").Number();
        files->MoveNext(); // reads ahead the fields that are asked for
    }
    RawDatabase(path(), FaultVfs::name()).execute("UPDATE Files SET \"file size\" = 5");
    SaveGroup group;
    files->Edit();
    (*files)("file size") = -1;
    files->Update();
    files->MoveNext();
    EXPECT_EQ((*files)("file size").Number(), 5);
}

} // namespace
} // namespace discaro::db::test

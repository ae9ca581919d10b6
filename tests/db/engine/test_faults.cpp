#include "db/FaultyShelf.h"
#include "db/engine/Engine.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <iterator>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using discaro::test::FaultVfs;
using discaro::test::RawDatabase;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class Faults : public FaultyShelf {
protected:
    Faults() {
        addDisc(1, "old");
        addDirectories({"C1D1"});
        addFiles("C1D1", 150);
        keepAsFirst();
    }

    // A transaction with every kind of write.
    static void writeAll(DataSource& discs) {
        Recordset& rows = discs.Recordset();
        add(rows, 2);
        rows.Edit();
        rows("prefered name") = "new";
        rows.Update();
        addLongNames(discs, 60);
        discs.Database()->Execute("delete * from Directories");
    }

    // Seen through SQLite alone, after what the journal restores.
    std::string state() const {
        RawDatabase raw(path(), FaultVfs::name());
        EXPECT_EQ(raw.text("PRAGMA integrity_check"), "ok");
        return raw.text("SELECT (SELECT group_concat(\"id number\" || \"prefered name\") FROM Discs"
                        " WHERE \"prefered name\" IS NOT NULL) || ' ' || (SELECT count(*) FROM Discs)"
                        " || ' ' || (SELECT count(*) FROM Directories) || ' ' ||"
                        " (SELECT count(*) FROM Files)");
    }

    // Runs the transaction with a fault at an operation; true when it committed.
    bool transact(int operation, FaultVfs::Fault fault, bool lasting) {
        const auto discs = source();
        disk.failAt(operation, fault, lasting);
        const bool committed = base::skipErrors([&] {
            DBEngine::BeginTrans();
            writeAll(*discs);
            DBEngine::CommitTrans();
        });
        m_operations = disk.operations();
        return committed;
    }

    static constexpr const char* kBefore = "1old 1 1 150";
    static constexpr const char* kAfter = "1new 2 0 60";

    int m_operations = 0;
};

TEST_F(Faults, AFailureAtAnyPointCommitsAllOrNothing) {
    ASSERT_TRUE(transact(INT_MAX, FaultVfs::Fault::DiskFull, true));
    ASSERT_EQ(state(), kAfter);
    const int operations = m_operations;
    ASSERT_GT(operations, 50);
    for (const auto fault : {FaultVfs::Fault::DiskFull, FaultVfs::Fault::WriteError})
        for (const bool lasting : {true, false})
            for (int at = 0; at < operations; ++at) {
                putBack();
                const bool committed = transact(at, fault, lasting);
                disk.heal();
                ASSERT_FALSE(DBEngine::InTransaction());
                ASSERT_EQ(state(), committed ? kAfter : kBefore) << "operation " << at;
            }
}

TEST_F(Faults, AProcessThatDiesAtAnyPointLeavesAllOrNothing) {
    ASSERT_TRUE(transact(INT_MAX, FaultVfs::Fault::Death, true));
    const int operations = m_operations;
    int committedAnyway = 0;
    for (int at = 0; at < operations; ++at) {
        putBack();
        const pid_t child = ::fork();
        if (child == 0) {
            transact(at, FaultVfs::Fault::Death, true);
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "operation " << at;
        EXPECT_EQ(count("Discs"), state() == kAfter ? 2 : 1);
        ASSERT_THAT(state(), AnyOf(kBefore, kAfter)) << "operation " << at;
        committedAnyway += state() == kAfter ? 1 : 0;
        EXPECT_THAT(listing(), ElementsAre("shelf.db", "untouched"));
    }
    EXPECT_LE(committedAnyway, 1);
}

class LostTransactions : public Faults {
protected:
    LostTransactions()
        : m_discs(source()) {}

    Recordset& rows() { return m_discs->Recordset(); }

    int errorOfAdding(int number) {
        return errorOf([&] { add(rows(), number); });
    }

    // Writes until the full disk shows.
    int fillDisk() {
        disk.failAt(0, FaultVfs::Fault::DiskFull);
        const int error = errorOf([&] { writeAll(*m_discs); });
        disk.heal();
        return error;
    }

    std::unique_ptr<DataSource> m_discs;
};

TEST_F(LostTransactions, EveryFurtherWriteFailsUntilTheCommitThatFailsToo) {
    DBEngine::BeginTrans();
    EXPECT_EQ(errorOfAdding(7), 0);
    EXPECT_EQ(fillDisk(), number(ErrorNumber::DiskFull));
    EXPECT_TRUE(DBEngine::InTransaction());
    EXPECT_EQ(rows().RecordCount(), 1);
    const int lost = number(ErrorNumber::TransactionLost);
    EXPECT_EQ(errorOfAdding(8), lost);
    EXPECT_EQ(errorOf([&] { m_discs->Database()->Execute("delete * from Discs"); }), lost);
    EXPECT_EQ(errorOf([&] { rows().Delete(); }), lost);
    EXPECT_EQ(errorOf([] { DBEngine::BeginTrans(); }), number(ErrorNumber::TransactionOpen));
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), lost);
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::NoTransaction));
    EXPECT_EQ(errorOfAdding(9), 0);
    EXPECT_EQ(rows().RecordCount(), 2);
}

// What the error that an action throws tells the user.
std::string described(const std::function<void()>& action) {
    try {
        action();
    } catch (const base::RuntimeError& error) {
        return error.description();
    }
    return "nothing";
}

TEST_F(LostTransactions, TellWhatTheyWereLostToUntilTheNextOneBegins) {
    const std::string full = "The transaction was undone after an earlier failure: "
                             "There is not enough space on the disk: database or disk is full";
    DBEngine::BeginTrans();
    EXPECT_EQ(fillDisk(), number(ErrorNumber::DiskFull));
    EXPECT_EQ(described([&] { rows().Delete(); }), full);
    EXPECT_EQ(described([] { DBEngine::CommitTrans(); }), full);
    DBEngine::BeginTrans();
    EXPECT_EQ(errorOfAdding(7), 0);
    m_discs->Database()->store()->connection().execute("ROLLBACK");
    EXPECT_EQ(described([] { DBEngine::CommitTrans(); }), "The transaction was undone after an earlier failure");
}

TEST_F(LostTransactions, TellTheFirstOfSeveralFailuresUnlessTheFileWasReplaced) {
    Transaction& transaction = Engine::instance().transaction();
    const auto lostAfter = [&](std::initializer_list<ErrorNumber> failures) {
        DBEngine::BeginTrans();
        for (const ErrorNumber failure : failures)
            transaction.failureSeen(base::RuntimeError(failure));
        m_discs->Database()->store()->connection().execute("ROLLBACK");
        return described([] { DBEngine::CommitTrans(); });
    };
    const auto told = [](ErrorNumber failure) {
        return "The transaction was undone after an earlier failure: " + base::RuntimeError(failure).description();
    };
    using enum ErrorNumber;
    EXPECT_EQ(lostAfter({StorageFailure, DiskFull}), told(StorageFailure));
    EXPECT_EQ(lostAfter({DiskFull, StorageFailure}), told(DiskFull));
    EXPECT_EQ(lostAfter({RuleViolated, DiskFull}), told(DiskFull)) << "a refusal undoes nothing";
    EXPECT_EQ(lostAfter({DiskFull, CatalogueReplaced}), told(CatalogueReplaced));
}

TEST_F(LostTransactions, ClosingTheDataSourcesEndsIt) {
    DBEngine::BeginTrans();
    EXPECT_EQ(fillDisk(), number(ErrorNumber::DiskFull));
    m_discs->Close();
    EXPECT_FALSE(DBEngine::InTransaction());
    m_discs = source();
    EXPECT_EQ(errorOfAdding(8), 0);
}

TEST_F(LostTransactions, SoDoesAnUndoingBySqliteItself) {
    DBEngine::BeginTrans();
    EXPECT_EQ(errorOfAdding(7), 0);
    m_discs->Database()->store()->connection().execute("ROLLBACK");
    EXPECT_EQ(errorOfAdding(8), number(ErrorNumber::TransactionLost));
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::TransactionLost));
    EXPECT_EQ(rows().RecordCount(), 1);
}

TEST_F(LostTransactions, ACommitNoticesAnUndoingBySqliteItself) {
    DBEngine::BeginTrans();
    EXPECT_EQ(errorOfAdding(7), 0);
    m_discs->Database()->store()->connection().execute("ROLLBACK");
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::TransactionLost));
    EXPECT_FALSE(DBEngine::InTransaction());
}

TEST_F(LostTransactions, AFailingCommitCommitsNothingAndSaysSo) {
    m_discs->Database()->store()->connection().execute("PRAGMA cache_size=-2000");
    DBEngine::BeginTrans();
    EXPECT_EQ(errorOfAdding(7), 0);
    disk.failAt(1, FaultVfs::Fault::DiskFull);
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::DiskFull));
    disk.heal();
    EXPECT_TRUE(disk.operations() == 0);
    EXPECT_FALSE(DBEngine::InTransaction());
    EXPECT_EQ(rows().RecordCount(), 1);
    EXPECT_EQ(errorOfAdding(8), 0);
}

TEST_F(LostTransactions, AWriteErrorOutsideATransactionUndoesThatWriteAlone) {
    EXPECT_EQ(errorOfAdding(7), 0);
    disk.failAt(2, FaultVfs::Fault::WriteError);
    EXPECT_EQ(errorOfAdding(8), number(ErrorNumber::StorageFailure));
    disk.heal();
    EXPECT_EQ(rows().RecordCount(), 2);
    rows().Update();
    EXPECT_EQ(rows().RecordCount(), 3);
}

TEST_F(LostTransactions, ACreationOnAFullDiskLeavesNothing) {
    m_discs->Close();
    for (int at = 0; at < 12; ++at) {
        disk.failAt(at, FaultVfs::Fault::DiskFull);
        EXPECT_EQ(errorOf([&] { make("new.db"); }), number(ErrorNumber::DiskFull)) << at;
        disk.heal();
        ASSERT_THAT(listing(), ElementsAre("shelf.db", "untouched")) << at;
    }
}

} // namespace
} // namespace discaro::db::test

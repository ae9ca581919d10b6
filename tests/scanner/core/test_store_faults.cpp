#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "catalogue/DiscDeletion.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "scanner/core/StoreRig.h"

#include <gmock/gmock.h>

#include <climits>
#include <ostream>
#include <vector>

// A store that refuses a write in the middle of a scan or a deletion: all of it is in the catalogue afterwards, or
// nothing, and the user hears of the latter with its cause.
namespace discaro::test {
namespace {

using testing::HasSubstr;

// One operation of a transaction that is to fail. The last of a transaction deletes the journal, which no full disk
// keeps from succeeding, so that it always fails with a write error.
struct Point {
    FaultVfs::Fault fault;
    bool lasting; // all later operations fail too
    int at;
    bool last;

    const char* cause() const {
        return fault == FaultVfs::Fault::DiskFull && !last ? "There is not enough space on the disk"
                                                           : "The catalogue file could not be read or written";
    }
};

std::vector<Point> pointsOf(int operations) {
    std::vector<Point> points;
    for (const auto fault : {FaultVfs::Fault::DiskFull, FaultVfs::Fault::WriteError})
        for (const bool lasting : {true, false})
            for (int at = 0; at < operations; ++at)
                points.push_back({fault, lasting, at, at == operations - 1});
    return points;
}

std::ostream& operator<<(std::ostream& stream, const Point& point) {
    return stream << "operation " << point.at << (point.lasting ? " and on" : "") << ", " << point.cause();
}

constexpr Point kNone{FaultVfs::Fault::DiskFull, true, INT_MAX, false};

struct Manner {
    const char* name;
    const char* errorAction;
    bool answer; // to every prompt
};

void PrintTo(const Manner& manner, std::ostream* stream) {
    *stream << manner.name;
}

class ScanOverFaults : public StoreRig, public testing::WithParamInterface<Manner> {
protected:
    // Scans with a fault at an operation. Afterwards the sources are closed, as with the window.
    void scan(const Point& point) {
        putBack(Cache::Small);
        rig.watcher.answers.assign(1000, GetParam().answer);
        layer.failAt(point.at, point.fault, point.lasting);
        rig.scan(action(GetParam().errorAction));
        operations = layer.operations();
        rig.close();
        layer.heal();
        ASSERT_FALSE(db::DBEngine::InTransaction());
    }

    int operations = 0;
};

TEST_P(ScanOverFaults, AScanIsThereWholeOrNotAtAllAndItsUserKnowsWhy) {
    scan(kNone);
    ASSERT_EQ(rig.watcher.log.back(), "finished");
    const std::string after = wholeCatalogue();
    ASSERT_NE(after, before);
    const int all = operations;
    ASSERT_GT(all, 50);
    int failures = 0;
    for (const Point& point : pointsOf(all)) {
        SCOPED_TRACE(point);
        ASSERT_NO_FATAL_FAILURE(scan(point));
        const bool whole = rig.watcher.log.back() == "finished";
        ASSERT_EQ(wholeCatalogue(), whole ? after : before);
        ASSERT_THAT(toldReason(), HasSubstr(whole ? "" : point.cause()));
        ASSERT_EQ(toldReason().empty(), whole);
        failures += whole ? 0 : 1;
    }
    EXPECT_GT(failures, all);
}

TEST_P(ScanOverFaults, TheNextScanAfterAFailedOneWorks) {
    scan(kNone);
    const std::string after = wholeCatalogue();
    scan({FaultVfs::Fault::DiskFull, true, operations / 2, false});
    ASSERT_EQ(wholeCatalogue(), before);
    rig.open();
    app::Module1::ScanCancelled = 0;
    rig.scan(action(GetParam().errorAction));
    EXPECT_EQ(rig.watcher.log.back(), "finished");
    rig.close();
    EXPECT_EQ(wholeCatalogue(), after);
}

INSTANTIATE_TEST_SUITE_P(All, ScanOverFaults,
                         testing::Values(Manner{"Ignore", "ignore", false}, Manner{"CancelGoOn", "cancel", false},
                                         Manner{"CancelStop", "cancel", true}),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- A disk that fills up

class FillingDisk : public StoreRig {
protected:
    static constexpr int64_t kStep = 512;

    // With so much space left. The sources are closed afterwards.
    bool scan(int64_t space, Cache cache, const char* errorAction) {
        putBack(cache);
        layer.limitSpace(space);
        rig.scan(action(errorAction));
        rig.close();
        const bool full = layer.failed();
        layer.heal();
        EXPECT_EQ(full, rig.watcher.log.back() == "stopped");
        return !full;
    }

    void scanWithMoreAndMoreSpace(Cache cache, const char* errorAction) {
        int64_t space = 0;
        int points = 0;
        for (; !scan(space, cache, errorAction); space += kStep, ++points) {
            SCOPED_TRACE(testing::Message() << space << " bytes left");
            ASSERT_EQ(wholeCatalogue(), before);
            ASSERT_THAT(toldReason(), HasSubstr("There is not enough space on the disk"));
            ASSERT_LT(points, 1000);
        }
        EXPECT_GT(points, 20);
        EXPECT_NE(wholeCatalogue(), before);
    }
};

TEST_F(FillingDisk, MidwayLeavesTheCatalogueAsItWasAndNamesTheCause) {
    scanWithMoreAndMoreSpace(Cache::Small, "ignore");
}

TEST_F(FillingDisk, MidwayDoesSoTooWhenErrorsAreAskedAbout) {
    scanWithMoreAndMoreSpace(Cache::Small, "cancel");
}

TEST_F(FillingDisk, AtTheCommitLeavesTheCatalogueAsItWasAndNamesTheCause) {
    scanWithMoreAndMoreSpace(Cache::Usual, "ignore");
}

// ---- The deletion of a disc

class DeletionOverFaults : public StoreRig {
protected:
    // As the window does it: what it doesn't get through, it doesn't commit. Returns what the user reads, empty when
    // the deletion succeeded.
    std::string deleteFirstDisc(const Point& point) {
        putBack(Cache::Small);
        layer.failAt(point.at, point.fault, point.lasting);
        std::string told;
        try {
            rig.discs.Recordset().FindFirst("[id number] = 1");
            catalogue::deleteCurrentDisc(rig.discs.Recordset());
            catalogue::deleteTagsOfDisc(1);
            catalogue::RefreshMasterTotals(rig.masterSource);
            db::DBEngine::CommitTrans();
        } catch (const base::RuntimeError& error) {
            told = error.description();
        }
        operations = layer.operations();
        closeAll();
        layer.heal();
        EXPECT_FALSE(db::DBEngine::InTransaction());
        return told;
    }

    void tag(int disc) {
        const auto tags = db::DBEngine::OpenDatabase(app::Module1::cataloguePath())->OpenRecordset("Prog Tag");
        tags->AddNew();
        tags->Fields(catalogue::progTag::kProgName) = "A program";
        tags->Fields(catalogue::progTag::kCDNumber) = disc;
        tags->Update();
    }

    void SetUp() override {
        putBack(Cache::Usual);
        rig.scan();
        tag(1);
        tag(2);
        keepAsFirst();
        ASSERT_EQ(rig.watcher.log.back(), "finished");
    }

    int operations = 0;
};

TEST_F(DeletionOverFaults, ADiscIsGoneWholeOrNotAtAll) {
    ASSERT_EQ(deleteFirstDisc(kNone), "");
    const std::string after = wholeCatalogue();
    ASSERT_NE(after, before);
    const int all = operations;
    ASSERT_GT(all, 10);
    for (const Point& point : pointsOf(all)) {
        SCOPED_TRACE(point);
        const std::string told = deleteFirstDisc(point);
        ASSERT_EQ(wholeCatalogue(), told.empty() ? after : before);
        ASSERT_THAT(told, HasSubstr(told.empty() ? "" : point.cause()));
    }
}

} // namespace
} // namespace discaro::test

#include "db/Shelf.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/WaitOnce.h"
#include "support/CountedSleeps.h"
#include "support/RawDatabase.h"

namespace discaro::db::test {
namespace {

using base::ErrorNumber;

constexpr int kOneWait = 2000; // milliseconds

// Another program that has the file to itself.
class Locks : public Shelf {
protected:
    void lock() { m_other.execute("BEGIN EXCLUSIVE"); }
    void unlock() { m_other.execute("ROLLBACK"); }
    static int find(Recordset& discs, const char* disc) {
        return errorOf([&] { discs.FindFirst(std::string("[id number] = ") + disc); });
    }

    discaro::test::CountedSleeps m_sleeps;

private:
    discaro::test::RawDatabase m_other{path()};
};

} // namespace

TEST_F(Locks, EveryStatementWaits) {
    addDisc(1, "one");
    addDisc(2, "two");
    const auto discs = open()->OpenRecordset("Discs");
    lock();
    EXPECT_EQ(find(*discs, "2"), number(ErrorNumber::CatalogueLocked));
    EXPECT_EQ(m_sleeps.takeMilliseconds(), kOneWait);
    EXPECT_EQ(find(*discs, "1"), number(ErrorNumber::CatalogueLocked));
    EXPECT_EQ(m_sleeps.takeMilliseconds(), kOneWait);
}

TEST_F(Locks, ASearchInVainLeavesTheRowThatWasRead) {
    addDisc(1, "one");
    addDisc(2, "two");
    const auto discs = open()->OpenRecordset("Discs");
    lock();
    EXPECT_EQ(find(*discs, "2"), number(ErrorNumber::CatalogueLocked));
    m_sleeps.takeMilliseconds();
    EXPECT_EQ((*discs)("id number").Text(), "1");
    EXPECT_EQ((*discs)("prefered name").Text(), "one");
    EXPECT_EQ(m_sleeps.takeMilliseconds(), 0) << "nothing is read again";
    unlock();
    EXPECT_EQ(find(*discs, "2"), 0);
    EXPECT_EQ((*discs)("prefered name").Text(), "two");
}

TEST_F(Locks, ASearchThatFindsNothingLeavesTheRowThatWasRead) {
    addDisc(1, "one");
    const auto discs = open()->OpenRecordset("Discs");
    EXPECT_EQ(find(*discs, "9"), 0);
    EXPECT_TRUE(discs->NoMatch());
    lock();
    EXPECT_EQ((*discs)("prefered name").Text(), "one");
    EXPECT_EQ(m_sleeps.takeMilliseconds(), 0);
}

TEST_F(Locks, AHandlerCanWaitOnceInAll) {
    addDisc(1, "one");
    const auto discs = open()->OpenRecordset("Discs");
    lock();
    {
        const WaitOnce once;
        for (int again = 0; again < 5; ++again) {
            const WaitOnce within;
            EXPECT_EQ(find(*discs, "1"), number(ErrorNumber::CatalogueLocked));
        }
        EXPECT_EQ(m_sleeps.takeMilliseconds(), kOneWait);
        {
            const WaitOnce::Pause yield;
            EXPECT_EQ(find(*discs, "1"), number(ErrorNumber::CatalogueLocked));
            EXPECT_EQ(m_sleeps.takeMilliseconds(), kOneWait) << "as another handler would";
        }
        EXPECT_EQ(find(*discs, "1"), number(ErrorNumber::CatalogueLocked));
        EXPECT_EQ(m_sleeps.takeMilliseconds(), 0);
        unlock();
        EXPECT_EQ(find(*discs, "1"), 0);
        lock();
    }
    EXPECT_EQ(find(*discs, "1"), number(ErrorNumber::CatalogueLocked));
    EXPECT_EQ(m_sleeps.takeMilliseconds(), kOneWait);
}

} // namespace discaro::db::test

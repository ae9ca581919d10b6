#include "db/Shelf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using testing::ElementsAre;

class Transactions : public Shelf {
protected:
    std::unique_ptr<DataSource> source(const char* table) const {
        auto opened = std::make_unique<DataSource>();
        opened->SetDatabaseName(path());
        opened->SetRecordSource(table);
        opened->Refresh();
        return opened;
    }

    static void add(DataSource& discs, int number) {
        discs.Recordset().AddNew();
        discs.Recordset()("id number") = number;
        discs.Recordset().Update();
    }
};

TEST_F(Transactions, CommitKeepsWhatAllHandlesWrote) {
    const auto discs = source("Discs");
    const auto directories = source("Directories");
    DBEngine::BeginTrans();
    add(*discs, 1);
    addDirectories({"C1D1"});
    EXPECT_EQ(open()->Execute("delete * from Files"), 0);
    DBEngine::CommitTrans();
    EXPECT_FALSE(DBEngine::InTransaction());
    discs->Close();
    directories->Close();
    EXPECT_EQ(count("Discs"), 1);
    EXPECT_EQ(count("Directories"), 1);
}

TEST_F(Transactions, ClosingTheLastDataSourceUndoesEveryWrite) {
    addDisc(9, "before");
    auto discs = source("Discs");
    const auto directories = source("Directories");
    const auto catalogue = open();
    DBEngine::BeginTrans();
    add(*discs, 1);
    addDirectories({"C1D1"});
    catalogue->Execute("delete * from Discs where [id number] = 9");
    discs.reset();
    EXPECT_TRUE(DBEngine::InTransaction());
    EXPECT_EQ(count("Directories"), 1);
    directories->Close();
    EXPECT_FALSE(DBEngine::InTransaction());
    EXPECT_EQ(count("Directories"), 0);
    const auto rows = catalogue->OpenRecordset("Discs");
    EXPECT_THAT(texts(*rows, "id number"), ElementsAre("9"));
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::NoTransaction));
}

TEST_F(Transactions, DataSourcesOpenedLaterNeitherEndNorHoldIt) {
    const auto discs = source("Discs");
    DBEngine::BeginTrans();
    add(*discs, 1);
    auto later = source("Discs");
    add(*later, 2);
    later.reset();
    EXPECT_TRUE(DBEngine::InTransaction());
    later = source("Discs");
    discs->Close();
    EXPECT_FALSE(DBEngine::InTransaction());
    EXPECT_EQ(later->Recordset().RecordCount(), 0);
}

TEST_F(Transactions, ARefreshedDataSourceStillHoldsIt) {
    const auto discs = source("Discs");
    DBEngine::BeginTrans();
    add(*discs, 1);
    discs->SetRecordSource("Directories");
    discs->Refresh();
    EXPECT_TRUE(DBEngine::InTransaction());
    DBEngine::CommitTrans();
    EXPECT_EQ(count("Discs"), 1);
}

TEST_F(Transactions, ClosingADataSourcesDatabaseCountsAsClosingIt) {
    const auto discs = source("Discs");
    DBEngine::BeginTrans();
    add(*discs, 1);
    discs->Database()->Close();
    EXPECT_FALSE(DBEngine::InTransaction());
    EXPECT_EQ(count("Discs"), 0);
}

TEST_F(Transactions, DatabaseHandlesDoNotEndItWhileDataSourcesAreOpen) {
    const auto discs = source("Discs");
    const auto catalogue = open();
    DBEngine::BeginTrans();
    add(*discs, 1);
    catalogue->Execute("delete * from Files");
    catalogue->Close();
    DBEngine::CommitTrans();
    EXPECT_EQ(count("Discs"), 1);
}

TEST_F(Transactions, WithoutDataSourcesTheDatabaseHandlesHoldIt) {
    auto catalogue = open();
    DBEngine::BeginTrans();
    const auto rows = catalogue->OpenRecordset("Discs");
    rows->AddNew();
    (*rows)("id number") = 1;
    rows->Update();
    catalogue->Close();
    EXPECT_FALSE(DBEngine::InTransaction());
    EXPECT_EQ(count("Discs"), 0);
}

TEST_F(Transactions, ARecordsetKeepsAForgottenHandleOpen) {
    auto catalogue = open();
    DBEngine::BeginTrans();
    const auto rows = catalogue->OpenRecordset("Discs");
    catalogue = open();
    rows->AddNew();
    (*rows)("id number") = 1;
    rows->Update();
    EXPECT_TRUE(DBEngine::InTransaction());
    DBEngine::CommitTrans();
    EXPECT_EQ(count("Discs"), 1);
}

TEST_F(Transactions, CommitWithoutOneIsAnError) {
    const auto catalogue = open();
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::NoTransaction));
    DBEngine::BeginTrans();
    DBEngine::CommitTrans();
    EXPECT_EQ(errorOf([] { DBEngine::CommitTrans(); }), number(ErrorNumber::NoTransaction));
}

TEST_F(Transactions, TheyDoNotNest) {
    const auto discs = source("Discs");
    DBEngine::BeginTrans();
    add(*discs, 1);
    EXPECT_EQ(errorOf([] { DBEngine::BeginTrans(); }), number(ErrorNumber::TransactionOpen));
    DBEngine::CommitTrans();
    EXPECT_EQ(count("Discs"), 1);
}

TEST_F(Transactions, OneNeedsAnOpenCatalogue) {
    EXPECT_EQ(errorOf([] { DBEngine::BeginTrans(); }), number(ErrorNumber::HandleClosed));
    EXPECT_FALSE(DBEngine::InTransaction());
}

TEST_F(Transactions, ARefusedRowLeavesTheRestOfTheTransaction) {
    const auto discs = source("Discs");
    DBEngine::BeginTrans();
    add(*discs, 1);
    EXPECT_EQ(errorOf([&] { add(*discs, 1); }), number(ErrorNumber::RuleViolated));
    discs->Recordset().CancelUpdate();
    add(*discs, 2);
    DBEngine::CommitTrans();
    EXPECT_EQ(count("Discs"), 2);
}

TEST_F(Transactions, PositionsSurviveAnUndoneTransaction) {
    addDisc(1, "one");
    auto holder = source("Discs");
    const auto rows = open()->OpenRecordset("Discs");
    DBEngine::BeginTrans();
    add(*holder, 2);
    rows->MoveLast();
    EXPECT_EQ(rows->RecordCount(), 2);
    holder.reset();
    EXPECT_EQ(rows->RecordCount(), 1);
    EXPECT_EQ(errorOf([&] { (void)(*rows)("id number").Value(); }), number(ErrorNumber::RecordGone));
    rows->MovePrevious();
    EXPECT_EQ((*rows)("id number").Text(), "1");
}

TEST_F(Transactions, AChangeInAnUndoneTransactionIsSeenToBeUndone) {
    addDisc(1, "one");
    auto holder = source("Directories");
    const auto rows = open()->OpenRecordset("Discs");
    DBEngine::BeginTrans();
    rows->Edit();
    (*rows)("prefered name") = "other";
    rows->Update();
    EXPECT_EQ((*rows)("prefered name").Text(), "other");
    holder.reset();
    EXPECT_EQ((*rows)("prefered name").Text(), "one");
}

TEST_F(Transactions, AnotherFileWrittenInItTakesPart) {
    const auto other = make("other.db");
    const auto discs = source("Discs");
    DBEngine::BeginTrans();
    const auto rows = DBEngine::OpenDatabase(other)->OpenRecordset("Discs");
    rows->AddNew();
    (*rows)("id number") = 5;
    rows->Update();
    discs->Close();
    EXPECT_EQ(rows->RecordCount(), 0);
}

TEST_F(Transactions, WritesOutsideOneTakeEffectAtOnce) {
    const auto discs = source("Discs");
    add(*discs, 1);
    discs->Close();
    EXPECT_EQ(count("Discs"), 1);
    EXPECT_THAT(listing(), ElementsAre("shelf.db"));
}

} // namespace
} // namespace discaro::db::test

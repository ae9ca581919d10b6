#include "db/Shelf.h"
#include "db/engine/Engine.h"
#include "db/engine/Store.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using discaro::test::RawDatabase;
using testing::ElementsAre;

namespace fs = std::filesystem;

class Handles : public Shelf {};

TEST_F(Handles, AllPathsToAFileShareItsStore) {
    fs::create_symlink(path(), folder() / "link.db");
    fs::create_hard_link(path(), folder() / "twin.db");
    const auto database = open();
    EXPECT_EQ(DBEngine::OpenDatabase(folder() / "link.db")->store(), database->store());
    EXPECT_EQ(DBEngine::OpenDatabase(folder() / "twin.db")->store(), database->store());
    EXPECT_EQ(DBEngine::OpenDatabase(folder() / "." / "shelf.db")->store(), database->store());
    EXPECT_NE(DBEngine::OpenDatabase(make("other.db"))->store(), database->store());
}

TEST_F(Handles, TheFileClosesWithItsLastHandle) {
    auto first = open();
    auto second = open();
    auto rows = first->OpenRecordset("Discs");
    const std::weak_ptr<Store> store = first->store();
    first.reset();
    second->Close();
    EXPECT_FALSE(store.expired());
    rows.reset();
    EXPECT_TRUE(store.expired());
}

TEST_F(Handles, ClosingADatabaseClosesItsRecordsetsOnly) {
    const auto first = open();
    const auto second = open();
    const auto rows = first->OpenRecordset("Discs");
    const auto others = second->OpenRecordset("Discs");
    first->Close();
    EXPECT_FALSE(rows->IsOpen());
    EXPECT_TRUE(others->IsOpen());
    EXPECT_EQ(errorOf([&] { first->OpenRecordset("Discs"); }), number(ErrorNumber::HandleClosed));
    EXPECT_EQ(errorOf([&] { first->Execute("delete * from Discs"); }), number(ErrorNumber::HandleClosed));
    EXPECT_EQ(errorOf([&] { first->Close(); }), number(ErrorNumber::HandleClosed));
    EXPECT_EQ(errorOf([&] { (void)first->Updatable(); }), number(ErrorNumber::HandleClosed));
    EXPECT_EQ(first->Name(), path().string());
}

TEST_F(Handles, AReplacedHandleLeavesItsRecordsetsOpen) {
    addDisc(1, "one");
    auto database = open();
    const auto rows = database->OpenRecordset("Discs");
    database = open();
    EXPECT_EQ((*rows)("prefered name").Text(), "one");
}

TEST_F(Handles, NothingLiesBesideAnIdleFile) {
    const auto database = open();
    addDisc(1, "one");
    addFiles("C1D1", 100);
    const auto files = database->OpenRecordset("Files");
    files->MoveLast();
    files->Delete();
    EXPECT_THAT(listing(), ElementsAre("shelf.db"));
}

TEST_F(Handles, AnotherProgramReadsWhatIsSaved) {
    const auto database = open();
    addDisc(1, "one");
    EXPECT_EQ(RawDatabase(path()).text("SELECT \"prefered name\" FROM Discs"), "one");
    RawDatabase(path()).execute("UPDATE Discs SET \"prefered name\"='changed'");
    EXPECT_EQ((*database->OpenRecordset("Discs"))("prefered name").Text(), "changed");
}

TEST_F(Handles, WhatAnotherProgramAddedCountsInANewRecordset) {
    addDisc(1, "one");
    const auto database = open();
    const auto rows = database->OpenRecordset("Discs");
    EXPECT_EQ(rows->RecordCount(), 1);
    RawDatabase(path()).execute("INSERT INTO Discs VALUES(2, 'two')");
    EXPECT_EQ(database->OpenRecordset("Discs")->RecordCount(), 2);
    EXPECT_EQ(rows->RecordCount(), 2);
}

TEST_F(Handles, ACommitWaitsForTheDiskAndDamagedPagesAreNoticed) {
    const auto database = open();
    EXPECT_EQ(database->store()->connection().number("PRAGMA synchronous"), 3);
    EXPECT_EQ(database->store()->connection().number("PRAGMA cell_size_check"), 1);
    EXPECT_EQ(database->store()->connection().text("PRAGMA journal_mode"), "delete");
}

} // namespace
} // namespace discaro::db::test

#include "db/Shelf.h"
#include "support/Files.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using discaro::test::InFolder;
using discaro::test::RawDatabase;
using discaro::test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class RecordsetQueries : public Shelf {
protected:
    RecordsetQueries() { addDirectories({"C12D1", "C12D1S1", "C12D1S10", "C12D1S1S1", "C12D1S1S2", "C1D1"}); }

    std::vector<std::string> numbersOf(std::string_view text) {
        return texts(*open()->OpenRecordset(text), "id number");
    }
};

TEST_F(RecordsetQueries, ATextIsATableNameOrASelect) {
    const auto database = open();
    EXPECT_EQ(database->OpenRecordset("directories")->Type(), RecordsetType::Table);
    EXPECT_EQ(database->OpenRecordset("[Directories]")->RecordCount(), 6);
    EXPECT_EQ(database->OpenRecordset("select * from Directories")->Type(), RecordsetType::Dynaset);
    EXPECT_EQ(database->OpenDynaset("Directories")->Type(), RecordsetType::Dynaset);
    EXPECT_EQ(database->OpenSnapshot("Directories")->Type(), RecordsetType::Snapshot);
    EXPECT_EQ(static_cast<int>(RecordsetType::Table), 0);
}

TEST_F(RecordsetQueries, WhatIsNeitherIsRefused) {
    const auto database = open();
    const auto errorOfText = [&](const char* text) { return errorOf([&] { database->OpenRecordset(text); }); };
    EXPECT_EQ(errorOfText("Colours"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOfText("select * from Colours"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOfText("select [colour] from Directories"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOfText("select * from Directories where"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOfText("delete * from Directories"), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { database->Execute("select * from Directories"); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(count("Directories"), 6);
}

TEST_F(RecordsetQueries, APrefixFindsAllDescendantsAndNothingElse) {
    EXPECT_THAT(numbersOf("select * from Directories where [id number] like 'C12D1S1S*'"),
                ElementsAre("C12D1S1S1", "C12D1S1S2"));
    EXPECT_THAT(numbersOf("select * from Directories where [id number] like 'C12D1S*'"),
                ElementsAre("C12D1S1", "C12D1S10", "C12D1S1S1", "C12D1S1S2"));
    EXPECT_THAT(numbersOf("select * from Directories where [id number] like 'C12D1S1'"), ElementsAre("C12D1S1"));
    EXPECT_THAT(numbersOf("select * from Directories where [Drive id Number] like 1"), ElementsAre("C1D1"));
}

TEST_F(RecordsetQueries, RowsComeInInsertionOrderWhateverIndexServes) {
    addDirectories({"C9D1S3", "C9D1S1", "C9D1S2"});
    EXPECT_THAT(numbersOf("select * from Directories where [id number] like 'C9D1S*'"),
                ElementsAre("C9D1S3", "C9D1S1", "C9D1S2"));
    EXPECT_THAT(numbersOf("select * from Directories where [id number] like 'C9D1S*' order by [id number]"),
                ElementsAre("C9D1S1", "C9D1S2", "C9D1S3"));
}

TEST_F(RecordsetQueries, AnOrderMayDescend) {
    EXPECT_THAT(numbersOf("select * from Directories where [drive id number] = 12 order by [id number] desc"),
                ElementsAre("C12D1S1S2", "C12D1S1S1", "C12D1S10", "C12D1S1", "C12D1"));
}

TEST_F(RecordsetQueries, AFilterSeesNewRowsThatMeetIt) {
    const auto byIndex = open()->OpenRecordset("select * from Directories where [drive id number] = 12");
    const auto byPrefix = open()->OpenRecordset("select * from Directories where [id number] like 'C12D1S*'");
    const auto byScan = open()->OpenRecordset("select * from Directories where [id number] like '*S1?'");
    EXPECT_EQ(byIndex->RecordCount(), 5);
    EXPECT_EQ(byPrefix->RecordCount(), 4);
    EXPECT_EQ(byScan->RecordCount(), 1);
    addDirectories({"C12D1S12", "C1D1S1"});
    EXPECT_EQ(byIndex->RecordCount(), 6);
    EXPECT_EQ(byPrefix->RecordCount(), 5);
    EXPECT_EQ(byScan->RecordCount(), 2);
    for (Recordset* each : {byIndex.get(), byPrefix.get(), byScan.get()}) {
        each->MoveLast();
        EXPECT_EQ((*each)("id number").Text(), "C12D1S12");
    }
}

TEST_F(RecordsetQueries, AFilterFollowsDeletions) {
    const auto rows = open()->OpenRecordset("select * from Directories where [id number] like 'C12D1S*'");
    rows->MoveNext();
    open()->Execute("delete * from Directories where [id number] like 'C12D1S10'");
    EXPECT_EQ(errorOf([&] { (void)(*rows)("id number").Value(); }), number(ErrorNumber::RecordGone));
    EXPECT_EQ(rows->RecordCount(), 3);
    EXPECT_EQ(rows->AbsolutePosition(), -1);
    rows->MoveNext();
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1S1");
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->Delete();
    rows->MovePrevious();
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1");
    EXPECT_THAT(allTexts(*rows, "id number"), ElementsAre("C12D1S1", "C12D1S1S2"));
}

TEST_F(RecordsetQueries, AFilterLosesWhatOthersDeletedBeforeItsOwnDeletion) {
    const auto rows = open()->OpenRecordset("select * from Directories where [id number] like 'C12D1S*'");
    rows->MoveLast();
    open()->Execute("delete * from Directories where [id number] like 'C12D1S10'");
    rows->Delete();
    EXPECT_EQ(rows->RecordCount(), 2);
    EXPECT_THAT(allTexts(*rows, "id number"), ElementsAre("C12D1S1", "C12D1S1S1"));
}

TEST_F(RecordsetQueries, PositionsInAFilterCountItsRowsOnly) {
    const auto rows = open()->OpenRecordset("select * from Directories where [drive id number] = 12");
    rows->FindFirst("[id number] like 'C12D1S1S1'");
    EXPECT_EQ(rows->AbsolutePosition(), 3);
    EXPECT_EQ(rows->PercentPosition(), 60);
    rows->MoveTo(1);
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1");
    rows->FindFirst("[id number] like 'C1D1'");
    EXPECT_TRUE(rows->NoMatch());
    rows->MoveLast();
    EXPECT_EQ(rows->AbsolutePosition(), 4);
}

TEST_F(RecordsetQueries, ARowChangedOutOfItsFilterStaysUntilTheMove) {
    const auto rows = open()->OpenRecordset("select * from Directories where [drive id number] = 12");
    rows->Edit();
    (*rows)("drive id number") = 13;
    rows->Update();
    EXPECT_EQ((*rows)("drive id number").Text(), "13");
    EXPECT_EQ(rows->RecordCount(), 4);
    rows->MoveNext();
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1");
    rows->MoveFirst();
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1");
}

TEST_F(RecordsetQueries, ASortedSetHoldsItsRowsAndTakesItsOwnNewOnesAtTheEnd) {
    const auto rows = open()->OpenRecordset("select * from Directories order by [id number]");
    addDirectories({"C0D1"});
    EXPECT_EQ(rows->RecordCount(), 6);
    rows->AddNew();
    (*rows)("id number") = "A";
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 7);
    rows->MoveLast();
    EXPECT_EQ((*rows)("id number").Text(), "A");
    rows->Edit();
    (*rows)("Size") = 5;
    rows->Update();
    EXPECT_EQ((*rows)("Size").Text(), "5");
    rows->Delete();
    rows->MovePrevious();
    EXPECT_EQ((*rows)("id number").Text(), "C1D1");
}

TEST_F(RecordsetQueries, FindFirstInAFilteredSetHeedsBothConditions) {
    addFiles("C1D1", 9);
    for (const char* order : {"", " order by [file name] desc"}) {
        const auto rows =
            open()->OpenRecordset(std::string("select * from Files where [id number] > 3 and [id number] < 8") + order);
        rows->FindFirst("[id number] > 2 and [id number] < 5");
        EXPECT_FALSE(rows->NoMatch());
        EXPECT_EQ((*rows)("id number").Text(), "4");
        rows->FindFirst("[id number] < 4");
        EXPECT_TRUE(rows->NoMatch());
    }
}

TEST_F(RecordsetQueries, FindFirstInASortedSetGoesByItsOrder) {
    const auto rows =
        open()->OpenRecordset("select * from Directories where [drive id number] = 12 order by [id number] desc");
    rows->FindFirst("[id number] like 'C12D1S1S*'");
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1S2");
    EXPECT_EQ(rows->AbsolutePosition(), 0);
    rows->FindFirst("[id number] like 'C1D1'");
    EXPECT_TRUE(rows->NoMatch());
    EXPECT_EQ(rows->AbsolutePosition(), 0);
}

TEST_F(RecordsetQueries, SortOpensACopyInThatOrder) {
    const auto rows = open()->OpenSnapshot("select * from Directories where [drive id number] = 12");
    rows->SetSort("[id number] desc");
    const auto copy = rows->OpenRecordset();
    EXPECT_EQ(copy->Type(), RecordsetType::Snapshot);
    EXPECT_THAT(texts(*copy, "id number"), ElementsAre("C12D1S1S2", "C12D1S1S1", "C12D1S10", "C12D1S1", "C12D1"));
    EXPECT_EQ((*rows)("id number").Text(), "C12D1");
    EXPECT_EQ(errorOf([&] { rows->SetSort("[colour]"); }), number(ErrorNumber::UnknownField));
    rows->SetSort("");
    EXPECT_EQ((*rows->OpenRecordset())("id number").Text(), "C12D1");
}

TEST_F(RecordsetQueries, ASnapshotHoldsItsRowsAndIsNotChanged) {
    const auto rows = open()->OpenSnapshot("Directories");
    addDirectories({"C2D1"});
    open()->Execute("delete * from Directories where [id number] like 'C1D1'");
    EXPECT_EQ(rows->RecordCount(), 6);
    EXPECT_FALSE(rows->Updatable());
    EXPECT_EQ(errorOf([&] { rows->AddNew(); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { rows->Delete(); }), number(ErrorNumber::NotAllowed));
    rows->MoveLast();
    EXPECT_EQ(errorOf([&] { (void)(*rows)("id number").Value(); }), number(ErrorNumber::RecordGone));
    rows->MovePrevious();
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1S2");
}

TEST_F(RecordsetQueries, ASnapshotReachesAnyPlaceAndFindsByIndex) {
    const auto rows = open()->OpenSnapshot("Directories");
    rows->MoveTo(4);
    EXPECT_EQ((*rows)("id number").Text(), "C12D1S1S2");
    EXPECT_EQ(rows->AbsolutePosition(), 4);
    rows->FindFirst("[id number] like 'C12D1S10'");
    EXPECT_EQ(rows->AbsolutePosition(), 2);
    rows->FindFirst("[id number] like '*'");
    EXPECT_EQ(rows->AbsolutePosition(), 0);
    EXPECT_EQ(errorOf([&] { rows->MoveTo(6); }), number(ErrorNumber::NoCurrentRecord));
}

TEST_F(RecordsetQueries, AnEmptySelectionIsAnEmptySet) {
    for (const char* text : {"select * from Directories where [id number] like 'X*'",
                             "select * from Directories where [drive id number] = 99",
                             "select * from Directories where [drive id number] = 99 order by Size"}) {
        const auto rows = open()->OpenRecordset(text);
        EXPECT_TRUE(rows->Eof() && rows->Bof()) << text;
        EXPECT_EQ(rows->RecordCount(), 0) << text;
        rows->MoveFirst();
        rows->MoveLast();
        EXPECT_EQ(errorOf([&] { rows->MoveTo(0); }), number(ErrorNumber::NoCurrentRecord)) << text;
    }
}

TEST_F(RecordsetQueries, SumsComeInOneRowUnderTheirNames) {
    const auto directories = open()->OpenRecordset("Directories");
    for (; !directories->Eof(); directories->MoveNext()) {
        directories->Edit();
        (*directories)("Size") = 1.5;
        (*directories)("number of files") = 2;
        directories->Update();
    }
    const auto sums =
        open()->OpenRecordset("select sum(Size) As [Total size] , sum([number of files]) as Files from directories "
                              "where [id number] like 'C12D1S*'");
    EXPECT_EQ(sums->RecordCount(), 1);
    EXPECT_EQ(sums->FieldCount(), 2);
    EXPECT_EQ(sums->Fields("TOTAL SIZE").Value(), Value(6.0));
    EXPECT_EQ(sums->Fields("files").Value(), Value(int64_t{8}));
    EXPECT_EQ(sums->Type(), RecordsetType::Snapshot);
}

TEST_F(RecordsetQueries, ASumOverNoRowsIsNull) {
    const auto sums =
        open()->OpenRecordset("select sum(Size) As [Total size] from directories where [id number] like 'C1D1S*'");
    EXPECT_FALSE(sums->Eof());
    EXPECT_TRUE((*sums)("Total size").IsNull());
}

TEST_F(RecordsetQueries, ASumLeavesOutWhatIsNull) {
    addFiles("C1D1", 3);
    const auto files = open()->OpenRecordset("Files");
    files->MoveLast();
    files->Edit();
    (*files)("file size") = nullptr;
    files->Update();
    const auto sums = open()->OpenRecordset("select sum([file Size]) As [Total file size] from files");
    EXPECT_EQ((*sums)("total FILE size").Value(), Value(1.0));
    open()->Execute("delete * from files where [file size] > -1");
    const auto none = open()->OpenRecordset("select sum([file Size]) As [Total file size] from files");
    EXPECT_TRUE((*none)("Total file size").IsNull());
    EXPECT_EQ(files->RecordCount(), 1);
}

TEST_F(RecordsetQueries, ASumIsOneRowThatMovesLeadToAndBeyond) {
    addFiles("C1D1", 3);
    const auto sum = open()->OpenRecordset("select sum([file size]) as total from Files");
    sum->MoveNext();
    EXPECT_TRUE(sum->Eof());
    sum->MoveTo(0);
    EXPECT_EQ((*sum)("total").Number(), 0 + 1 + 2);
    EXPECT_EQ(errorOf([&] { sum->MoveTo(1); }), number(ErrorNumber::NoCurrentRecord));
}

TEST_F(RecordsetQueries, AnAggregateOffersNothingButItsRow) {
    const auto sums = open()->OpenRecordset("select sum(Size) As total from directories");
    EXPECT_EQ(errorOf([&] { sums->AddNew(); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { sums->FindFirst("[total] = 1"); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { sums->SetSort("[total]"); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { sums->OpenRecordset(); }), number(ErrorNumber::NotAllowed));
    sums->MoveNext();
    EXPECT_TRUE(sums->Eof());
    EXPECT_EQ(errorOf([&] { sums->MoveNext(); }), number(ErrorNumber::NoCurrentRecord));
    sums->MovePrevious();
    EXPECT_EQ(sums->AbsolutePosition(), 0);
    sums->MovePrevious();
    EXPECT_TRUE(sums->Bof());
    sums->MoveNext();
    EXPECT_EQ(sums->AbsolutePosition(), 0);
}

TEST_F(RecordsetQueries, ASumBeyondSixtyFourBitsIsAConversionError) {
    const auto things = open()->OpenRecordset("Things");
    for (int i = 0; i < 2; ++i) {
        things->AddNew();
        (*things)("whole") = INT64_MAX;
        things->Update();
    }
    EXPECT_EQ(errorOf([&] { open()->OpenRecordset("select sum(whole) as total from Things"); }),
              number(ErrorNumber::DataTypeConversion));
}

TEST_F(RecordsetQueries, InNamesAFileInTheCurrentFolder) {
    const InFolder here(folder());
    const auto database = open();
    const auto rows =
        database->OpenRecordset("SELECT directories.* FROM directories IN shelf.db where [drive id number] = 1");
    EXPECT_EQ((*rows)("id number").Text(), "C1D1");
    rows->Edit();
    (*rows)("Size") = 7;
    rows->Update();
    EXPECT_EQ(database->OpenRecordset("select sum(Size) as s from directories")->Fields("s").Number(), 7);
}

TEST_F(RecordsetQueries, InAnotherFileReadsThatFile) {
    const InFolder here(folder());
    make("other.db");
    const auto database = open();
    const auto rows = database->OpenRecordset("select * from Directories in other.db");
    EXPECT_TRUE(rows->Eof());
    rows->AddNew();
    (*rows)("id number") = "elsewhere";
    rows->Update();
    EXPECT_EQ(rows->RecordCount(), 1);
    EXPECT_EQ(count("Directories"), 6);
    EXPECT_EQ(database->Execute("delete * from Directories in other.db"), 1);
    EXPECT_EQ(rows->RecordCount(), 0);
    EXPECT_EQ(count("Directories"), 6);
}

TEST_F(RecordsetQueries, InAMissingFileOrNoCatalogueFails) {
    const InFolder here(folder());
    writeFile("notes.txt", "no database at all, just some text that is long enough");
    const auto database = open();
    EXPECT_EQ(errorOf([&] { database->OpenRecordset("select * from Directories in lost.db"); }),
              number(ErrorNumber::FileMissing));
    EXPECT_EQ(errorOf([&] { database->OpenRecordset("select * from Directories in notes.txt"); }),
              number(ErrorNumber::NotACatalogue));
    EXPECT_FALSE(fs::exists(folder() / "lost.db"));
}

TEST_F(RecordsetQueries, ExecuteDeletesWhatMeetsTheCondition) {
    EXPECT_EQ(open()->Execute("DELETE * FROM [Directories] WHERE [drive id number] like 12"), 5);
    EXPECT_THAT(numbersOf("Directories"), ElementsAre("C1D1"));
    EXPECT_EQ(open()->Execute("DELETE * FROM Directories WHERE [drive id number] like 12"), 0);
    EXPECT_EQ(open()->Execute("DELETE * FROM Directories"), 1);
    EXPECT_THAT(numbersOf("Directories"), IsEmpty());
}

TEST_F(RecordsetQueries, BetweenCallsOtherProgramsMayWrite) {
    addFiles("C1D1", 600);
    const auto database = open();
    const auto files = database->OpenRecordset("Files");
    const auto few = database->OpenRecordset("select * from Files where [directory number] like 'C1D1'");
    for (int i = 0; i < 300; ++i) {
        files->MoveNext();
        few->MoveNext();
    }
    files->FindFirst("[file name] = 'file5'");
    EXPECT_NO_THROW(RawDatabase(path()).execute("BEGIN EXCLUSIVE"));
}

} // namespace
} // namespace discaro::db::test

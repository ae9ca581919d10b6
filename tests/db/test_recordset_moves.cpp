#include "db/Shelf.h"
#include "db/engine/Store.h"
#include "support/QueryPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using testing::ElementsAre;

class RecordsetMoves : public Shelf {
protected:
    void addDiscs(std::initializer_list<int> numbers) {
        for (const int each : numbers)
            addDisc(each, "disc " + std::to_string(each));
    }
};

TEST_F(RecordsetMoves, OpeningStandsOnTheFirstRow) {
    addDiscs({3, 1});
    const auto discs = open()->OpenRecordset("Discs");
    EXPECT_EQ((*discs)("id number").Text(), "3");
    EXPECT_FALSE(discs->Eof());
    EXPECT_FALSE(discs->Bof());
}

TEST_F(RecordsetMoves, AnEmptySetIsAtBothEnds) {
    const auto discs = open()->OpenRecordset("Discs");
    EXPECT_TRUE(discs->Eof());
    EXPECT_TRUE(discs->Bof());
    EXPECT_EQ(discs->RecordCount(), 0);
    EXPECT_EQ(discs->AbsolutePosition(), -1);
    EXPECT_EQ(discs->PercentPosition(), 0);
}

TEST_F(RecordsetMoves, FirstAndLastOfAnEmptySetAreNoError) {
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveFirst();
    discs->MoveLast();
    EXPECT_TRUE(discs->Eof());
    EXPECT_EQ(errorOf([&] { discs->MoveNext(); }), number(ErrorNumber::NoCurrentRecord));
    EXPECT_EQ(errorOf([&] { discs->MovePrevious(); }), number(ErrorNumber::NoCurrentRecord));
}

TEST_F(RecordsetMoves, OrderIsThatOfInsertionAlsoForALowFreeNumber) {
    addDiscs({7, 9, 2});
    const auto discs = open()->OpenRecordset("Discs");
    EXPECT_THAT(texts(*discs, "id number"), ElementsAre("7", "9", "2"));
    discs->MoveLast();
    EXPECT_EQ((*discs)("id number").Text(), "2");
}

TEST_F(RecordsetMoves, NextRunsPastTheLastRowOnce) {
    addDiscs({1});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveNext();
    EXPECT_TRUE(discs->Eof());
    EXPECT_FALSE(discs->Bof());
    EXPECT_EQ(errorOf([&] { discs->MoveNext(); }), number(ErrorNumber::NoCurrentRecord));
    EXPECT_TRUE(discs->Eof());
    EXPECT_EQ(errorOf([&] { (*discs)("id number").Value(); }), number(ErrorNumber::NoCurrentRecord));
    discs->MovePrevious();
    EXPECT_EQ((*discs)("id number").Text(), "1");
}

TEST_F(RecordsetMoves, PreviousRunsBeforeTheFirstRowAndNextComesBack) {
    addDiscs({1, 2, 3});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveLast();
    discs->MovePrevious();
    EXPECT_EQ((*discs)("id number").Text(), "2");
    discs->MovePrevious();
    discs->MovePrevious();
    EXPECT_TRUE(discs->Bof());
    EXPECT_FALSE(discs->Eof());
    EXPECT_EQ(errorOf([&] { discs->MovePrevious(); }), number(ErrorNumber::NoCurrentRecord));
    discs->MoveNext();
    EXPECT_EQ((*discs)("id number").Text(), "1");
}

TEST_F(RecordsetMoves, MoveLastReachesTheRowAddedLast) {
    addDiscs({5, 6});
    const auto discs = open()->OpenRecordset("Discs");
    discs->AddNew();
    (*discs)("id number") = 1;
    discs->Update();
    discs->MoveLast();
    EXPECT_EQ((*discs)("id number").Text(), "1");
}

TEST_F(RecordsetMoves, TheCurrentRowStaysAfterAddNew) {
    addDiscs({5, 6});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveNext();
    discs->AddNew();
    (*discs)("id number") = 1;
    discs->Update();
    EXPECT_EQ((*discs)("id number").Text(), "6");
    discs->MoveNext();
    EXPECT_EQ((*discs)("id number").Text(), "1");
}

TEST_F(RecordsetMoves, RowsAddedByAnotherHandleComeAtTheEnd) {
    addDiscs({1});
    const auto discs = open()->OpenRecordset("Discs");
    addDiscs({2});
    EXPECT_EQ(discs->RecordCount(), 2);
    EXPECT_THAT(texts(*discs, "id number"), ElementsAre("1", "2"));
    addDiscs({3});
    discs->MoveLast();
    EXPECT_EQ((*discs)("id number").Text(), "3");
}

TEST_F(RecordsetMoves, ALongTableIsWalkedRowByRowInBothDirections) {
    addFiles("C1D1", 1000);
    const auto files = open()->OpenRecordset("Files");
    int expected = 0;
    for (; !files->Eof(); files->MoveNext())
        ASSERT_EQ((*files)("file name").Text(), "file" + std::to_string(expected++));
    EXPECT_EQ(expected, 1000);
    for (files->MovePrevious(); !files->Bof(); files->MovePrevious())
        ASSERT_EQ((*files)("file name").Text(), "file" + std::to_string(--expected));
    EXPECT_EQ(expected, 0);
}

TEST_F(RecordsetMoves, ALoopMayChangeEachRow) {
    addFiles("C1D1", 1000);
    const auto files = open()->OpenRecordset("Files");
    DBEngine::BeginTrans();
    for (; !files->Eof(); files->MoveNext()) {
        const double size = (*files)("file size").Number();
        files->Edit();
        (*files)("file size") = size + 1;
        files->Update();
        ASSERT_EQ((*files)("file size").Number(), size + 1);
    }
    DBEngine::CommitTrans();
    const auto sum = open()->OpenRecordset("select sum([file size]) as total from Files");
    EXPECT_EQ((*sum)("total").Number(), 999.0 * 1000 / 2 + 1000);
}

TEST_F(RecordsetMoves, ALoopMayDeleteRows) {
    addFiles("C1D1", 1000);
    const auto files = open()->OpenRecordset("Files");
    DBEngine::BeginTrans();
    for (; !files->Eof(); files->MoveNext())
        if (static_cast<int>((*files)("file size").Number()) % 3 != 0)
            files->Delete();
    DBEngine::CommitTrans();
    EXPECT_EQ(files->RecordCount(), 334);
    EXPECT_EQ(count("Files"), 334);
}

TEST_F(RecordsetMoves, ALoopSeesTheRowsThatItAddsItself) {
    addDiscs({1});
    const auto discs = open()->OpenRecordset("Discs");
    DBEngine::BeginTrans();
    for (; !discs->Eof(); discs->MoveNext()) {
        const int64_t last = discs->RecordCount();
        if (last == 300)
            continue;
        discs->AddNew();
        (*discs)("id number") = last + 1;
        discs->Update();
    }
    DBEngine::CommitTrans();
    EXPECT_EQ(discs->RecordCount(), 300);
}

TEST_F(RecordsetMoves, PositionsCountFromZero) {
    addDiscs({10, 20, 30, 40});
    const auto discs = open()->OpenRecordset("Discs");
    EXPECT_EQ(discs->AbsolutePosition(), 0);
    EXPECT_EQ(discs->PercentPosition(), 0);
    discs->MoveNext();
    EXPECT_EQ(discs->AbsolutePosition(), 1);
    EXPECT_EQ(discs->PercentPosition(), 25);
    discs->MoveLast();
    EXPECT_EQ(discs->AbsolutePosition(), 3);
    discs->MovePrevious();
    EXPECT_EQ(discs->AbsolutePosition(), 2);
    discs->MoveLast();
    discs->MoveNext();
    EXPECT_EQ(discs->AbsolutePosition(), -1);
    EXPECT_EQ(discs->PercentPosition(), 100);
}

TEST_F(RecordsetMoves, PositionsAreRightWhereRowNumbersHaveGaps) {
    addDiscs({10, 20, 30, 40, 50});
    open()->Execute("delete * from Discs where [id number] = 20");
    const auto discs = open()->OpenRecordset("Discs");
    discs->FindFirst("[id number] = 40");
    EXPECT_EQ(discs->AbsolutePosition(), 2);
    discs->MoveTo(1);
    EXPECT_EQ((*discs)("id number").Text(), "30");
    discs->MoveTo(3);
    EXPECT_EQ((*discs)("id number").Text(), "50");
    EXPECT_EQ(discs->AbsolutePosition(), 3);
    EXPECT_EQ(errorOf([&] { discs->MoveTo(4); }), number(ErrorNumber::NoCurrentRecord));
    EXPECT_EQ(errorOf([&] { discs->MoveTo(-1); }), number(ErrorNumber::NoCurrentRecord));
    EXPECT_EQ((*discs)("id number").Text(), "50");
}

TEST_F(RecordsetMoves, ThePositionFollowsDeletionsInFrontOfIt) {
    addDiscs({10, 20, 30});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveLast();
    EXPECT_EQ(discs->AbsolutePosition(), 2);
    open()->Execute("delete * from Discs where [id number] = 10");
    EXPECT_EQ(discs->AbsolutePosition(), 1);
    EXPECT_EQ(discs->RecordCount(), 2);
}

TEST_F(RecordsetMoves, FindFirstStartsAtTheFirstRow) {
    addDiscs({4, 5, 6});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveLast();
    discs->FindFirst("[id number] > 3");
    EXPECT_FALSE(discs->NoMatch());
    EXPECT_EQ((*discs)("id number").Text(), "4");
    EXPECT_EQ(discs->AbsolutePosition(), 0);
}

TEST_F(RecordsetMoves, FindFirstWithoutAMatchLeavesThePosition) {
    addDiscs({4, 5, 6});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveNext();
    discs->FindFirst("[id number] = 99");
    EXPECT_TRUE(discs->NoMatch());
    EXPECT_EQ((*discs)("id number").Text(), "5");
    EXPECT_EQ(discs->AbsolutePosition(), 1);
    discs->FindFirst("[id number] = 6");
    EXPECT_FALSE(discs->NoMatch());
    EXPECT_EQ((*discs)("id number").Text(), "6");
}

TEST_F(RecordsetMoves, FindFirstAcceptsTextsAndAnyCapitals) {
    addDirectories({"C1D1", "C1D1S1", "C1D1S10", "C12D1"});
    const auto directories = open()->OpenRecordset("directories");
    directories->FindFirst("[ID Number] like 'c1d1s1'");
    EXPECT_EQ((*directories)("id number").Text(), "C1D1S1");
    directories->FindFirst("[drive id number] = 12");
    EXPECT_EQ((*directories)("id number").Text(), "C12D1");
    directories->FindFirst("[id number] like 'C1D1S1?'");
    EXPECT_EQ((*directories)("id number").Text(), "C1D1S10");
}

TEST_F(RecordsetMoves, ABadCriterionLeavesPositionAndEdit) {
    addDiscs({4, 5});
    const auto discs = open()->OpenRecordset("Discs");
    discs->MoveNext();
    discs->Edit();
    EXPECT_EQ(errorOf([&] { discs->FindFirst("[id number] like 'it's'"); }), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf([&] { discs->FindFirst("[colour] = 1"); }), number(ErrorNumber::UnknownField));
    EXPECT_TRUE(discs->EditInProgress());
    EXPECT_EQ((*discs)("id number").Text(), "5");
}

TEST_F(RecordsetMoves, FindFirstOnIndexedFieldsIsAnIndexSearch) {
    addDirectories({"C1D1", "C1D1S1"});
    const auto database = open();
    const auto directories = database->OpenRecordset("Directories");
    for (const char* criterion :
         {"[id number] like 'C1D1S1'", "[id number] = 'C1D1'", "[drive id number] = 1", "[drive id number] like 1",
          "[drive id number] like '1'", "[id number] like 'C1D1S*'"}) {
        const std::string plans =
            discaro::test::queryPlansOf(database->store()->connection(), [&] { directories->FindFirst(criterion); });
        ASSERT_FALSE(directories->NoMatch()) << criterion;
        EXPECT_THAT(plans, testing::HasSubstr("SEARCH Directories USING INDEX")) << criterion;
        EXPECT_THAT(plans, testing::Not(testing::HasSubstr("SCAN"))) << criterion;
    }
}

TEST_F(RecordsetMoves, ATextThatTheFormatSaysIsAsciiIsSearchedWithoutAFunction) {
    addDirectories({"C1D1"});
    for (const bool known : {true, false}) {
        DBEngine::SetFormat(known ? format() : FileFormat{});
        const auto database = open();
        const auto directories = database->OpenRecordset("Directories");
        const discaro::test::StatementTrace trace(database->store()->connection().handle());
        directories->FindFirst("[id number] like 'C1D*'");
        EXPECT_FALSE(directories->NoMatch());
        EXPECT_THAT(trace.texts(), testing::Contains(testing::HasSubstr("discaro_like")).Times(known ? 0 : 1));
    }
}

TEST_F(RecordsetMoves, TheLowestFreeNumberIsFoundByFindFirst) {
    addDiscs({1, 2, 4});
    const auto discs = open()->OpenDynaset("Discs");
    int free = 0;
    do
        discs->FindFirst("[id number] = " + std::to_string(++free));
    while (!discs->NoMatch());
    EXPECT_EQ(free, 3);
}

TEST_F(RecordsetMoves, MovesDropAnEdit) {
    addDiscs({1, 2});
    const auto discs = open()->OpenRecordset("Discs");
    discs->Edit();
    (*discs)("prefered name") = "lost";
    discs->MoveNext();
    EXPECT_FALSE(discs->EditInProgress());
    EXPECT_EQ(errorOf([&] { discs->Update(); }), number(ErrorNumber::NoEditInProgress));
    EXPECT_THAT(allTexts(*discs, "prefered name"), ElementsAre("disc 1", "disc 2"));
}

TEST_F(RecordsetMoves, RowNumbersTellRowsApart) {
    addDiscs({7, 3});
    const auto discs = open()->OpenRecordset("Discs");
    const int64_t first = discs->RowNumber();
    discs->MoveNext();
    EXPECT_GT(discs->RowNumber(), first);
    discs->MoveNext();
    EXPECT_EQ(errorOf([&] { discs->RowNumber(); }), number(ErrorNumber::NoCurrentRecord));
}

TEST_F(RecordsetMoves, LongTextsAreReadOneAfterAnother) {
    const auto things = open()->OpenRecordset("Things");
    DBEngine::BeginTrans();
    for (int i = 0; i < 20; ++i) {
        things->AddNew();
        (*things)("long text") = std::string(300'000, static_cast<char>('a' + i));
        things->Update();
    }
    DBEngine::CommitTrans();
    char expected = 'a';
    for (things->MoveFirst(); !things->Eof(); things->MoveNext())
        ASSERT_EQ((*things)("long text").Text(), std::string(300'000, expected++));
    EXPECT_EQ(expected, 'a' + 20);
}

} // namespace
} // namespace discaro::db::test

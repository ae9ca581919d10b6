#include "db/Shelf.h"
#include "db/engine/Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using testing::ElementsAre;
using testing::HasSubstr;

class RecordsetEdits : public Shelf {
protected:
    std::unique_ptr<Recordset> discs() {
        addDisc(1, "one");
        addDisc(2, "two");
        return open()->OpenRecordset("Discs");
    }
};

TEST_F(RecordsetEdits, FieldsNotSetInANewRowAreNull) {
    const auto directories = open()->OpenRecordset("Directories");
    directories->AddNew();
    EXPECT_TRUE((*directories)("id number").IsNull());
    (*directories)("id number") = "C1D1";
    EXPECT_EQ((*directories)("id number").Text(), "C1D1");
    directories->Update();
    directories->MoveFirst();
    EXPECT_EQ((*directories)("id number").Text(), "C1D1");
    for (const char* field : {"drive id number", "Parent id", "number of files", "Size", "Total Size"})
        EXPECT_TRUE((*directories)(field).IsNull()) << field;
}

TEST_F(RecordsetEdits, AFieldCanBeBuiltUpFromItsPresentValue) {
    const auto things = open()->OpenRecordset("Things");
    things->AddNew();
    for (const char* line : {"[autorun]", "open=setup.exe"})
        (*things)("long text") = (*things)("long text").Text() + "\r\n" + line;
    things->Update();
    things->MoveLast();
    EXPECT_EQ((*things)("long text").Text(), "\r\n[autorun]\r\nopen=setup.exe");
}

TEST_F(RecordsetEdits, EditChangesTheCurrentRowOnly) {
    const auto rows = discs();
    rows->MoveNext();
    rows->Edit();
    (*rows)("prefered name") = "changed";
    EXPECT_EQ((*rows)("prefered name").Text(), "changed");
    EXPECT_EQ((*rows)("id number").Text(), "2");
    rows->Update();
    EXPECT_EQ((*rows)("prefered name").Text(), "changed");
    EXPECT_THAT(allTexts(*rows, "prefered name"), ElementsAre("one", "changed"));
}

TEST_F(RecordsetEdits, OtherHandlesSeeWhatIsSavedAndNothingBefore) {
    const auto rows = discs();
    const auto others = open()->OpenRecordset("select * from Discs where [id number] = 1");
    EXPECT_EQ((*others)("prefered name").Text(), "one");
    rows->Edit();
    (*rows)("prefered name") = "new";
    EXPECT_EQ((*others)("prefered name").Text(), "one");
    rows->Update();
    EXPECT_EQ((*others)("prefered name").Text(), "new");
}

TEST_F(RecordsetEdits, CancelUpdateDropsTheEdit) {
    const auto rows = discs();
    rows->Edit();
    (*rows)("prefered name") = "lost";
    rows->CancelUpdate();
    EXPECT_EQ((*rows)("prefered name").Text(), "one");
    rows->AddNew();
    (*rows)("prefered name") = "lost";
    rows->CancelUpdate();
    rows->CancelUpdate();
    EXPECT_EQ((*rows)("prefered name").Text(), "one");
    EXPECT_EQ(rows->RecordCount(), 2);
}

TEST_F(RecordsetEdits, AddNewDropsAnEarlierEdit) {
    const auto rows = discs();
    rows->AddNew();
    (*rows)("id number") = 8;
    (*rows)("prefered name") = "lost";
    rows->AddNew();
    (*rows)("id number") = 9;
    rows->Update();
    rows->MoveLast();
    EXPECT_EQ((*rows)("id number").Text(), "9");
    EXPECT_TRUE((*rows)("prefered name").IsNull());
    EXPECT_EQ(rows->RecordCount(), 3);
}

TEST_F(RecordsetEdits, WritingOutsideAnEditFails) {
    const auto rows = discs();
    EXPECT_EQ(errorOf([&] { (*rows)("prefered name") = "x"; }), number(ErrorNumber::NoEditInProgress));
    EXPECT_EQ(errorOf([&] { rows->Update(); }), number(ErrorNumber::NoEditInProgress));
    rows->Edit();
    rows->Update();
    EXPECT_EQ(errorOf([&] { (*rows)("prefered name") = "x"; }), number(ErrorNumber::NoEditInProgress));
}

TEST_F(RecordsetEdits, EditingAndDeletingNeedARow) {
    const auto empty = open()->OpenRecordset("Discs");
    EXPECT_EQ(errorOf([&] { empty->Edit(); }), number(ErrorNumber::NoCurrentRecord));
    EXPECT_EQ(errorOf([&] { empty->Delete(); }), number(ErrorNumber::NoCurrentRecord));
    EXPECT_FALSE(empty->EditInProgress());
}

TEST_F(RecordsetEdits, OnlyChangedFieldsAreWritten) {
    addDirectories({"C1D1"});
    const auto database = open();
    const auto rows = database->OpenRecordset("Directories");
    database->store()->connection().execute("CREATE TEMP TABLE written(field TEXT);"
                                            "CREATE TEMP TRIGGER t1 AFTER UPDATE OF \"id number\" ON Directories"
                                            " BEGIN INSERT INTO written VALUES('id number'); END;"
                                            "CREATE TEMP TRIGGER t2 AFTER UPDATE OF Size ON Directories"
                                            " BEGIN INSERT INTO written VALUES('Size'); END");
    rows->Edit();
    (*rows)("id number") = "C1D1";
    (*rows)("Size") = 1.5;
    rows->Update();
    rows->Edit();
    (*rows)("id number") = "C1D1";
    (*rows)("Size") = 1.5;
    rows->Update();
    Connection& connection = database->store()->connection();
    EXPECT_EQ(connection.text("SELECT group_concat(field) FROM written"), "Size");
}

TEST_F(RecordsetEdits, ChangingAnUnindexedFieldTouchesNoIndex) {
    addDirectories({"C1D1"});
    const auto database = open();
    const auto rows = database->OpenRecordset("Directories");
    rows->Edit();
    (*rows)("Total Size") = 3;
    rows->Update();
    Statement explained(database->store()->connection().session(),
                        "EXPLAIN UPDATE Directories SET \"Total Size\"=? WHERE rowid=?");
    std::string operations;
    while (explained.step())
        operations.append(explained.text(1)).append(" ");
    EXPECT_THAT(operations, testing::Not(HasSubstr("IdxInsert")));
}

TEST_F(RecordsetEdits, TheDatabaseGivesFileNumbers) {
    addFiles("C1D1", 3);
    const auto files = open()->OpenRecordset("Files");
    EXPECT_THAT(texts(*files, "id number"), ElementsAre("1", "2", "3"));
    files->AddNew();
    EXPECT_EQ(errorOf([&] { (*files)("id number") = 77; }), number(ErrorNumber::NotAllowed));
    files->Update();
    files->MoveLast();
    EXPECT_EQ((*files)("id number").Text(), "4");
}

TEST_F(RecordsetEdits, ARowThatBreaksAUniqueNumberIsRefusedAndCanBeCorrected) {
    const auto rows = discs();
    rows->AddNew();
    (*rows)("id number") = 2;
    EXPECT_EQ(errorOf([&] { rows->Update(); }), number(ErrorNumber::RuleViolated));
    EXPECT_TRUE(rows->EditInProgress());
    (*rows)("id number") = 3;
    rows->Update();
    EXPECT_THAT(allTexts(*rows, "id number"), ElementsAre("1", "2", "3"));
}

TEST_F(RecordsetEdits, DeletingCascades) {
    const auto rows = discs();
    addDirectories({"C1D1", "C1D1S1", "C2D1"});
    addFiles("C1D1", 2);
    addFiles("C1D1S1", 3);
    addFiles("C2D1", 4);
    const auto files = open()->OpenRecordset("Files");
    EXPECT_EQ(files->RecordCount(), 9);
    rows->Delete();
    EXPECT_EQ(count("Discs"), 1);
    EXPECT_EQ(count("Directories"), 1);
    EXPECT_EQ(files->RecordCount(), 4);
    EXPECT_EQ(errorOf([&] { (void)(*files)("file name").Value(); }), number(ErrorNumber::RecordGone));
    files->MoveNext();
    EXPECT_EQ((*files)("directory number").Text(), "C2D1");
}

TEST_F(RecordsetEdits, AfterDeleteTheRowIsGoneAndNextIsTheRowBehindIt) {
    const auto rows = discs();
    rows->Delete();
    EXPECT_FALSE(rows->Eof());
    EXPECT_EQ(rows->AbsolutePosition(), -1);
    EXPECT_EQ(errorOf([&] { (void)(*rows)("id number").Value(); }), number(ErrorNumber::RecordGone));
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), number(ErrorNumber::RecordGone));
    EXPECT_EQ(errorOf([&] { rows->Delete(); }), number(ErrorNumber::RecordGone));
    rows->MoveNext();
    EXPECT_EQ((*rows)("id number").Text(), "2");
}

TEST_F(RecordsetEdits, DeletingEndsTheEditInProgress) {
    const auto rows = discs();
    rows->Edit();
    (*rows)("prefered name") = "lost";
    rows->Delete();
    EXPECT_FALSE(rows->EditInProgress());
    EXPECT_EQ(errorOf([&] { rows->Update(); }), number(ErrorNumber::NoEditInProgress));
    EXPECT_EQ(count("Discs"), 1);
}

TEST_F(RecordsetEdits, DeletingTheLastRowLeavesAnEmptySet) {
    addDisc(1, "only");
    const auto rows = open()->OpenRecordset("Discs");
    rows->Delete();
    rows->MoveNext();
    EXPECT_TRUE(rows->Eof());
    rows->MoveFirst();
    EXPECT_TRUE(rows->Eof());
    EXPECT_TRUE(rows->Bof());
    EXPECT_EQ(rows->RecordCount(), 0);
}

TEST_F(RecordsetEdits, ANewRowWithTheNumberOfADeletedOneIsANewRow) {
    const auto rows = discs();
    rows->MoveLast();
    rows->Delete();
    rows->AddNew();
    (*rows)("id number") = 3;
    rows->Update();
    EXPECT_EQ(errorOf([&] { (void)(*rows)("id number").Value(); }), number(ErrorNumber::RecordGone));
    rows->MoveNext();
    EXPECT_EQ((*rows)("id number").Text(), "3");
}

TEST_F(RecordsetEdits, ARowDeletedByAnotherHandleIsGone) {
    const auto rows = discs();
    rows->Edit();
    (*rows)("prefered name") = "late";
    open()->Execute("delete * from Discs where [id number] = 1");
    EXPECT_EQ(errorOf([&] { rows->Update(); }), number(ErrorNumber::RecordGone));
    rows->CancelUpdate();
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), number(ErrorNumber::RecordGone));
    EXPECT_EQ(errorOf([&] { rows->Delete(); }), number(ErrorNumber::RecordGone));
    rows->MoveNext();
    EXPECT_EQ((*rows)("id number").Text(), "2");
}

TEST_F(RecordsetEdits, AChangeByAnotherHandleIsSeenInTheCurrentRow) {
    const auto rows = discs();
    const auto others = open()->OpenRecordset("Discs");
    others->Edit();
    (*others)("prefered name") = "other";
    others->Update();
    EXPECT_EQ((*rows)("prefered name").Text(), "other");
    rows->MoveNext();
    EXPECT_EQ((*rows)("prefered name").Text(), "two");
}

TEST_F(RecordsetEdits, AFieldTakesTheValueOfAnotherRecordsetsField) {
    const auto rows = discs();
    const auto others = open()->OpenRecordset("Discs");
    others->MoveLast();
    rows->Edit();
    (*rows)("prefered name") = (*others)("prefered name");
    rows->Update();
    EXPECT_EQ((*rows)("prefered name").Text(), "two");
}

TEST_F(RecordsetEdits, ARecordsetOfSomeFieldsWritesThose) {
    addDirectories({"C1D1"});
    const auto rows = open()->OpenRecordset("select Size, [id number] from Directories");
    EXPECT_EQ(rows->FieldCount(), 2);
    EXPECT_EQ(rows->Fields(0).Name(), "Size");
    rows->Edit();
    (*rows)("size") = 4;
    rows->Update();
    rows->AddNew();
    (*rows)("ID NUMBER") = "C1D1S1";
    rows->Update();
    const auto all = open()->OpenRecordset("Directories");
    EXPECT_THAT(allTexts(*all, "Size"), ElementsAre("4", ""));
    EXPECT_THAT(allTexts(*all, "id number"), ElementsAre("C1D1", "C1D1S1"));
    EXPECT_THAT(allTexts(*all, "drive id number"), ElementsAre("1", ""));
}

TEST_F(RecordsetEdits, AClosedRecordsetRefusesEverything) {
    const auto rows = discs();
    rows->Close();
    rows->Close();
    EXPECT_FALSE(rows->IsOpen());
    const int closed = number(ErrorNumber::HandleClosed);
    EXPECT_EQ(errorOf([&] { rows->MoveFirst(); }), closed);
    EXPECT_EQ(errorOf([&] { rows->AddNew(); }), closed);
    EXPECT_EQ(errorOf([&] { rows->Edit(); }), closed);
    EXPECT_EQ(errorOf([&] { rows->Update(); }), closed);
    EXPECT_EQ(errorOf([&] { rows->Delete(); }), closed);
    EXPECT_EQ(errorOf([&] { (void)rows->Eof(); }), closed);
    EXPECT_EQ(errorOf([&] { (void)rows->RecordCount(); }), closed);
    EXPECT_EQ(errorOf([&] { rows->FindFirst("[id number] = 1"); }), closed);
    EXPECT_EQ(errorOf([&] { (void)(*rows)("id number").Value(); }), closed);
    EXPECT_EQ(errorOf([&] { (*rows)("id number") = 1; }), closed);
    EXPECT_EQ(errorOf([&] { rows->OpenRecordset(); }), closed);
}

} // namespace
} // namespace discaro::db::test

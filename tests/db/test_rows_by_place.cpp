#include "db/Shelf.h"
#include "db/engine/Store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using testing::ElementsAre;

constexpr int kName = 2; // the field of the file's name

// Files "file0" and on in one directory, some of them deleted again.
class RowsByPlace : public Shelf {
protected:
    RowsByPlace() {
        addDisc(1, "one");
        addDirectories({"C1D1"});
    }
    static std::string at(Recordset& rows, int64_t place) { return textOf(rows.ValueAt(place, kName)); }
    static int errorAt(Recordset& rows, int64_t place) {
        return errorOf([&] { at(rows, place); });
    }
    // Every place gives what going there gives.
    static void expectAllPlaces(Recordset& rows) {
        const int64_t count = rows.RecordCount();
        for (int64_t place = count - 1; place >= 0; place -= 7) {
            const std::string seen = at(rows, place);
            rows.MoveTo(place);
            ASSERT_EQ(rows.Fields(kName).Text(), seen) << place;
        }
        EXPECT_EQ(errorAt(rows, count), number(ErrorNumber::NoCurrentRecord));
        EXPECT_EQ(errorAt(rows, INT64_MAX), number(ErrorNumber::NoCurrentRecord));
        EXPECT_EQ(errorAt(rows, -1), number(ErrorNumber::NoCurrentRecord));
    }
};

TEST_F(RowsByPlace, AreThoseOfEveryKindOfRecordset) {
    addFiles("C1D1", 1200);
    const auto database = open();
    for (const char* query :
         {"select * from Files order by [file name]", "select * from Files where [file name] like '*7*'",
          "select * from Files where [directory number] = 'C1D1'"}) {
        SCOPED_TRACE(query);
        expectAllPlaces(*database->OpenRecordset(query));
        expectAllPlaces(*database->OpenSnapshot(query));
    }
    expectAllPlaces(*database->OpenRecordset("Files"));
}

TEST_F(RowsByPlace, AreThoseOfATableWithGaps) {
    addFiles("C1D1", 1200);
    const auto database = open();
    const auto files = database->OpenRecordset("Files");
    EXPECT_EQ(at(*files, 300), "file300");
    database->Execute("delete * from Files where [file name] like '*3'");
    expectAllPlaces(*files);
    addFiles("C1D1", 600);
    expectAllPlaces(*files);
}

TEST_F(RowsByPlace, AJumpInATableWithGapsPassesNoMoreRowsThanAreNearThePlace) {
    addFiles("C1D1", 6000);
    const auto database = open();
    database->Execute("delete * from Files where [file name] like '*3'");
    const auto files = database->OpenRecordset("Files");
    files->MoveTo(100);
    sqlite3* const connection = database->store()->connection().handle();
    int steps = 0;
    const auto count = [](void* counter) { return ++*static_cast<int*>(counter) * 0; };
    sqlite3_progress_handler(connection, 1, count, &steps);
    for (const int64_t place : {5000, 2500, 5399}) {
        steps = 0;
        files->MoveTo(place);
        EXPECT_LT(steps, 1500) << place;
        EXPECT_EQ(files->AbsolutePosition(), place);
        EXPECT_EQ(files->Fields(kName).Text(), at(*files, place));
    }
    sqlite3_progress_handler(connection, 0, nullptr, nullptr);
}

TEST_F(RowsByPlace, LeaveTheCurrentRowAndTheEditAlone) {
    addFiles("C1D1", 600);
    const auto database = open();
    for (const auto& rows : {database->OpenRecordset("Files"), database->OpenSnapshot("Files"),
                             database->OpenRecordset("select * from Files order by [file name]")}) {
        rows->MoveTo(5);
        const std::string current = rows->Fields(kName).Text();
        int announced = 0;
        rows->repositioned = [&] { ++announced; };
        at(*rows, 599);
        EXPECT_EQ(errorAt(*rows, 600), number(ErrorNumber::NoCurrentRecord));
        EXPECT_EQ(rows->AbsolutePosition(), 5);
        EXPECT_EQ(rows->Fields(kName).Text(), current);
        EXPECT_EQ(announced, 0);
        rows->MoveNext();
        EXPECT_EQ(rows->AbsolutePosition(), 6);
    }
    const auto files = database->OpenRecordset("Files");
    files->Edit();
    (*files)("file name") = "changed";
    EXPECT_EQ(at(*files, 0), "file0");
    files->Update();
    EXPECT_EQ(at(*files, 0), "changed");
}

TEST_F(RowsByPlace, AreReadBeforeTheFirstRowAndBehindTheLast) {
    addFiles("C1D1", 3);
    const auto rows = open()->OpenRecordset("select * from Files order by [file name]");
    rows->MovePrevious();
    EXPECT_EQ(at(*rows, 1), "file1");
    EXPECT_TRUE(rows->Bof());
    rows->MoveLast();
    rows->MoveNext();
    EXPECT_EQ(at(*rows, 2), "file2");
    EXPECT_TRUE(rows->Eof());
}

TEST_F(RowsByPlace, SeeWhatOthersSaveAndMissWhatTheyDelete) {
    addFiles("C1D1", 600);
    const auto database = open();
    const auto snapshot = database->OpenSnapshot("Files");
    EXPECT_EQ(at(*snapshot, 1), "file1");
    const auto others = open()->OpenRecordset("Files");
    others->MoveNext();
    others->Edit();
    (*others)("file name") = "changed";
    others->Update();
    EXPECT_EQ(at(*snapshot, 1), "changed");
    others->Delete();
    EXPECT_EQ(errorAt(*snapshot, 1), number(ErrorNumber::RecordGone));
    EXPECT_EQ(at(*snapshot, 2), "file2");
    EXPECT_EQ(at(*others, 1), "file2");
}

TEST_F(RowsByPlace, HoldLongTextsHoweverLong) {
    const auto things = open()->OpenRecordset("Things");
    for (int i = 0; i < 6; ++i) {
        things->AddNew();
        (*things)("whole") = i;
        (*things)("long text") = std::string(600'000, static_cast<char>('a' + i));
        things->Update();
    }
    for (const int64_t place : {5, 0, 3})
        EXPECT_EQ(textOf(things->ValueAt(place, 3)), std::string(600'000, static_cast<char>('a' + place)));
    EXPECT_EQ(things->ValueAt(4, 0), Value(int64_t{4}));
}

TEST_F(RowsByPlace, HoldALongTextThatIsAskedForBehindAnotherField) {
    const auto things = open()->OpenRecordset("Things");
    things->AddNew();
    (*things)("whole") = 7;
    (*things)("long text") = "long";
    things->Update();
    EXPECT_EQ(things->ValueAt(0, 0), Value(int64_t{7}));
    EXPECT_EQ(textOf(things->ValueAt(0, 3)), "long");
}

TEST_F(RowsByPlace, RefuseWhatIsNotThere) {
    addFiles("C1D1", 1);
    const auto database = open();
    const auto rows = database->OpenRecordset("Files");
    EXPECT_EQ(errorOf([&] { rows->ValueAt(0, 4); }), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf([&] { rows->ValueAt(0, -1); }), number(ErrorNumber::UnknownField));
    const auto sums = database->OpenRecordset("select sum([file size]) as total from Files");
    EXPECT_EQ(errorOf([&] { sums->ValueAt(0, 0); }), number(ErrorNumber::NotAllowed));
    const auto none = database->OpenRecordset("select * from Files where [file name] = 'none'");
    EXPECT_EQ(errorAt(*none, 0), number(ErrorNumber::NoCurrentRecord));
    rows->Close();
    EXPECT_EQ(errorAt(*rows, 0), number(ErrorNumber::HandleClosed));
}

} // namespace
} // namespace discaro::db::test

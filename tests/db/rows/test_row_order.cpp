#include "base/Text.h"
#include "db/Shelf.h"
#include "db/engine/Store.h"
#include "support/QueryPlan.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace discaro::db::test {
namespace {

using discaro::test::RawDatabase;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct StoredRow {
    std::string key;
    int64_t number;
    std::string name;
    double size;
    std::string directory;
    auto operator<=>(const StoredRow&) const = default;
};

class RowOrder : public Shelf {
protected:
    void addNames(const std::vector<std::string>& names) const {
        const auto files = open()->OpenRecordset("Files");
        DBEngine::BeginTrans();
        for (size_t at = 0; at < names.size(); ++at) {
            files->AddNew();
            (*files)("directory number") = "C1D1S" + std::to_string(at % 50);
            if (names[at] != kNull)
                (*files)("file name") = names[at];
            (*files)("file size") = static_cast<double>(at % 7);
            files->Update();
        }
        DBEngine::CommitTrans();
    }

    std::vector<std::string> ordered(const std::string& where = "") const {
        const auto rows = open()->OpenRecordset("select * from Files " + where + " order by [file name]");
        return texts(*rows, "file name");
    }

    std::vector<int64_t> numbers(const std::string& statement) const {
        const auto rows = open()->OpenRecordset(statement);
        std::vector<int64_t> numbers;
        for (; !rows->Eof(); rows->MoveNext())
            numbers.push_back(rows->RowNumber());
        return numbers;
    }

    // The rows of the table, put into order here.
    std::vector<StoredRow> stored() const {
        std::vector<StoredRow> rows;
        const auto files = open()->OpenRecordset("Files");
        for (; !files->Eof(); files->MoveNext()) {
            const std::string name = (*files)("file name").Text();
            rows.push_back({base::orderKey(name), files->RowNumber(), name, (*files)("file size").Number(),
                            (*files)("directory number").Text()});
        }
        std::ranges::sort(rows);
        return rows;
    }

    static std::vector<int64_t> those(const std::vector<StoredRow>& rows,
                                      const std::function<bool(const StoredRow&)>& filter) {
        std::vector<int64_t> numbers;
        for (const StoredRow& row : rows)
            if (filter(row))
                numbers.push_back(row.number);
        return numbers;
    }

    // The plans of all that a query runs, its order included.
    std::string plans(const std::string& statement) const {
        const auto database = open();
        return discaro::test::queryPlansOf(database->store()->connection(),
                                           [&] { database->OpenRecordset(statement); });
    }

    static inline const std::string kNull = "null";
};

// Names of every kind, many of them alike.
std::vector<std::string> mixedNames(size_t count, unsigned accented) {
    constexpr std::array<const char*, 8> kAccented = {"\u00C4rger",  "f\u00fcr",     "\u0416\u0443\u043A",
                                                      "A\u0308rger", "\u65e5\u672c", "z\u0323\u0301",
                                                      "Stra\u00dfe", "\u212A"};
    std::mt19937 random(7);
    std::vector<std::string> names;
    for (size_t at = 0; at < count; ++at) {
        const std::string tail = std::to_string(random() % (count / 4)) + ".txt";
        if (random() % 1000 < accented)
            names.push_back(kAccented[random() % kAccented.size()] + tail);
        else
            names.push_back(std::string(1, static_cast<char>("afkszAFKSZ"[random() % 10])) + tail);
    }
    return names;
}

} // namespace

TEST_F(RowOrder, AccentedLettersStandWithTheirBaseLetter) {
    addNames({"zebra", "\u00C4rger", "b", "\u00e4hnlich", "apfel", "Azur", "A\u0308hre", "u", "\u00dcber"});
    EXPECT_THAT(ordered(), ElementsAre("apfel", "Azur", "\u00e4hnlich", "A\u0308hre", "\u00C4rger", "b", "u",
                                       "\u00dcber", "zebra"));
}

TEST_F(RowOrder, NoNameComesFirstAndEqualNamesKeepTheOrderOfAdding) {
    addNames({"b", "B", kNull, "", "\u00e9", "e\u0301", "\u00c9", kNull, "b"});
    EXPECT_EQ(numbers("select * from Files order by [file name]"), (std::vector<int64_t>{3, 8, 4, 1, 2, 9, 5, 6, 7}));
    EXPECT_EQ(numbers("select * from Files order by [file name] desc"),
              (std::vector<int64_t>{7, 6, 5, 9, 2, 1, 4, 8, 3}));
}

TEST_F(RowOrder, OddBytesHaveAPlaceToo) {
    RawDatabase(path()).execute(
        "INSERT INTO Files(\"file name\") VALUES (CAST(x'61FF' AS TEXT)), (CAST(x'610063' AS "
        "TEXT)), (CAST(x'610062' AS TEXT)), ('a'), ('b'), (CAST(x'01' AS TEXT)), (CAST(x'C3' AS "
        "TEXT))");
    EXPECT_EQ(numbers("select * from Files order by [file name]"), (std::vector<int64_t>{6, 4, 3, 2, 1, 5, 7}));
}

// Few rows are sorted, many are taken from the index; both ways, with and without names beyond ASCII.
TEST_F(RowOrder, EveryWayGivesTheSameOrder) {
    for (const unsigned accented : {0, 10, 500, 1000}) {
        open()->Execute("delete * from Files");
        addNames(mixedNames(80000, accented));
        const std::vector<StoredRow> rows = stored();
        const auto found = [&](const std::string& condition) {
            return numbers("select * from Files where [id number] like '*' " + condition + " order by [file name]");
        };
        EXPECT_EQ(found(""), those(rows, [](auto&) { return true; }));
        EXPECT_EQ(found("and [file size] < 6"), those(rows, [](auto& row) { return row.size < 6; }));
        EXPECT_EQ(found("and [file size] = 3"), those(rows, [](auto& row) { return row.size == 3; }));
        EXPECT_EQ(found("and [file name] like '*1*'"),
                  those(rows, [](auto& row) { return row.name.find('1') != std::string::npos; }));
        EXPECT_EQ(found("and [file name] like 'f*' and [file size] > 1"),
                  those(rows, [](auto& row) { return base::foldedForComparison(row.name)[0] == 'f' && row.size > 1; }));
        EXPECT_EQ(found("and [directory number] like 'C1D1S7'"),
                  those(rows, [](auto& row) { return row.directory == "C1D1S7"; }));
    }
}

// Searches of many rows remember the order of all, and must notice whoever changes it.
TEST_F(RowOrder, FollowsEveryChangeBetweenTwoSearches) {
    addNames(mixedNames(70000, 100));
    const auto database = open();
    const auto expectRight = [&](const char* after) {
        const auto rows = database->OpenRecordset("select * from Files where [file size] > -1 order by [file name]");
        std::vector<int64_t> found;
        for (; !rows->Eof(); rows->MoveNext())
            found.push_back(rows->RowNumber());
        EXPECT_EQ(found, those(stored(), [](auto&) { return true; })) << after;
    };
    const auto rename = [&](const char* name) {
        const auto files = database->OpenRecordset("Files");
        files->FindFirst("[id number] = 35000");
        files->Edit();
        (*files)("file name") = name;
        files->Update();
    };
    expectRight("nothing");
    rename("000");
    expectRight("a change");
    addNames({"m"});
    expectRight("an added row");
    database->Execute("delete * from Files where [id number] = 7");
    expectRight("a deletion");
    DBEngine::BeginTrans();
    rename("zzz");
    expectRight("a change in a transaction");
    DBEngine::CommitTrans();
    expectRight("its commit");
    RawDatabase(path()).execute("UPDATE Files SET \"file name\" = 'b' WHERE rowid = 9");
    expectRight("another program's change");
}

TEST_F(RowOrder, RowsFarApartAreNoMatter) {
    addNames(mixedNames(70000, 100));
    RawDatabase(path()).execute("UPDATE Files SET \"id number\" = \"id number\" * 100000000000");
    EXPECT_EQ(numbers("select * from Files where [file size] > -1 order by [file name]"),
              those(stored(), [](auto&) { return true; }));
}

TEST_F(RowOrder, AFieldWithoutAnIndexIsOrderedAlike) {
    for (const char* name : {"zoo", "\u00C4rger", "b", "apfel", "\u00e4hnlich"})
        addDisc(1 + static_cast<int>(count("Discs")), name);
    const auto named = [&](const char* order) {
        const auto rows = open()->OpenRecordset(std::string("select * from Discs order by ") + order);
        return texts(*rows, "prefered name");
    };
    EXPECT_THAT(named("[prefered name]"), ElementsAre("apfel", "\u00e4hnlich", "\u00C4rger", "b", "zoo"));
    EXPECT_THAT(named("[prefered name] desc, [id number]"),
                ElementsAre("zoo", "b", "\u00C4rger", "\u00e4hnlich", "apfel"));
    EXPECT_THAT(named("[id number] desc"), ElementsAre("\u00e4hnlich", "apfel", "b", "\u00C4rger", "zoo"));
}

TEST_F(RowOrder, AConditionOnTheNameAloneWalksTheIndexOfNames) {
    addNames(mixedNames(100, 0));
    for (const char* condition : {"", "and [file name] like '*text*'", "and [file name] like 'k*'",
                                  "and [file name] like 'kiosk' and [id number] > 3"}) {
        const std::string all =
            plans("select * from Files where [id number] like '*' " + std::string(condition) + " order by [file name]");
        EXPECT_THAT(all, HasSubstr("USING COVERING INDEX file name")) << condition;
        EXPECT_THAT(all, Not(HasSubstr("TEMP B-TREE"))) << condition;
        EXPECT_THAT(all, Not(HasSubstr("SCAN Files\n"))) << condition;
    }
    EXPECT_THAT(plans("select * from Files where [file name] like 'k*.txt' order by [file name]"),
                HasSubstr("(file name>? AND file name<?)"));
}

TEST_F(RowOrder, AConditionOnAnotherFieldReadsTheTableOnceAndFetchesNothingThroughAnIndex) {
    addNames(std::vector<std::string>(21000, "k"));
    for (const char* condition :
         {"[file size] > 3", "[file name] like 'k*' and [file size] > 3", "[file name] like 'k' and [file size] > 3",
          "[file size] > 3 and [file name] like '*x*'", "[file name] like 'k*' or [directory number] like 'C1D1S3'"}) {
        const std::string all = plans("select * from Files where " + std::string(condition) + " order by [file name]");
        EXPECT_THAT(all, HasSubstr("SCAN Files\n")) << condition;
        EXPECT_THAT(all, Not(HasSubstr("USING INDEX"))) << condition;
        EXPECT_THAT(all, Not(HasSubstr("TEMP B-TREE"))) << condition;
    }
}

TEST_F(RowOrder, ANarrowSearchInAnIndexComesBeforeTheTable) {
    addNames(mixedNames(100, 0));
    for (const char* condition :
         {"[directory number] like 'C1D1S7'", "[directory number] like 'C1D1S7*' and [file size] > 1",
          "[file name] like 'k1*' and [file size] > 1", "[id number] like '7' and [file size] > 1"}) {
        const std::string all = plans("select * from Files where " + std::string(condition) + " order by [file name]");
        EXPECT_THAT(all, HasSubstr("USING INTEGER PRIMARY KEY (rowid=?)")) << condition;
        EXPECT_THAT(all, Not(HasSubstr("SCAN"))) << condition;
    }
}

TEST_F(RowOrder, AnOrderByNumberUsesTheIndexOnlyWithoutAnotherField) {
    addDirectories({"C1D1", "C2D1"});
    EXPECT_THAT(plans("select * from Directories order by [drive id number]"),
                HasSubstr("USING COVERING INDEX directory disc"));
    const std::string other = plans("select * from Directories where Size > 1 order by [drive id number]");
    EXPECT_THAT(other, Not(HasSubstr("INDEX")));
    EXPECT_THAT(other, HasSubstr("SCAN Directories"));
}

TEST_F(RowOrder, DescendingByANumberEqualRowsTurnRoundWhateverTheCondition) {
    addNames(std::vector<std::string>(30, "k"));
    for (const char* condition : {"", "where [file size] > 1 ", "where [file name] like 'k' "}) {
        const std::string statement = "select * from Files " + std::string(condition);
        std::vector<int64_t> up = numbers(statement + "order by [file size]");
        std::ranges::reverse(up);
        EXPECT_EQ(numbers(statement + "order by [file size] desc"), up) << condition;
    }
}

TEST_F(RowOrder, AnIndexThatAnotherProgramDropsIsNotReliedOn) {
    addNames({"b", "c", "a"});
    const auto keeper = open();
    EXPECT_THAT(ordered(), ElementsAre("a", "b", "c"));
    RawDatabase(path()).execute("DROP INDEX \"file name\"");
    EXPECT_THAT(ordered(), ElementsAre("a", "b", "c"));
}

TEST_F(RowOrder, AnIndexThatTheEngineNoLongerTakesForWorthIsNotReliedOn) {
    addNames({"b", "c", "a"});
    const auto keeper = open();
    EXPECT_THAT(ordered("where [id number] > 0"), ElementsAre("a", "b", "c"));
    RawDatabase(path()).execute("ANALYZE; DELETE FROM sqlite_stat1; INSERT INTO sqlite_stat1 VALUES"
                                "('Files', 'file name', '1000000 500000'),"
                                "('Files', 'file directory', '100 1')");
    EXPECT_THAT(ordered("where [id number] > 0"), ElementsAre("a", "b", "c"));
}

} // namespace discaro::db::test

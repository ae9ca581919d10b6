#include "db/dialect/DialectStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string where(std::string_view table, std::string_view criterion) {
    return parseCriterion(criterion, tableNamed(table)).where;
}

// What the engine does at best with these tables and indexes.
class Plans : public testing::Test {
protected:
    DialectStore m_store;
};

} // namespace

TEST_F(Plans, ADirectoryIsFoundByAnIndexSearch) {
    EXPECT_THAT(m_store.planOfCriterion("Directories", "[id number] like 'C12D1S3'"),
                HasSubstr("SEARCH Directories USING COVERING INDEX DirectoryNumbers (id number=?)"));
    EXPECT_EQ(where("Directories", "[id number] like 'C12D1S3'"), "\"id number\" = ?1 COLLATE NOCASE");
}

TEST_F(Plans, ASubtreeIsARangeWithoutAFunction) {
    const std::string sum = "select sum(Size) As [Total size] , sum([number of files]) as Files , sum([number of "
                            "subdirectories]) as subs from directories where [id number] like 'C12D1S*'";
    EXPECT_THAT(m_store.plan(sum), HasSubstr("SEARCH Directories USING INDEX DirectoryNumbers (id number>? AND id "
                                             "number<?)"));
    EXPECT_EQ(parseStatement(sum, catalogueSchema()).where,
              "\"id number\" >= ?1 COLLATE NOCASE AND \"id number\" < ?2 COLLATE NOCASE");
}

TEST_F(Plans, IdentifiersNeverPayForOtherScripts) {
    for (const char* criterion : {"[parent id] like 'C12D1S*'", "[id number] like 'C12D1S**'", "[parent id] like 'k;*'",
                                  "[id number] like 'K'"})
        EXPECT_THAT(where("Directories", criterion), Not(HasSubstr("discaro_like"))) << criterion;
    EXPECT_THAT(where("Files", "[directory number] like 'C12D1S*'"), Not(HasSubstr("discaro_like")));
    EXPECT_THAT(where("Directories", "[id number] like 'C12D1S*S4'"), HasSubstr("discaro_like"));
}

TEST_F(Plans, ChildrenAndFilesOfADirectoryAreIndexSearches) {
    EXPECT_THAT(m_store.plan("select * from Directories where [parent id] like 'C12D1'"),
                HasSubstr("DirectoryParents (Parent id=?)"));
    EXPECT_THAT(m_store.plan("select * from files where [Directory Number] like 'C12D1'"),
                HasSubstr("FileDirectories (directory number=?)"));
    EXPECT_THAT(m_store.plan("select * from Directories where [Drive id Number] like 12"),
                HasSubstr("DirectoryDrives (drive id number=?)"));
    EXPECT_THAT(m_store.planOfCriterion("Directories", "[drive id number] = 12"),
                HasSubstr("DirectoryDrives (drive id number=?)"));
}

TEST_F(Plans, ARowIsFoundByItsNumber) {
    for (const char* criterion : {"[id number] like '12'", "[id number] = 12", "[id number] like 12"}) {
        EXPECT_THAT(m_store.planOfCriterion("Drive", criterion), HasSubstr("INTEGER PRIMARY KEY (rowid=?)"));
        EXPECT_THAT(m_store.planOfCriterion("Files", criterion), HasSubstr("INTEGER PRIMARY KEY (rowid=?)"));
    }
    EXPECT_THAT(m_store.planOfCriterion("Prog Tag", "[prog id] = 'FILE12'"), HasSubstr("TagKeys (Prog ID=?)"));
}

TEST_F(Plans, ANameWithoutWildcardsIsAnEquality) {
    EXPECT_EQ(where("Files", "[file name] like 'Setup.exe'"), "\"file name\" = ?1 COLLATE NOCASE");
    EXPECT_THAT(m_store.planOfCriterion("Files", "[file name] like 'Setup.exe'"), HasSubstr("(file name=?)"));
    EXPECT_THAT(m_store.planOfCriterion("Files", "[file name] = 'Setup.exe'"), HasSubstr("(file name=?)"));
    EXPECT_THAT(m_store.planOfCriterion("Files", "[file name] in ('a', 'b')"), HasSubstr("(file name=?)"));
}

TEST_F(Plans, AFixedBeginningIsAnIndexSearchWhateverItBeginsWith) {
    for (const char* pattern : {"read*", "k*", ";*", "`*", "k;`k;k*", "k*.txt", "k?", "caf\u00e9*"}) {
        const std::string plan = m_store.planOfCriterion("Files", "[file name] like '" + std::string(pattern) + "'");
        EXPECT_THAT(plan, HasSubstr("FileNames (file name>? AND file name<?)")) << pattern;
        EXPECT_THAT(plan, Not(HasSubstr("OR"))) << pattern;
    }
    for (const char* text : {"k", ";", "`", "kiosk"})
        EXPECT_EQ(where("Files", "[file name] like '" + std::string(text) + "'"), "\"file name\" = ?1 COLLATE NOCASE")
            << text;
}

TEST_F(Plans, AReadingOfTheWholeTableGoesWithoutWhatOnlyServesAnIndex) {
    const auto lean = [](std::string_view criterion) {
        return parseCriterion(criterion, tableNamed("Files")).condition.lean;
    };
    EXPECT_EQ(lean("[Comments] like 'x*'"), "discaro_like(?3, \"Comments\")");
    EXPECT_EQ(lean("[file size] > 5 and not ([file name] like 'a*' or [file name] like 'b*' and "
                   "[file size] < 9)"),
              "\"file size\" > ?1 AND NOT (discaro_like(?4, \"file name\") OR "
              "discaro_like(?7, \"file name\") AND \"file size\" < ?8)");
    EXPECT_EQ(lean("[directory number] like 'C1*'"), where("Files", "[directory number] like 'C1*'"));
}

TEST_F(Plans, OnlyWhatAllRowsMeetIsASearch) {
    const auto searches = [](std::string_view criterion) {
        return parseCriterion(criterion, tableNamed("Files")).condition.searches;
    };
    EXPECT_THAT(
        searches("[id number] like '*' and [file name] like 'a*' and [file size] >= 7"),
        ElementsAre("\"file name\" >= ?1 COLLATE NOCASE AND \"file name\" < ?2 COLLATE NOCASE", "\"file size\" >= ?4"));
    EXPECT_THAT(searches("[file name] like 'a' and [id number] like 12"),
                ElementsAre("\"file name\" = ?1 COLLATE NOCASE", "\"id number\" = ?2"));
    EXPECT_THAT(searches("[file size] between 1 and 2 and [file name] in ('a', 'b')"),
                ElementsAre("\"file size\" >= ?1 AND \"file size\" <= ?2", "\"file name\" COLLATE NOCASE IN (?3, ?4)"));
    EXPECT_THAT(searches("[file name] like 'a*' or [file size] > 7"), IsEmpty());
    EXPECT_THAT(searches("not [file name] like 'a*' and [file name] not like 'b*'"), IsEmpty());
    EXPECT_THAT(searches("([file name] like 'a' or [file name] like 'b') and [file size] <> 3"), IsEmpty());
}

} // namespace discaro::db::test

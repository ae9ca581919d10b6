#include "db/test_dialect_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {

using testing::HasSubstr;
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
    EXPECT_THAT(
        m_store.planOfCriterion("Directories", "[id number] like 'C12D1S3'"),
        HasSubstr("SEARCH Directories USING COVERING INDEX DirectoryNumbers (id number=?)"));
    EXPECT_EQ(where("Directories", "[id number] like 'C12D1S3'"),
              "\"id number\" = ?1 COLLATE NOCASE");
}

TEST_F(Plans, ASubtreeIsARangeWithoutAFunction) {
    const std::string sum =
        "select sum(Size) As [Total size] , sum([number of files]) as Files , sum([number of "
        "subdirectories]) as subs from directories where [id number] like 'C12D1S*'";
    EXPECT_THAT(m_store.plan(sum),
                HasSubstr("SEARCH Directories USING INDEX DirectoryNumbers (id number>? AND id "
                          "number<?)"));
    EXPECT_EQ(parseStatement(sum, catalogueSchema()).where,
              "\"id number\" >= ?1 COLLATE NOCASE AND \"id number\" < ?2 COLLATE NOCASE");
}

TEST_F(Plans, IdentifiersNeverPayForOtherScripts) {
    for (const char* criterion : {"[parent id] like 'C12D1S*'", "[id number] like 'C12D1S**'",
                                  "[parent id] like 'k;*'", "[id number] like 'K'"})
        EXPECT_THAT(where("Directories", criterion), Not(HasSubstr("discaro_like"))) << criterion;
    EXPECT_THAT(where("Files", "[directory number] like 'C12D1S*'"),
                Not(HasSubstr("discaro_like")));
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
    for (const char* criterion :
         {"[id number] like '12'", "[id number] = 12", "[id number] like 12"}) {
        EXPECT_THAT(m_store.planOfCriterion("Drive", criterion),
                    HasSubstr("INTEGER PRIMARY KEY (rowid=?)"));
        EXPECT_THAT(m_store.planOfCriterion("Files", criterion),
                    HasSubstr("INTEGER PRIMARY KEY (rowid=?)"));
    }
    EXPECT_THAT(m_store.planOfCriterion("Prog Tag", "[prog id] = 'FILE12'"),
                HasSubstr("TagKeys (Prog ID=?)"));
}

TEST_F(Plans, AFixedBeginningIsARangeInTheOrderOfNames) {
    const std::string plan =
        m_store.plan("SELECT files.*  FROM Files IN kvt.mde where [id number] like '*'and [file "
                     "name] like 'read*'  Order by [file name]");
    EXPECT_THAT(plan, HasSubstr("FileNames (file name>? AND file name<?)"));
    EXPECT_THAT(plan, Not(HasSubstr("TEMP B-TREE")));
}

TEST_F(Plans, ANameWithoutWildcardsIsAnEquality) {
    EXPECT_EQ(where("Files", "[file name] like 'Setup.exe'"), "\"file name\" = ?1 COLLATE NOCASE");
    EXPECT_THAT(m_store.planOfCriterion("Files", "[file name] like 'Setup.exe'"),
                HasSubstr("(file name=?)"));
    EXPECT_THAT(m_store.planOfCriterion("Files", "[file name] = 'Setup.exe'"),
                HasSubstr("(file name=?)"));
    EXPECT_THAT(m_store.planOfCriterion("Files", "[file name] in ('a', 'b')"),
                HasSubstr("(file name=?)"));
}

TEST_F(Plans, LettersThatOtherSignsComposeToStayIndexed) {
    for (const char* pattern : {"book", "kiosk", "k;`k;k*", "book*", "k*.txt", "k?"}) {
        const std::string plan =
            m_store.planOfCriterion("Files", "[file name] like '" + std::string(pattern) + "'");
        EXPECT_THAT(plan, HasSubstr("MULTI-INDEX OR")) << pattern;
        EXPECT_THAT(plan, Not(HasSubstr("SCAN"))) << pattern;
    }
}

TEST_F(Plans, ContainedTextRunsOverTheIndexOfNamesInOrder) {
    const std::string plan =
        m_store.plan("select [file name] from Files where [file name] like '*text*' Order by "
                     "[file name]");
    EXPECT_THAT(plan, HasSubstr("SCAN Files USING COVERING INDEX FileNames"));
    EXPECT_THAT(plan, Not(HasSubstr("TEMP B-TREE")));
}

} // namespace discaro::db::test

#include "base/RuntimeError.h"
#include "db/dialect/DialectStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace discaro::db::test {

using base::ErrorNumber;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

int number(ErrorNumber error) {
    return static_cast<int>(error);
}

Query parse(std::string_view text) {
    return parseStatement(text, catalogueSchema());
}

std::string orderOf(std::string_view text) {
    const Query query = parse(text);
    return orderSql(query.order, *query.table);
}

std::vector<std::string> columnNames(const Query& query) {
    std::vector<std::string> names;
    for (const int column : query.columns)
        names.push_back(query.table->fields.at(static_cast<size_t>(column)).name);
    return names;
}

// Two discs; C12 has a tree, C7 an empty root.
class Statements : public testing::Test {
protected:
    Statements() {
        m_store.execute(R"(
            INSERT INTO Drive ("id number", "prefered name", "volume name", "Total Size", "free size") VALUES
                (12, 'Winter photos', 'WINTER', 650000, 0), (7, 'Tools', 'TOOLS', 1.5, 0),
                (9, 'Stick', 'STICK', 700000, 12.5);
            INSERT INTO Directories ("drive id number", "Parent id", "id number", "directory name", "Directory Path",
                "number of files", "number of subdirectories", "Size", "Total number of files") VALUES
                (12, 'R', 'C12D1', 'D:\', 'D:\', 1, 2, 10.5, 30),
                (12, 'C12D1', 'C12D1S1', 'data', 'D:\data', 2, 2, 20, 9),
                (12, 'C12D1S1', 'C12D1S1S1', 'Databases', 'D:\data\Databases', 3, 0, 30, 3),
                (12, 'C12D1S1', 'C12D1S1S2', 'other', 'D:\data\other', 4, 0, 40, 4),
                (12, 'C12D1', 'C12D1S10', 'tenth', 'D:\tenth', 20, 0, 5.25, 20),
                (7, 'R', 'C7D1', 'E:\', 'E:\', 0, 0, 0, 0);
            INSERT INTO Files ("directory number", "file name", "file extension", "file size", "Attributes",
                "number of icons", "Product Version", "Comments") VALUES
                ('C12D1', 'README.TXT', '.TXT', 1200, 'AR', NULL, '2.01', 'two' || char(10) || 'lines'),
                ('C12D1S1', 'readme', '', 100, 'A', NULL, NULL, NULL),
                ('C12D1S1', 'Setup.exe', '.exe', 2048.5, 'HS', 3, '2', NULL),
                ('C12D1S1S1', 'minimal.dat', '.dat', NULL, NULL, NULL, NULL, NULL);
            INSERT INTO "Prog Tag" ("Prog ID", "Prog name", "Vendor", "Category", "CD number") VALUES
                ('CD12', 'Photo viewer', 'Microtools', 'Graphics', 12),
                ('FILE3', 'Office installer', 'MicroWorks', 'Games and more', 1),
                ('DIRC12D1S1', 'Database', NULL, 'Games', 12);)");
    }

    DialectStore m_store;
};

} // namespace

TEST_F(Statements, ABareTableNameIsAllItsRows) {
    for (const char* text : {"drive", "DRIVE", "[Drive]", " Drive "}) {
        const Query query = parse(text);
        EXPECT_EQ(query.kind, Query::Kind::Rows) << text;
        EXPECT_EQ(query.table, &tableNamed("Drive")) << text;
        EXPECT_EQ(query.columns.size(), 10U) << text;
        EXPECT_EQ(query.where, "") << text;
    }
    EXPECT_EQ(parse("Master Table").table, &tableNamed("Master Table"));
    EXPECT_EQ(parse("[Prog Tag]").table, &tableNamed("Prog Tag"));
}

TEST_F(Statements, EveryTableKeepsItsNumberOfFields) {
    EXPECT_EQ(parse("SELECT files.*  FROM Files IN kvt.mde").columns.size(), 17U);
    EXPECT_EQ(parse("SELECT directories.* FROM directories IN kvt.mde").columns.size(), 12U);
    EXPECT_EQ(parse("SELECT drive.*  FROM drive IN kvt.mde").columns.size(), 10U);
    EXPECT_EQ(parse("SELECT [prog tag].*  FROM [prog tag] IN kvt.mde").columns.size(), 23U);
}

TEST_F(Statements, AStarSelectsThePositionsInOrder) {
    std::vector<int> all(10);
    std::iota(all.begin(), all.end(), 0);
    EXPECT_EQ(parse("select * from Drive").columns, all);
    EXPECT_EQ(parse("select drive.* FROM [Drive]").columns, all);
}

TEST_F(Statements, FieldsAreSelectedInTheOrderNamed) {
    EXPECT_THAT(columnNames(parse("select [Total size], drive.[id Number],DRIVE.autorun from drive")),
                ElementsAre("Total Size", "id number", "Autorun"));
    EXPECT_THAT(columnNames(parse("select Autorun, *, comments from drive;")),
                ElementsAre("Autorun", "id number", "Drive letter", "volume name", "Serial Number", "prefered name",
                            "file system", "Total Size", "free size", "Comments", "Autorun", "Comments"));
}

TEST_F(Statements, TheFileBehindInIsReported) {
    EXPECT_EQ(parse("select * from files IN kvt.mde").externalFile, "kvt.mde");
    EXPECT_EQ(parse("select * from files in 'kvt.mde' where [file size]=1").externalFile, "kvt.mde");
    EXPECT_EQ(parse("select * from files IN \"my catalogue.mde\"").externalFile, "my catalogue.mde");
    EXPECT_EQ(parse("select * from files IN [kvt.mde];").externalFile, "kvt.mde");
    EXPECT_EQ(parse("select * from files IN kvt.mde;").externalFile, "kvt.mde");
    EXPECT_EQ(parse("select * from files").externalFile, "");
}

TEST_F(Statements, TheFileBehindInHasNoFolder) {
    EXPECT_EQ(errorOf("select * from files IN ../kvt.mde"), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf("select * from files IN 'a\\kvt.mde'"), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf(std::string_view("select * from files IN 'kvt\0.mde'", 33)), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf("select * from files IN ''"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select * from files IN"), number(ErrorNumber::SyntaxError));
}

TEST_F(Statements, TheFourFileSearchesFindWhatTheirWildcardsSay) {
    const std::string base = "SELECT files.*  FROM Files IN kvt.mde where [id number] like '*'";
    const std::string order = " Order by [file name]";
    const auto names = [&](const std::string& clauses) {
        std::vector<std::string> found;
        for (const Row& row : m_store.rows((base + clauses).append(order)))
            found.push_back(row.at(2));
        return found;
    };
    EXPECT_THAT(names(""), ElementsAre("minimal.dat", "readme", "README.TXT", "Setup.exe"));
    EXPECT_THAT(names("and [file name] like 'read' and [file extension] like '.txt' and [file size] >1000and "
                      "[Product Version] like '2'"),
                IsEmpty());
    EXPECT_THAT(names("and [file name] like '*read' and [file extension] like '.*txt' and [file "
                      "size] >1000and "
                      "[Product Version] like '*2'"),
                IsEmpty());
    EXPECT_THAT(names("and [file name] like 'read*' and [file extension] like '.txt*' and [file "
                      "size] >1000and "
                      "[Product Version] like '2*'"),
                ElementsAre("README.TXT"));
    EXPECT_THAT(names("and [file name] like '*read*' and [file extension] like '.*txt*' and [file size] "
                      ">1000and [Product Version] like '*2*'"),
                ElementsAre("README.TXT"));
    EXPECT_THAT(names("and [file name] like 'a*' and [file size] =100and [number of icons] >2"), IsEmpty());
    EXPECT_THAT(names("and [attributes] like 'Ar*' "), ElementsAre("README.TXT"));
    EXPECT_THAT(names("and [directory number] like 'c12d'"), IsEmpty());
    EXPECT_THAT(names("and [Comments] like 'two\nl*' "), ElementsAre("README.TXT"));
}

TEST_F(Statements, NumbersAndQuotesMayTouchTheNextWord) {
    const std::string base = "SELECT files.*  FROM Files IN kvt.mde where [id number] like '*'";
    EXPECT_THAT(m_store.rows(base + "and [file size] =100and [number of icons] >2").size(), 0U);
    EXPECT_THAT(m_store.rows(base + "and [file size] =100or [number of icons] >2").size(), 2U);
    EXPECT_THAT(m_store.rows(base + "and [file size] <1E+15and [file size] >5and [file name] like '*'").size(), 3U);
    EXPECT_THAT(m_store.rows(base + "and [Product Version] like '2'and [number of icons] =3").size(), 1U);
    EXPECT_THAT(m_store.rows(base + "and [file size] >1E3and[file name]like'*'Order by[file name]").size(), 2U);
}

TEST_F(Statements, TheDirectorySearchFindsDirectories) {
    EXPECT_THAT(m_store.rows("SELECT directories.* FROM directories IN kvt.mde where [id number] like '*'and "
                             "[directory "
                             "name] like 'data*' and [Drive id Number]= 12and [total Number of files] >3 Order by "
                             "[directory name]"),
                ElementsAre(testing::Contains("C12D1S1")));
    EXPECT_THAT(m_store
                    .rows("SELECT directories.*  FROM directories IN kvt.mde where [id number] "
                          "like '*' Order "
                          "by [directory name]")
                    .size(),
                6U);
    EXPECT_THAT(m_store.rows("SELECT directories.* FROM directories IN kvt.mde where [id number] like '*'and "
                             "[Size] =5and [total Size] >7 Order by [directory name]"),
                IsEmpty());
}

TEST_F(Statements, TheDiscSearchFindsFullDiscsOnly) {
    EXPECT_THAT(m_store.column("SELECT drive.* FROM drive IN kvt.mde where [free size] = 0and [volume name] like "
                               "'WIN*' and [total size] >600000 Order by [id Number]"),
                ElementsAre("12"));
    EXPECT_THAT(m_store.column("SELECT drive.*  FROM drive IN kvt.mde where [free size] = 0 Order by [id Number]"),
                ElementsAre("7", "12"));
    EXPECT_THAT(m_store.column("SELECT drive.*  FROM drive IN kvt.mde where [free size] = 0and [id Number] = 9"),
                IsEmpty());
}

TEST_F(Statements, TextTypedAsANumberIsTakenForAName) {
    const std::string base = "SELECT drive.*  FROM drive IN kvt.mde where [free size] = 0";
    EXPECT_EQ(errorOf(base + "and [total size] =abc Order by [id Number]"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf(base + "and [total size] =1 000 Order by [id Number]"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf(base + "and [total size] = Order by [id Number]"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf(base + "and [total size] =5 Mb Order by [id Number]"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf(base + "and [total size] >[free size] Order by [id Number]"), 0);
}

TEST_F(Statements, TheProgramSearchFindsTags) {
    const std::string base = "SELECT [prog tag].*  FROM [prog tag] IN kvt.mde where [id number] like '*'";
    EXPECT_THAT(m_store.column(base + " Order by [Prog Name]"), ElementsAre("3", "2", "1"));
    EXPECT_THAT(m_store.column(base + "and [category] like 'Games*' and [vendor] like 'Micro*'  Order by [Prog Name]"),
                ElementsAre("2"));
    EXPECT_THAT(m_store.column(base + "and [prog name] like '*office*'  Order by [Prog Name]"), ElementsAre("2"));
    EXPECT_EQ(errorOf(base + "and [prog name] like 'Moby's*'  Order by [Prog Name]"), number(ErrorNumber::SyntaxError));
}

TEST_F(Statements, DirectoryNumbersSpellTheTree) {
    const auto under = [&](const std::string& pattern) {
        return m_store.found("Directories", "id number", "[id number] like '" + pattern + "'");
    };
    EXPECT_THAT(under("C12D1S1"), ElementsAre("C12D1S1"));
    EXPECT_THAT(under("C12D1S1S*"), ElementsAre("C12D1S1S1", "C12D1S1S2"));
    EXPECT_THAT(under("C12D1S*"), ElementsAre("C12D1S1", "C12D1S1S1", "C12D1S1S2", "C12D1S10"));
    EXPECT_THAT(under("c12d1s1s*"), ElementsAre("C12D1S1S1", "C12D1S1S2"));
    EXPECT_THAT(under("C7D1S*"), IsEmpty());
    EXPECT_THAT(m_store.found("Directories", "id number", "[parent id] like 'C12D1'"),
                ElementsAre("C12D1S1", "C12D1S10"));
    EXPECT_THAT(m_store.column("select [file name] from files where [Directory Number] like 'C12D1S1'"),
                ElementsAre("readme", "Setup.exe"));
    EXPECT_EQ(m_store.rows("select * from Directories where [Drive id Number] like 12").size(), 5U);
}

TEST_F(Statements, RootsAreRecognisedByTheirName) {
    EXPECT_THAT(m_store.column("select directories.* FROM directories IN kvt.mde where [id number] like '*' and "
                               "[directory name] like '?:\\'"),
                ElementsAre("12", "7"));
}

TEST_F(Statements, OneRowIsFetchedByItsNumber) {
    EXPECT_THAT(m_store.column("select * FROM drive where [id number] = 7"), ElementsAre("7"));
    EXPECT_THAT(m_store.found("Drive", "prefered name", "[id number] like '7'"), ElementsAre("Tools"));
    EXPECT_THAT(m_store.found("Files", "file name", "[id number] like '3'"), ElementsAre("Setup.exe"));
    EXPECT_THAT(m_store.found("Prog Tag", "Prog name", "[prog id] = 'FILE3'"), ElementsAre("Office installer"));
    EXPECT_THAT(m_store.found("Directories", "id number", "[drive id number] = 7"), ElementsAre("C7D1"));
}

TEST_F(Statements, SumsHaveTheirAliases) {
    const Query query = parse("select sum(Size) As [Total size] , sum([number of files]) as Files , sum([number of "
                              "subdirectories]) as subs from directories where [id number] like 'C12D1S1S*'");
    EXPECT_EQ(query.kind, Query::Kind::Aggregate);
    ASSERT_EQ(query.aggregates.size(), 3U);
    EXPECT_EQ(query.aggregates[0].name, "Total size");
    EXPECT_EQ(query.aggregates[0].type, FieldType::Double);
    EXPECT_EQ(query.aggregates[1].name, "Files");
    EXPECT_EQ(query.aggregates[1].type, FieldType::Integer);
    EXPECT_EQ(query.aggregates[2].name, "subs");
    EXPECT_EQ(query.aggregates[2].sql, "SUM(\"number of subdirectories\")");
}

TEST_F(Statements, ASumRunsOverTheSubtree) {
    const auto sums = [&](const std::string& number) {
        return m_store.rows("select sum(Size) As [Total size] , sum([number of files]) as Files , sum([number of "
                            "subdirectories]) as subs from directories where [id number] like '" +
                            number + "S*'");
    };
    EXPECT_THAT(sums("C12D1S1"), ElementsAre(ElementsAre("70.0", "7", "0")));
    EXPECT_THAT(sums("C12D1"), ElementsAre(ElementsAre("95.25", "29", "2")));
    EXPECT_THAT(sums("C7D1"), ElementsAre(ElementsAre("NULL", "NULL", "NULL")));
    EXPECT_THAT(m_store.rows("select sum([file Size]) As [Total file size] from files"),
                ElementsAre(ElementsAre("3348.5")));
}

TEST_F(Statements, OtherSumsAreCountMinMaxAndAvg) {
    EXPECT_THAT(m_store.rows("SELECT COUNT(*), Count([file size]) as [with size], min([file name]), max([file "
                             "size]), avg(files.[number of icons]) as mean FROM files;"),
                ElementsAre(ElementsAre("4", "3", "minimal.dat", "2048.5", "3.0")));
    const Query query = parse("select count(*), min([file name]), avg([number of icons]) from files");
    EXPECT_EQ(query.aggregates[0].name, "count");
    EXPECT_EQ(query.aggregates[0].type, FieldType::Integer);
    EXPECT_EQ(query.aggregates[1].name, "min of file name");
    EXPECT_EQ(query.aggregates[1].type, FieldType::Text);
    EXPECT_EQ(query.aggregates[2].type, FieldType::Double);
}

TEST_F(Statements, SumsThatMeanNothingAreRefused) {
    EXPECT_EQ(errorOf("select sum([file name]) from files"), number(ErrorNumber::DataTypeConversion));
    EXPECT_EQ(errorOf("select sum(*) from files"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select total([file size]) from files"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select sum([nothing]) from files"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select sum(drive.[total size]) from files"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select [file name], sum([file size]) from files"), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf("select sum([file size]) from files order by [file name]"), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf("select sum(sum([file size])) from files"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select load_extension('x') from files"), number(ErrorNumber::SyntaxError));
}

TEST_F(Statements, DeletionTakesOneDiscsTags) {
    m_store.remove("DELETE * FROM [Prog Tag] WHERE [CD number] like 12");
    EXPECT_THAT(m_store.column("select [CD number] from [Prog Tag]"), ElementsAre("1"));
    m_store.remove("delete from [prog tag] where [cd number]=1;");
    EXPECT_THAT(m_store.column("[Prog Tag]"), IsEmpty());
}

TEST_F(Statements, DeletionWithoutAConditionTakesAll) {
    m_store.remove("delete files.* from Files");
    EXPECT_THAT(m_store.column("files"), IsEmpty());
    EXPECT_EQ(m_store.column("drive").size(), 3U);
}

TEST_F(Statements, OrderTakesSeveralFields) {
    EXPECT_EQ(orderOf("select * from files Order by [file name]"), "discaro_order(\"file name\")");
    EXPECT_EQ(orderOf("select * from files order by [file extension] desc, files.[FILE SIZE] Asc ,comments"),
              "discaro_order(\"file extension\") DESC, +(\"file size\"), discaro_order(\"Comments\")");
    EXPECT_EQ(orderOf("select * from files order by file name desc, file size"),
              "discaro_order(\"file name\") DESC, +(\"file size\")");
    EXPECT_EQ(errorOf("select * from files order by [file nam]"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select * from files order by"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select * from files order [file name]"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select * from files order by [file name] down"), number(ErrorNumber::SyntaxError));
}

TEST_F(Statements, ASortIsAListOfFields) {
    const TableDef& files = tableNamed("Files");
    const int name = files.find("file name");
    EXPECT_THAT(parseSort("[file name]", files), ElementsAre(SortTerm{name}));
    EXPECT_THAT(parseSort("[File Name] desc, [file size]", files),
                ElementsAre(SortTerm{name, true}, SortTerm{files.find("file size")}));
    EXPECT_THAT(parseSort(" file name", files), ElementsAre(SortTerm{name}));
    EXPECT_THAT(parseSort("", files), IsEmpty());
    EXPECT_THAT(parseSort("  ", files), IsEmpty());
    EXPECT_THROW(parseSort("[file name] desc desc", files), base::RuntimeError);
    EXPECT_THROW(parseSort("[file name]; drop table files", files), base::RuntimeError);
    EXPECT_THROW(parseSort("1", files), base::RuntimeError);
    EXPECT_THROW(parseSort("[nothing]", files), base::RuntimeError);
}

TEST_F(Statements, ACriterionFillsOnlyTheCondition) {
    const Query query = parseCriterion("[id number] = 5", tableNamed("Drive"));
    EXPECT_EQ(query.where, "\"id number\" = ?1");
    EXPECT_THAT(query.bindings, ElementsAre(Value(int64_t{5})));
    EXPECT_THAT(query.columns, IsEmpty());
    EXPECT_EQ(query.table, &tableNamed("Drive"));
    EXPECT_EQ(errorOfCriterion("Drive", ""), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOfCriterion("Drive", "[id number] = "), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOfCriterion("Drive", "[id number] = 5 order by [id number]"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOfCriterion("Drive", "where [id number] = 5"), number(ErrorNumber::SyntaxError));
}

TEST_F(Statements, TheSqlDoesNotDependOnTheConstants) {
    const auto where = [](const std::string& statement) { return parse(statement).where; };
    EXPECT_EQ(where("select * from files where [id number] like '3'"),
              where("select * from files where [id number] like '4711'"));
    EXPECT_EQ(where("select * from directories where [id number] like 'C1D1S*'"),
              where("select * from directories where [id number] like 'C12D1S3S14S*'"));
    EXPECT_EQ(where("select * from files where [file size] > 1 and [file name] = 'a'"),
              where("select * from files where [file size] > -2.5E10 and [file name] = 'it''s'"));
    EXPECT_EQ(where("select * from files where [file name] like '*a*'"),
              where("select * from files where [file name] like '*?long one#'"));
}

TEST_F(Statements, KeywordsHaveNoCase) {
    EXPECT_EQ(m_store
                  .rows("sElEcT * fRoM files wHeRe [file name] LiKe 'r*' aNd nOt [file size] Is "
                        "nUlL oRdEr bY "
                        "[file name] dEsC")
                  .size(),
              2U);
    EXPECT_EQ(m_store.rows("select*from files where[file name]like'r*'").size(), 2U);
}

} // namespace discaro::db::test

#include "base/RuntimeError.h"
#include "db/dialect/DialectStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace discaro::db::test {

using base::ErrorNumber;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

int number(ErrorNumber error) {
    return static_cast<int>(error);
}

Query parse(std::string_view criterion) {
    return parseCriterion(criterion, tableNamed("Files"));
}

std::string where(std::string_view criterion) {
    return parse(criterion).where;
}

Value onlyConstant(std::string_view criterion) {
    const Query query = parse(criterion);
    EXPECT_EQ(query.bindings.size(), 1U) << criterion;
    return query.bindings.empty() ? Value() : query.bindings[0];
}

// Files 1 to 5 with sizes 10, 20, 30, null and 2.5.
class Conditions : public testing::Test {
protected:
    Conditions() {
        m_store.execute(R"(
            INSERT INTO Files ("file name", "file size", "number of icons", "Comments") VALUES
                ('one', 10, 1, 'it''s'), ('Two', 20, 2, 'say "so"'), ('THREE', 30, NULL, '100'),
                (NULL, NULL, NULL, NULL), ('five', 2.5, 5, '');
            INSERT INTO "Master Table" ("scanned cd-roms", "encryption") VALUES (1, 1), (2, 0), (3, NULL);)");
    }

    std::vector<std::string> ids(std::string_view criterion) { return m_store.found("Files", "id number", criterion); }
    std::vector<std::string> masters(std::string_view criterion) {
        return m_store.found("Master Table", "scanned cd-roms", criterion);
    }

    DialectStore m_store;
};

} // namespace

TEST_F(Conditions, NumbersCompare) {
    EXPECT_THAT(ids("[file size] = 10"), ElementsAre("1"));
    EXPECT_THAT(ids("[file size] <> 10"), ElementsAre("2", "3", "5"));
    EXPECT_THAT(ids("[file size] < 10"), ElementsAre("5"));
    EXPECT_THAT(ids("[file size] > 10"), ElementsAre("2", "3"));
    EXPECT_THAT(ids("[file size] <= 10"), ElementsAre("1", "5"));
    EXPECT_THAT(ids("[file size] >= 20"), ElementsAre("2", "3"));
    EXPECT_THAT(ids("[file size]=2.5"), ElementsAre("5"));
    EXPECT_THAT(ids("10 < [file size]"), ElementsAre("2", "3"));
    EXPECT_THAT(ids("[file size] > [number of icons]"), ElementsAre("1", "2"));
}

TEST_F(Conditions, NumbersAreReadInEveryForm) {
    EXPECT_EQ(onlyConstant("[file size] = 12"), Value(int64_t{12}));
    EXPECT_EQ(onlyConstant("[file size] =-12"), Value(int64_t{-12}));
    EXPECT_EQ(onlyConstant("[file size] = + 12"), Value(int64_t{12}));
    EXPECT_EQ(onlyConstant("[file size] = 2.5"), Value(2.5));
    EXPECT_EQ(onlyConstant("[file size] = .5"), Value(0.5));
    EXPECT_EQ(onlyConstant("[file size] = 5."), Value(5.0));
    EXPECT_EQ(onlyConstant("[file size] = 1E+15"), Value(1e15));
    EXPECT_EQ(onlyConstant("[file size] = 1.5e-3"), Value(1.5e-3));
    EXPECT_EQ(onlyConstant("[file size] = -1e3"), Value(-1000.0));
    EXPECT_EQ(onlyConstant("[file size] = 9223372036854775807"), Value(INT64_MAX));
    EXPECT_EQ(onlyConstant("[file size] = 9223372036854775808"), Value(9223372036854775808.0));
    EXPECT_EQ(onlyConstant("[file size] = 1E999"), Value(HUGE_VAL));
    EXPECT_EQ(onlyConstant("[file size] = -1E999"), Value(-HUGE_VAL));
    EXPECT_EQ(onlyConstant("[file size] = 1E-999"), Value(0.0));
}

TEST_F(Conditions, NumbersThatAreNoneAreRefused) {
    for (const char* text :
         {"[file size] = --1", "[file size] = +-1", "[file size] = 1.2.3", "[file size] = 1e", "[file size] = 1 2",
          "[file size] = .", "[file size] = -", "[file size] = 0x10 ", "[file size] = 1+1", "[file size] = $5"})
        EXPECT_EQ(errorOfCriterion("Files", text), number(ErrorNumber::SyntaxError)) << text;
}

TEST_F(Conditions, TextComparesWithoutCase) {
    EXPECT_THAT(ids("[file name] = 'TWO'"), ElementsAre("2"));
    EXPECT_THAT(ids("[file name] = \"two\""), ElementsAre("2"));
    EXPECT_THAT(ids("[file name] > 'ONE'"), ElementsAre("2", "3"));
    EXPECT_THAT(ids("[file name] <= 'FIVE'"), ElementsAre("5"));
    EXPECT_THAT(ids("'one' = [file name]"), ElementsAre("1"));
    EXPECT_THAT(ids("[file name] in ('ONE', 'five')"), ElementsAre("1", "5"));
}

TEST_F(Conditions, DoubledQuotesStandForOne) {
    EXPECT_THAT(ids("[comments] = 'it''s'"), ElementsAre("1"));
    EXPECT_THAT(ids("[comments] = \"it's\""), ElementsAre("1"));
    EXPECT_THAT(ids("[comments] = \"say \"\"so\"\"\""), ElementsAre("2"));
    EXPECT_THAT(ids("[comments] = 'say \"so\"'"), ElementsAre("2"));
    EXPECT_THAT(ids("[comments] = ''"), ElementsAre("5"));
    EXPECT_EQ(onlyConstant("[comments] = ''''"), Value("'"));
    EXPECT_EQ(onlyConstant("[comments] = ''''''"), Value("''"));
}

TEST_F(Conditions, ConstantsTakeTheFieldsType) {
    EXPECT_THAT(ids("[file size] = '10'"), ElementsAre("1"));
    EXPECT_THAT(ids("[file size] = ' -2.5E0 '"), IsEmpty());
    EXPECT_THAT(ids("[number of icons] = true"), ElementsAre("1"));
    EXPECT_THAT(ids("[comments] = 100"), ElementsAre("3"));
    EXPECT_EQ(onlyConstant("[comments] = 1E+2"), Value("100"));
    EXPECT_EQ(onlyConstant("[comments] = true"), Value("true"));
    EXPECT_EQ(onlyConstant("[file size] = ' -2.5E0 '"), Value(-2.5));
}

TEST_F(Conditions, TextThatIsNoNumberCannotBeComparedWithOne) {
    for (const char* text : {"[file size] = 'abc'", "[file size] = ''", "[file size] > '1 0'", "[id number] = '1x'",
                             "'abc' = [number of icons]", "[number of icons] in (1, 'two')", "[file size] = '--1'",
                             "[file size] between 1 and 'two'", "[file size] <> ' '"})
        EXPECT_EQ(errorOfCriterion("Files", text), number(ErrorNumber::DataTypeConversion)) << text;
}

TEST_F(Conditions, BooleansCompareWithWordsAndNumbers) {
    EXPECT_THAT(masters("[encryption] = true"), ElementsAre("1"));
    EXPECT_THAT(masters("encryption = FALSE"), ElementsAre("2"));
    EXPECT_THAT(masters("[encryption] = 'True'"), ElementsAre("1"));
    EXPECT_THAT(masters("[encryption] = -1"), ElementsAre("1"));
    EXPECT_THAT(masters("[encryption] = 0"), ElementsAre("2"));
    EXPECT_THAT(masters("[encryption] is null"), ElementsAre("3"));
    EXPECT_EQ(errorOfCriterion("Master Table", "[encryption] = 'maybe'"), number(ErrorNumber::DataTypeConversion));
}

TEST_F(Conditions, NullIsFoundByIsOnly) {
    EXPECT_THAT(ids("[file name] is null"), ElementsAre("4"));
    EXPECT_THAT(ids("[number of icons] IS NOT NULL"), ElementsAre("1", "2", "5"));
    EXPECT_THAT(ids("[file name] = null"), IsEmpty());
    EXPECT_THAT(ids("[file name] <> null"), IsEmpty());
    EXPECT_THAT(ids("not [file name] = null"), IsEmpty());
    EXPECT_THAT(ids("[file name] like null"), IsEmpty());
    EXPECT_THAT(ids("[file name] not like null"), IsEmpty());
    EXPECT_THAT(ids("[file size] in (10, null)"), ElementsAre("1"));
}

TEST_F(Conditions, ListsAndBoundsMatch) {
    EXPECT_THAT(ids("[file size] in (10,30 , 99)"), ElementsAre("1", "3"));
    EXPECT_THAT(ids("[file size] not in (10, 30)"), ElementsAre("2", "5"));
    EXPECT_THAT(ids("[file size] between 10 and 20"), ElementsAre("1", "2"));
    EXPECT_THAT(ids("[file size] not between 10 and 20"), ElementsAre("3", "5"));
    EXPECT_THAT(ids("[file size] between 10and 20and [file name] like 'o*'"), ElementsAre("1"));
    EXPECT_THAT(ids("[file name] between 'F' and 'P' or [file size] = 20"), ElementsAre("1", "2", "5"));
}

TEST_F(Conditions, AndBindsTighterThanOrAndNotTightest) {
    EXPECT_THAT(ids("[file size] = 10 or [file size] = 20 and [number of icons] = 99"), ElementsAre("1"));
    EXPECT_THAT(ids("([file size] = 10 or [file size] = 20) and [number of icons] = 2"), ElementsAre("2"));
    EXPECT_THAT(ids("[number of icons] = 2 and ([file size] = 10 or [file size] = 20)"), ElementsAre("2"));
    EXPECT_THAT(ids("not [file size] = 10 and [file size] < 25"), ElementsAre("2", "5"));
    EXPECT_THAT(ids("not ([file size] = 10 and [number of icons] = 1)"), ElementsAre("2", "3", "5"));
    EXPECT_THAT(ids("not ([file size] = 10 or [number of icons] = 2)"), ElementsAre("5"));
    EXPECT_THAT(ids("not not [file size] = 10"), ElementsAre("1"));
    EXPECT_THAT(ids("not not not [file size] = 10"), ElementsAre("2", "3", "5"));
}

TEST_F(Conditions, OnlyNeededParenthesesStay) {
    EXPECT_EQ(where("((([file size] = 1)))"), "\"file size\" = ?1");
    EXPECT_EQ(where("([file size] = 1 and [file size] = 2) and [file size] = 3"),
              "\"file size\" = ?1 AND \"file size\" = ?2 AND \"file size\" = ?3");
    EXPECT_EQ(where("([file size] = 1 or [file size] = 2) and not ([file size] = 3 and [file size] = 4)"),
              "(\"file size\" = ?1 OR \"file size\" = ?2) AND NOT (\"file size\" = ?3 AND \"file size\" "
              "= ?4)");
}

TEST_F(Conditions, NegatedLikeLeavesNullOut) {
    EXPECT_THAT(ids("[file name] not like 't*'"), ElementsAre("1", "5"));
    EXPECT_THAT(ids("not [file name] like 't*'"), ElementsAre("1", "5"));
    EXPECT_THAT(ids("[file name] not like '*'"), IsEmpty());
    EXPECT_THAT(ids("not ([file name] like '*' and [file size] > 15)"), ElementsAre("1", "5"));
    EXPECT_THAT(ids("[number of icons] not like '007'"), ElementsAre("1", "2", "5"));
    EXPECT_THAT(ids("[number of icons] not like 2"), ElementsAre("1", "5"));
    EXPECT_THAT(ids("not not [file name] not like 'one'"), ElementsAre("2", "3", "5"));
}

TEST_F(Conditions, NamesMayBeQualifiedAndBare) {
    EXPECT_THAT(ids("files.[file name] = 'one'"), ElementsAre("1"));
    EXPECT_THAT(ids("[FILES].comments = '100'"), ElementsAre("3"));
    EXPECT_EQ(errorOfCriterion("Files", "drive.[id number] = 1"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOfCriterion("Files", "name = 1"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOfCriterion("Files", "[file  name] = 1"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOfCriterion("Files", "[comments] = comment"), number(ErrorNumber::UnknownField));
}

TEST_F(Conditions, ConstantsCompareWithEachOther) {
    EXPECT_EQ(ids("1 = 1").size(), 5U);
    EXPECT_EQ(ids("'A' = 'a'").size(), 5U);
    EXPECT_THAT(ids("1 = 2"), IsEmpty());
    EXPECT_THAT(ids("null = null"), IsEmpty());
}

TEST_F(Conditions, NamesAreWrittenAsTheSchemaHasThem) {
    const TableDef table{"T", {{"odd \"name\"", FieldType::Text}}};
    EXPECT_EQ(parseCriterion("[ODD \"name\"] = 'x'", table).where, "\"odd \"\"name\"\"\" = ?1 COLLATE NOCASE");
}

TEST_F(Conditions, PlaceholdersCountOnFromTheParametersBeforeThem) {
    const Query query = parseCriterion("[id number] > 7 and [file size] in (1, 2)", tableNamed("Files"), 9);
    EXPECT_EQ(query.where, "\"id number\" > ?10 AND \"file size\" IN (?11, ?12)");
    EXPECT_EQ(query.bindings.size(), 3U);
}

} // namespace discaro::db::test

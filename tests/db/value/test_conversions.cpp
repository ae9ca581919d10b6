#include "db/Shelf.h"
#include "support/RawDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace discaro::db::test {

namespace {

using base::ErrorNumber;
using discaro::test::RawDatabase;

struct Assignment {
    const char* name;
    const char* field;
    Value given;
    Value stored; // what is read back; when refused, nothing
    bool refused = false;
};

std::ostream& operator<<(std::ostream& out, const Assignment& assignment) {
    return out << assignment.name;
}

class FieldConversions : public Shelf, public testing::WithParamInterface<Assignment> {};

TEST_P(FieldConversions, AreThoseOfTheField) {
    const Assignment& assignment = GetParam();
    const auto things = open()->OpenRecordset("Things");
    things->AddNew();
    Field& field = (*things)(assignment.field);
    const int error = errorOf([&] { field = assignment.given; });
    EXPECT_EQ(error, assignment.refused ? number(ErrorNumber::DataTypeConversion) : 0);
    EXPECT_EQ(field.Value(), assignment.stored);
    things->Update();
    things->MoveLast();
    EXPECT_EQ(field.Value(), assignment.stored);
}

constexpr bool kRefused = true;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

const Assignment kIntegers[] = {
    {"WholeNumber", "whole", int64_t{-7}, int64_t{-7}},
    {"LargestNumber", "whole", INT64_MAX, INT64_MAX},
    {"HalfToEvenDown", "whole", 2.5, int64_t{2}},
    {"HalfToEvenUp", "whole", 3.5, int64_t{4}},
    {"NegativeHalf", "whole", -0.5, int64_t{0}},
    {"LargestDouble", "whole", 9223372036854774784.0, int64_t{9223372036854774784}},
    {"BeyondSixtyFourBits", "whole", 9223372036854775808.0, {}, kRefused},
    {"BelowSixtyFourBits", "whole", -9223372036854777856.0, {}, kRefused},
    {"NoNumber", "whole", std::nan(""), {}, kRefused},
    {"Infinite", "whole", kInfinity, {}, kRefused},
    {"Digits", "whole", std::string("42"), int64_t{42}},
    {"DigitsWithBlanks", "whole", std::string("  -42 "), int64_t{-42}},
    {"PlusSign", "whole", std::string("+5"), int64_t{5}},
    {"FractionText", "whole", std::string("1e3"), int64_t{1000}},
    {"FractionTextRounded", "whole", std::string("0.5"), int64_t{0}},
    {"LargestText", "whole", std::string("9223372036854775807"), INT64_MAX},
    {"TooLargeText", "whole", std::string("9223372036854775808"), {}, kRefused},
    {"EmptyText", "whole", std::string(), {}, kRefused},
    {"BlankText", "whole", std::string("  "), {}, kRefused},
    {"NumberAndWord", "whole", std::string("12 files"), {}, kRefused},
    {"CommaText", "whole", std::string("1,5"), {}, kRefused},
    {"HexText", "whole", std::string("0x10"), {}, kRefused},
    {"InfinityText", "whole", std::string("inf"), {}, kRefused},
    {"PlusMinus", "whole", std::string("+-5"), {}, kRefused},
    {"Boolean", "whole", true, {}, kRefused},
    {"Null", "whole", {}, {}},
};

const Assignment kDoubles[] = {
    {"Number", "fraction", 0.1, 0.1},
    {"WholeNumber", "fraction", int64_t{3}, 3.0},
    {"Text", "fraction", std::string(" 1.25e2 "), 125.0},
    {"TextWithComma", "fraction", std::string("1,5"), {}, kRefused},
    {"WordText", "fraction", std::string("much"), {}, kRefused},
    {"EmptyText", "fraction", std::string(), {}, kRefused},
    {"NotANumberText", "fraction", std::string("nan"), {}, kRefused},
    {"NotANumber", "fraction", std::nan(""), {}, kRefused},
    {"Infinite", "fraction", -kInfinity, {}, kRefused},
    {"HugeText", "fraction", std::string("1e999"), {}, kRefused},
    {"Boolean", "fraction", false, {}, kRefused},
    {"Null", "fraction", {}, {}},
};

const Assignment kTexts[] = {
    {"Text", "short text", std::string("Łódź"), std::string("Łódź")},
    {"EmptyText", "short text", std::string(), std::string()},
    {"WholeNumber", "short text", int64_t{12}, std::string("12")},
    {"Number", "short text", 1.5, std::string("1.5")},
    {"Boolean", "short text", true, std::string("true")},
    {"NulInside", "short text", std::string("a\0b", 3), std::string("a\0b", 3)},
    {"OtherEncoding", "short text", std::string("caf\xE9"), std::string("café")},
    {"DigitsStayText", "short text", std::string("007"), std::string("007")},
    {"LongText", "long text", std::string(100'000, 'x'), std::string(100'000, 'x')},
    {"LongTextNumber", "long text", int64_t{-1}, std::string("-1")},
    {"Null", "short text", {}, {}},
};

const Assignment kBooleansAndDates[] = {
    {"True", "flag", true, true},
    {"False", "flag", false, false},
    {"MinusOne", "flag", int64_t{-1}, true},
    {"Zero", "flag", int64_t{0}, false},
    {"Fraction", "flag", 0.5, true},
    {"ZeroFraction", "flag", 0.0, false},
    {"TrueText", "flag", std::string("TRUE"), true},
    {"FalseText", "flag", std::string(" false "), false},
    {"OtherText", "flag", std::string("yes"), {}, kRefused},
    {"EmptyFlag", "flag", std::string(), {}, kRefused},
    {"NullFlag", "flag", {}, {}},
    {"Day", "day", std::string("1999-12-31"), std::string("12/31/99")},
    {"DayAndTime", "day", std::string("2000-02-29 23:59:59"), std::string("02/29/00 11:59:59 PM")},
    {"Midnight", "day", std::string("2000-02-29 00:00:00"), std::string("02/29/00 12:00:00 AM")},
    {"DayWithBlanks", "day", std::string(" 1999-12-31 "), std::string("12/31/99")},
    {"ShortDate", "day", std::string("12/31/99"), std::string("12/31/99")},
    {"ShortDateAndTime", "day", std::string("01/02/03 12:05:06 AM"), std::string("01/02/03 12:05:06 AM")},
    {"ShortDateAtNoon", "day", std::string("01/02/79 12:00:00 PM"), std::string("01/02/79 12:00:00 PM")},
    {"FarYear", "day", std::string("1979-01-02"), std::string("01/02/1979")},
    {"FarYearInShort", "day", std::string("01/02/2080"), std::string("01/02/2080")},
    {"NearYearWithCentury", "day", std::string("01/02/1980"), std::string("01/02/80")},
    {"NoLeapYearInShort", "day", std::string("02/29/01"), {}, kRefused},
    {"NoSuchMonth", "day", std::string("13/01/01"), {}, kRefused},
    {"NoSuchHourInShort", "day", std::string("01/02/03 13:00:00 PM"), {}, kRefused},
    {"NoHour", "day", std::string("01/02/03 00:00:00 AM"), {}, kRefused},
    {"ShortDateWithoutZeros", "day", std::string("1/2/03"), {}, kRefused},
    {"ShortDateAndMore", "day", std::string("01/02/03 x"), {}, kRefused},
    {"NoLeapYear", "day", std::string("1900-02-29"), {}, kRefused},
    {"NoSuchHour", "day", std::string("1999-12-31 24:00:00"), {}, kRefused},
    {"TimeCutShort", "day", std::string("1999-12-31 23:59"), {}, kRefused},
    {"EmptyDay", "day", std::string(), {}, kRefused},
    {"NumberAsDay", "day", int64_t{36525}, {}, kRefused},
    {"FractionAsDay", "day", 36525.5, {}, kRefused},
    {"BooleanAsDay", "day", true, {}, kRefused},
    {"NullDay", "day", {}, {}},
};

std::string nameOf(const testing::TestParamInfo<Assignment>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Integer, FieldConversions, testing::ValuesIn(kIntegers), nameOf);
INSTANTIATE_TEST_SUITE_P(Double, FieldConversions, testing::ValuesIn(kDoubles), nameOf);
INSTANTIATE_TEST_SUITE_P(Text, FieldConversions, testing::ValuesIn(kTexts), nameOf);
INSTANTIATE_TEST_SUITE_P(BooleanAndDate, FieldConversions, testing::ValuesIn(kBooleansAndDates), nameOf);

class FieldAssignments : public Shelf {};

TEST_F(FieldAssignments, TakeEveryKindOfArgument) {
    const auto things = open()->OpenRecordset("Things");
    things->AddNew();
    Field& whole = (*things)("whole");
    whole = uint16_t{65535};
    EXPECT_EQ(whole.Value(), Value(int64_t{65535}));
    EXPECT_EQ(errorOf([&] { whole = UINT64_MAX; }), number(ErrorNumber::DataTypeConversion));
    whole = "17";
    EXPECT_EQ(whole.Value(), Value(int64_t{17}));
    whole = std::string_view("18");
    EXPECT_EQ(whole.Number(), 18);
    whole = 2.5F;
    EXPECT_EQ(whole.Value(), Value(int64_t{2}));
    whole = nullptr;
    EXPECT_TRUE(whole.IsNull());
    (*things)("flag") = true;
    EXPECT_EQ((*things)("flag").Text(), "true");
}

TEST_F(FieldAssignments, DatesAreStoredInTheFormThatConditionsCompare) {
    const auto things = open()->OpenRecordset("Things");
    for (const char* day : {"12/31/99", "11/21/26", "01/02/1979"}) {
        things->AddNew();
        (*things)("day") = day;
        EXPECT_EQ((*things)("day").Text(), day);
        things->Update();
    }
    const auto later = open()->OpenRecordset("select * from Things where [day] > '1999-12-30' order by [day]");
    EXPECT_THAT(texts(*later, "day"), testing::ElementsAre("12/31/99", "11/21/26"));
    RawDatabase raw(path());
    EXPECT_EQ(raw.text("SELECT group_concat(day) FROM Things"), "1999-12-31,2026-11-21,1979-01-02");
    raw.execute("UPDATE Things SET day='some day'");
    EXPECT_EQ(open()->OpenRecordset("Things")->Fields("day").Text(), "some day");
}

TEST_F(FieldAssignments, ARefusedValueLeavesTheEarlierOne) {
    const auto things = open()->OpenRecordset("Things");
    things->AddNew();
    (*things)("whole") = 5;
    EXPECT_NE(errorOf([&] { (*things)("whole") = "five"; }), 0);
    things->Update();
    things->MoveLast();
    EXPECT_EQ((*things)("whole").Text(), "5");
}

TEST_F(FieldAssignments, AStoredCountBeyondSixtyFourBitsIsAnError) {
    const auto things = open()->OpenRecordset("Things");
    RawDatabase(path()).execute("INSERT INTO Things(whole, fraction) VALUES (9223372036854775808, 1e300)");
    things->MoveFirst();
    EXPECT_EQ(errorOf([&] { (void)(*things)("whole").Value(); }), number(ErrorNumber::DataTypeConversion));
    EXPECT_EQ((*things)("fraction").Number(), 1e300);
}

TEST_F(FieldAssignments, FieldsAreReachedByAnyCapitalsAndByPosition) {
    const auto things = open()->OpenRecordset("Things");
    EXPECT_EQ(things->FieldCount(), 6);
    EXPECT_EQ(things->Fields("SHORT TEXT").Name(), "short text");
    EXPECT_EQ(&things->Fields("Short Text"), &things->Fields(2));
    EXPECT_EQ(things->Fields("DAY").Type(), FieldType::Date);
    EXPECT_EQ(things->Fields("flag").Type(), FieldType::Boolean);
    EXPECT_EQ(errorOf([&] { things->Fields("shorttext"); }), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf([&] { things->Fields(""); }), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf([&] { things->Fields(6); }), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf([&] { things->Fields(-1); }), number(ErrorNumber::UnknownField));
}

} // namespace
} // namespace discaro::db::test

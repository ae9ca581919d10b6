#include "base/Number.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace discaro::base;

struct NumberCase {
    const char* name;
    const char* text;
    double value;
};

class LeadingNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(LeadingNumber, IsRead) {
    EXPECT_DOUBLE_EQ(leadingNumber(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, LeadingNumber,
    testing::Values(NumberCase{"Empty", "", 0}, NumberCase{"Letters", "abc", 0}, NumberCase{"Tail", "12abc", 12},
                    NumberCase{"BlankBetweenDigits", "1 000", 1000}, NumberCase{"TabsAndLineFeeds", "\t1\n2", 12},
                    NumberCase{"Sign", " - 5", -5}, NumberCase{"Plus", "+7.5", 7.5},
                    NumberCase{"OnePointOnly", "1.2.3", 1.2}, NumberCase{"PointFirst", ".5x", 0.5},
                    NumberCase{"PointAlone", ".", 0}, NumberCase{"SignAlone", "-", 0},
                    NumberCase{"ExponentE", "1E3", 1000}, NumberCase{"ExponentD", "2d-1", 0.2},
                    NumberCase{"ExponentWithoutDigits", "3e", 3}, NumberCase{"ExponentSignAlone", "3e+", 3},
                    NumberCase{"Hexadecimal", "&H1F", 31}, NumberCase{"HexadecimalTail", "&hFFzz", 255},
                    NumberCase{"Octal", "&O17", 15}, NumberCase{"BadPrefix", "&X1", 0},
                    NumberCase{"CarriageReturnStops", "1\r2", 1}, NumberCase{"SizeText", "12.5 Kb", 12.5},
                    NumberCase{"TooSmall", "1e-999", 0}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LeadingNumber, TooLargeIsInfinite) {
    EXPECT_TRUE(std::isinf(leadingNumber("1e999")));
    EXPECT_LT(leadingNumber("-1e999"), 0);
    EXPECT_TRUE(std::isinf(leadingNumber(std::string(400, '9'))));
}

TEST(LeadingNumber, TooSmallIsZeroWithoutAnExponentToo) {
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(leadingNumber("0." + std::string(900, '0') + "1e400"), 0);
    EXPECT_TRUE(std::isinf(leadingNumber("0.001e999999999999")));
}

TEST(NumberText, IsPlainAndHasAtMostFifteenDigits) {
    EXPECT_EQ(numberText(100.0), "100");
    EXPECT_EQ(numberText(2.5), "2.5");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(numberText(123456789012345.0), "123456789012345");
    EXPECT_EQ(numberText(1e15), "1E+15");
    EXPECT_EQ(numberText(int64_t{9007199254740993}), "9007199254740993");
}

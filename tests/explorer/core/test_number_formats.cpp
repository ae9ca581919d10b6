#include "base/RuntimeError.h"
#include "explorer/NumberFormats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace discaro::explorer {

using db::Value;

TEST(StandardText, HasThousandsSeparatorsAndTwoDecimals) {
    EXPECT_EQ(standardText(Value(0.0)), "0.00");
    EXPECT_EQ(standardText(Value(7.5)), "7.50");
    EXPECT_EQ(standardText(Value(1023.99)), "1,023.99");
    EXPECT_EQ(standardText(Value(1234.5)), "1,234.50");
    EXPECT_EQ(standardText(Value(1234567.891)), "1,234,567.89");
    EXPECT_EQ(standardText(Value(int64_t{1234})), "1,234.00");
    EXPECT_EQ(standardText(Value(-1234.5)), "-1,234.50");
    EXPECT_EQ(standardText(Value(-123.0)), "-123.00");
}

TEST(StandardText, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(standardText(Value(0.125)), "0.13");
    EXPECT_EQ(standardText(Value(-0.125)), "-0.13");
    EXPECT_EQ(standardText(Value(1.005)), "1.01");
    EXPECT_EQ(standardText(Value(0.005)), "0.01");
    EXPECT_EQ(standardText(Value(0.0049)), "0.00");
    EXPECT_EQ(standardText(Value(-0.0049)), "0.00");
    EXPECT_EQ(standardText(Value(0.0000001)), "0.00");
}

TEST(StandardText, CarriesIntoNewDigits) {
    EXPECT_EQ(standardText(Value(999.995)), "1,000.00");
    EXPECT_EQ(standardText(Value(9.999)), "10.00");
    EXPECT_EQ(standardText(Value(0.999)), "1.00");
}

TEST(StandardText, NullIsEmptyAndTextThatIsNoNumberStays) {
    EXPECT_EQ(standardText(Value()), "");
    EXPECT_EQ(standardText(Value(std::string("unknown"))), "unknown");
    EXPECT_EQ(standardText(Value(std::string("1536.5"))), "1,536.50");
}

TEST(StandardText, HoldsNumbersOfAnySize) {
    EXPECT_EQ(standardText(Value(5368709120.0)), "5,368,709,120.00");
    EXPECT_EQ(standardText(Value(1e15)), "1,000,000,000,000,000.00");
    EXPECT_EQ(standardText(Value(std::numeric_limits<double>::max())).size(), 309 + 102 + 3);
    EXPECT_NO_THROW(standardText(Value(std::numeric_limits<double>::infinity())));
    EXPECT_NO_THROW(standardText(Value(std::nan(""))));
}

TEST(StandardText, ShowsFifteenDigits) {
    EXPECT_EQ(standardText(Value(1234567890123.45)), "1,234,567,890,123.45");
    EXPECT_EQ(standardText(Value(1234567890123.96)), "1,234,567,890,123.96");
}

TEST(WholeText, CutsTheDecimalsAndDoesNotRound) {
    EXPECT_EQ(wholeText(Value(1234.0)), "1,234");
    EXPECT_EQ(wholeText(Value(650.25)), "650");
    EXPECT_EQ(wholeText(Value(1023.99)), "1,023");
    EXPECT_EQ(wholeText(Value(0.0)), "0");
}

TEST(WholeText, NullHasNothingToCut) {
    EXPECT_THROW(wholeText(Value()), base::RuntimeError);
    EXPECT_THROW(wholeText(Value(std::string())), base::RuntimeError);
}

TEST(FileSize, IsAWholeNumberOfAtLeastOneKilobyte) {
    EXPECT_EQ(fileSizeText(Value(0.0)), "1 Kb");
    EXPECT_EQ(fileSizeText(Value(0.4)), "1 Kb");
    EXPECT_EQ(fileSizeText(Value()), "1 Kb");
    EXPECT_EQ(fileSizeText(Value(-20.0)), "1 Kb");
    EXPECT_EQ(fileSizeText(Value(1536.0)), "1,536 Kb");
    EXPECT_EQ(fileSizeText(Value(1023.99)), "1,023 Kb");
    EXPECT_EQ(fileSizeText(Value(1.9)), "1 Kb");
}

TEST(FileSize, SortsAsTwelveDigits) {
    EXPECT_EQ(fileSizeSortText(Value(1536.0)), "000000001536");
    EXPECT_EQ(fileSizeSortText(Value(0.0)), "000000000001");
    EXPECT_EQ(fileSizeSortText(Value(0.4)), "000000000001");
    EXPECT_EQ(fileSizeSortText(Value()), "000000000001");
    EXPECT_EQ(fileSizeSortText(Value(1023.99)), "000000001024");
    EXPECT_EQ(fileSizeSortText(Value(-5.0)), "000000000001");
    EXPECT_LT(fileSizeSortText(Value(999.0)), fileSizeSortText(Value(1000.0)));
}

TEST(FileSize, BeyondThirtyTwoBitsIsWholeInBothTexts) {
    const Value size(6442450944.0);
    EXPECT_EQ(fileSizeText(size), "6,442,450,944 Kb");
    EXPECT_EQ(fileSizeSortText(size), "006442450944");
}

TEST(FileSize, EndlessOnesAreNoTrap) {
    const Value endless(std::numeric_limits<double>::infinity());
    EXPECT_EQ(fileSizeSortText(endless), "000000000001");
    EXPECT_NO_THROW(fileSizeText(endless));
}

TEST(CountSortText, HasTwelveDigitsInGroups) {
    EXPECT_EQ(countSortText(Value(int64_t{0})), "000,000,000,000");
    EXPECT_EQ(countSortText(Value(int64_t{12})), "000,000,000,012");
    EXPECT_EQ(countSortText(Value(int64_t{1234567})), "000,001,234,567");
    EXPECT_EQ(countSortText(Value()), "");
    EXPECT_LT(countSortText(Value(int64_t{9})), countSortText(Value(int64_t{10})));
}

TEST(DateSortText, TurnsTheYearToTheFront) {
    EXPECT_EQ(dateSortText("04/28/99"), "99/04/28");
    EXPECT_EQ(dateSortText("4/8/1999"), "99/04/08");
    EXPECT_EQ(dateSortText("12/31/01"), "01/12/31");
    EXPECT_EQ(dateSortText("1999-04-28"), "99/04/28");
    EXPECT_EQ(dateSortText("28.04.99"), "99/04/28");
}

TEST(DateSortText, LeavesWhatIsNoDate) {
    for (const char* text : {"", "never", "13/32/99", "02/29/99", "1/2", "1/2/3/4", "//", "-1/2/3", "99999/1/1"})
        EXPECT_EQ(dateSortText(text), text);
    EXPECT_EQ(dateSortText("02/29/96"), "96/02/29");
    EXPECT_EQ(dateSortText("02/29/00"), "00/02/29") << "00 is 2000, a leap year";
    EXPECT_EQ(dateSortText("02/29/2000"), "00/02/29");
    EXPECT_EQ(dateSortText("02/29/1900"), "02/29/1900");
}

TEST(DateSortText, KnowsHowManyDaysAMonthHas) {
    const std::vector<int> days = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (size_t month = 1; month <= days.size(); ++month) {
        const auto date = [&](int day) { return std::to_string(month) + '/' + std::to_string(day) + "/99"; };
        const int last = days[month - 1];
        EXPECT_NE(dateSortText(date(last)), date(last));
        EXPECT_EQ(dateSortText(date(last + 1)), date(last + 1));
    }
}

} // namespace discaro::explorer

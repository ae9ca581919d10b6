#include "base/RuntimeError.h"
#include "base/Stamp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

using namespace discaro::base;

namespace {

std::time_t local(int year, int month, int day, int hour, int minute, int second) {
    std::tm parts{};
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

} // namespace

TEST(Stamp, HasTwoDigitsEverywhereAndAnElevenCharacterTime) {
    EXPECT_EQ(stampText(local(2002, 12, 25, 10, 30, 15)), "12/25/02 10:30:15 AM");
    EXPECT_EQ(stampText(local(1999, 1, 2, 3, 4, 5)), "01/02/99 03:04:05 AM");
}

TEST(Stamp, TheHourRunsFromOneToTwelve) {
    EXPECT_EQ(stampText(local(2001, 6, 7, 0, 0, 1)), "06/07/01 12:00:01 AM");
    EXPECT_EQ(stampText(local(2001, 6, 7, 12, 0, 0)), "06/07/01 12:00:00 PM");
    EXPECT_EQ(stampText(local(2001, 6, 7, 23, 59, 59)), "06/07/01 11:59:59 PM");
}

TEST(Stamp, ExactlyMidnightHasNoTime) {
    EXPECT_EQ(stampText(local(2001, 6, 7, 0, 0, 0)), "06/07/01");
}

TEST(Stamp, TheShortDateIsItsDay) {
    EXPECT_EQ(dateText(local(2026, 1, 2, 23, 59, 59)), "01/02/26");
    EXPECT_EQ(dateText(local(1999, 12, 31, 0, 0, 0)), "12/31/99");
}

TEST(RuntimeErrorText, IsTheTablesTextWithTheDetailBehindIt) {
    EXPECT_EQ(RuntimeError(ErrorNumber::NoCurrentRecord).description(), "No current record");
    EXPECT_EQ(RuntimeError(ErrorNumber::UnknownField, "x").description(), "The table has no field of this name: x");
    EXPECT_EQ(RuntimeError(ErrorNumber::DataTypeConversion).number(), 3421);
}

TEST(RuntimeErrorText, TellsWhatTheErrorIsAboutOnce) {
    const RuntimeError plain(ErrorNumber::FileSystemUnknown);
    EXPECT_EQ(plain.about("/a/disc.iso").description(), "The file is not a disc image (/a/disc.iso)");
    EXPECT_EQ(plain.about("/a/disc.iso").number(), plain.number());
    EXPECT_EQ(RuntimeError(ErrorNumber::PathMissing, "/a/disc.iso").about("/a/disc.iso").description(),
              "The path was not found: /a/disc.iso");
}

TEST(SkipErrors, PassesOverARuntimeErrorOnly) {
    EXPECT_TRUE(skipErrors([] {}));
    EXPECT_FALSE(skipErrors([] { throw RuntimeError(ErrorNumber::ReadFailure); }));
    EXPECT_THROW(skipErrors([] { throw std::logic_error("a mistake of the program"); }), std::logic_error);
}

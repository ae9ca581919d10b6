#include "scanner/FileCapture.h"
#include "scanner/ScanClock.h"
#include "scanner/Texts.h"

#include <gtest/gtest.h>

using namespace discaro;
using namespace discaro::scanner;

TEST(Extension, IsThePointAndWhatStandsBehindTheLastOne) {
    EXPECT_EQ(extensionOf("D:\\READ.ME.TXT"), ".TXT");
    EXPECT_EQ(extensionOf("D:\\setup.exe"), ".exe");
}

TEST(Extension, AFileWithoutAPointTakesTheTailOfItsDirectorysPath) {
    EXPECT_EQ(extensionOf("D:\\A.B\\README"), ".B\\README");
}

TEST(Extension, ANameThatEndsInAPointHasNone) {
    EXPECT_EQ(extensionOf("D:\\README."), "");
    EXPECT_EQ(extensionOf("D:\\README"), "");
}

TEST(AttributeText, HasTheLettersInOneOrder) {
    EXPECT_EQ(attributeLetters(0), "");
    EXPECT_EQ(attributeLetters(32 | 2 | 1), "AHR");
    EXPECT_EQ(attributeLetters(63), "AHRSD");
    EXPECT_EQ(attributeLetters(1 | 8), "R");
}

TEST(StampSplit, GivesAnEightCharacterDateAndAnElevenCharacterTime) {
    const auto parts = splitStamp("12/25/02 10:30:15 AM");
    EXPECT_TRUE(parts.split);
    EXPECT_EQ(parts.date, "12/25/02");
    EXPECT_EQ(parts.time, "10:30:15 AM");
}

TEST(StampSplit, TakesTheLastPPlusTwoCharactersWhateverTheDatesLength) {
    EXPECT_EQ(splitStamp("1/2/02 10:30:15 AM").time, ":30:15 AM") << "a six-character date cuts the time";
    EXPECT_EQ(splitStamp("12/25/2002 1:02:03 AM").time, "02 1:02:03 AM") << "a longer one reaches into the date";
}

TEST(StampSplit, WithoutABlankBothStayUnset) {
    EXPECT_FALSE(splitStamp("12/25/02").split);
    EXPECT_FALSE(splitStamp("").split);
}

TEST(ScanTexts, TheReportSentenceNamesDetailAndErrorAction) {
    EXPECT_EQ(reportSentence({}), "Scanned with basic details ignoring all errors.");
    EXPECT_EQ(reportSentence({.DetailLevel = "all", .ErrorAction = "cancel", .LogErrors = {}, .UseFreeNumber = {}}),
              "Scanned with all details not ignoring any errors.");
}

TEST(ScanTexts, CommentsAreTheSentenceAloneOrWithTheUsersTextBelow) {
    EXPECT_EQ(initialComments({}, ""), "Scanned with basic details ignoring all errors.");
    EXPECT_EQ(initialComments({}, "mine\nmore"), "Scanned with basic details ignoring all errors.\r\nmine\nmore");
}

TEST(ScanTexts, TheSettingsStandOnFivePiecesAndTheCounts) {
    EXPECT_EQ(settingsText({.preferredName = "Games 1",
                            .driveName = "D:\\",
                            .comments = "two\r\nlines",
                            .options = {},
                            .directories = 12,
                            .files = 3456}),
              "* These are the final settings for your CD-ROM.\r\n\r\n* To start scanning press "
              "Finish.\r\n\r\n"
              "* To exit press Cancel.\r\n\r\nPreferred Name:\r\n      Games 1\r\n\r\nDrive "
              "Name:\r\n      D:\\\r\n\r\n"
              "Comments:\r\n      two\r\nlines\r\n\r\n"
              "* This CD-ROM will be scanned with basic details ignoring all errors.\r\n\r\n"
              "* The CD-ROM contains :-\r\n   12 Directories\r\n   3456 Files");
}

TEST(ScanTexts, TheSettingsSayThatNoErrorsAreIgnored) {
    ScanSettings settings;
    settings.options = {.DetailLevel = "minimal", .ErrorAction = "cancel", .LogErrors = {}, .UseFreeNumber = {}};
    const std::string text = settingsText(settings);
    const std::string sentence =
        "\r\n\r\n* This CD-ROM will be scanned with minimal details not ignoring any errors.\r\n\r\n";
    EXPECT_NE(text.find(sentence), std::string::npos) << text;
}

TEST(ScanTexts, AValueWithThePlaceOfAnotherStaysAsItIs) {
    EXPECT_EQ(directoryErrorText("The path was not found", "D:\\%1"), "The path was not found in Directory :- D:\\%1");
    EXPECT_EQ(fileErrorText("%2", "D:\\A"), "%2 in File :- D:\\A");
}

TEST(ScanClock, TheFirstTickIsZero) {
    ScanClock clock;
    clock.start();
    clock.tick(41);
    clock.carryMinute();
    EXPECT_EQ(clock.elapsed(), "+00:00");
    clock.tick(43);
    EXPECT_EQ(clock.elapsed(), "+00:02");
}

TEST(ScanClock, TheMinutesTurnIsBridged) {
    ScanClock clock;
    clock.start();
    clock.tick(58);
    clock.tick(1);
    EXPECT_EQ(clock.elapsed(), "+00:03");
}

TEST(ScanClock, SixtySecondsBecomeAMinute) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    for (int second = 15; second <= 75; second += 15) {
        clock.tick(second % 60);
        clock.carryMinute();
    }
    EXPECT_EQ(clock.elapsed(), "+01:15");
}

TEST(ScanClock, AMinuteIsFullAtItsSixtiethSecond) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    clock.tick(50);
    clock.carryMinute();
    EXPECT_EQ(clock.elapsed(), "+00:50");
    clock.tick(0);
    clock.carryMinute();
    EXPECT_EQ(clock.elapsed(), "+01:00");
}

TEST(ScanClock, ASecondTickInTheSameSecondAddsNothing) {
    ScanClock clock;
    clock.start();
    clock.tick(5);
    clock.tick(7);
    clock.tick(7);
    EXPECT_EQ(clock.elapsed(), "+00:02");
}

TEST(ScanClock, TheNextScanStartsFromNothing) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    clock.tick(50);
    clock.tick(40);
    clock.carryMinute();
    EXPECT_EQ(clock.elapsed(), "+01:40");
    clock.start();
    EXPECT_EQ(clock.elapsed(), "+00:00");
    clock.tick(45);
    EXPECT_EQ(clock.elapsed(), "+00:00") << "the time between the scans belongs to neither";
}

TEST(ScanClock, AStretchOfMoreThanAMinuteLosesWholeMinutes) {
    ScanClock clock;
    clock.start();
    clock.tick(10);
    clock.tick(12);
    EXPECT_EQ(clock.elapsed(), "+00:02") << "62 seconds have passed, two are seen";
}

TEST(ScanClock, EstimatesEverySecondTickFromTheCaptions) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    EXPECT_EQ(clock.estimate("5+", "10-"), std::nullopt);
    clock.tick(30);
    EXPECT_EQ(clock.estimate("5+", "10-"), "-01:00");
    clock.tick(31);
    EXPECT_EQ(clock.estimate("5+", "10-"), std::nullopt);
}

TEST(ScanClock, TheEstimateCountsFullMinutesAndGivesWholeSeconds) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    clock.tick(50);
    clock.tick(40);
    clock.carryMinute();
    EXPECT_EQ(clock.estimate("150+", "10-"), "-00:06") << "100 seconds, 0.67 a file";
}

TEST(ScanClock, NegativeFilesLeftCountAsPositive) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    clock.tick(10);
    EXPECT_EQ(clock.estimate("10+", "-3-"), "-00:03");
}

TEST(ScanClock, BeforeTheFirstFileTheEstimateIsZero) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    clock.tick(2);
    EXPECT_EQ(clock.estimate("", ""), "-00:00");
    clock.tick(3);
    clock.tick(4);
    EXPECT_EQ(clock.estimate("0+", "100-"), "-00:00");
}

TEST(ScanClock, MoreThanNinetyNineMinutesTakeMoreDigits) {
    ScanClock clock;
    clock.start();
    clock.tick(0);
    clock.tick(30);
    EXPECT_EQ(clock.estimate("1+", "1000-"), "-500:00");
}

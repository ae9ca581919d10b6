#include "disc/text/IniFile.h"
#include "disc/text/TextLines.h"
#include "support/BufferSource.h"

#include <gtest/gtest.h>

#include <climits>

namespace discaro::disc {

namespace {

using namespace std::string_literals;
using test::BufferSource;

IniText read(const std::string& bytes, int bufferLength = 50, std::string_view defaultText = "") {
    return privateProfileString(BufferSource(bytes), "Startup", "AppName", defaultText, bufferLength);
}

std::string appName(const std::string& bytes) {
    return read(bytes).text;
}

TEST(IniFile, GivesTheValueOfAKeyAndItsLength) {
    const auto found = read("[Startup]\r\nCmdLine=\r\nAppName=Cargo for Ships\r\nProduct=x\r\n");
    EXPECT_EQ(found.text, "Cargo for Ships");
    EXPECT_EQ(found.copied, 15);
}

TEST(IniFile, ComparesNamesWithoutRegardToCase) {
    EXPECT_EQ(appName("[STARTUP]\nappname=Cargo\n"), "Cargo");
    EXPECT_EQ(privateProfileString(BufferSource("[\xDC\x62\x65r]\nGR\xD6SSE=1\n"), "über", "grösse", "", 50).text, "1");
}

TEST(IniFile, PassesOverBlanksAroundNamesAndValues) {
    EXPECT_EQ(appName("  [ Startup\t]  \n \tAppName \t= \t Cargo  for ships \t \n"), "Cargo  for ships");
    EXPECT_EQ(privateProfileString(BufferSource("[Startup]\nAppName=Cargo"), " Startup ", " AppName ", "", 50).text,
              "Cargo");
}

TEST(IniFile, TakesOnePairOfMatchingQuotesOff) {
    EXPECT_EQ(appName("[Startup]\nAppName=\" Cargo \"\n"), " Cargo ");
    EXPECT_EQ(appName("[Startup]\nAppName='Cargo'\n"), "Cargo");
    EXPECT_EQ(appName("[Startup]\nAppName=\"\"Cargo\"\"\n"), "\"Cargo\"");
    EXPECT_EQ(appName("[Startup]\nAppName='\"Cargo\"'\n"), "\"Cargo\"");
    EXPECT_EQ(appName("[Startup]\nAppName=\"\"\n"), "");
}

TEST(IniFile, KeepsQuotesThatDoNotMatch) {
    EXPECT_EQ(appName("[Startup]\nAppName=\"Cargo'\n"), "\"Cargo'");
    EXPECT_EQ(appName("[Startup]\nAppName=\"Cargo\" two\n"), "\"Cargo\" two");
    EXPECT_EQ(appName("[Startup]\nAppName=\"\n"), "\"");
}

TEST(IniFile, PassesOverCommentsAndLinesWithoutAValue) {
    EXPECT_EQ(appName("; AppName=zero\n[Startup]\n;AppName=one\n  ; AppName=two\nAppName\nAppName=three\n"), "three");
    EXPECT_EQ(appName("[Startup]\nAppName=Cargo ; for ships\n"), "Cargo ; for ships");
}

TEST(IniFile, HasNoKeyInAComment) {
    const BufferSource source("[Startup]\n;AppName=Cargo\n");
    EXPECT_EQ(privateProfileString(source, "Startup", ";AppName", "none", 50).text, "none");
}

TEST(IniFile, TakesTheFirstLineOfTheKeyInTheFirstSectionOfTheName) {
    EXPECT_EQ(appName("[Startup]\nAppName=one\nAppName=two\n[Startup]\nAppName=three\n"), "one");
    EXPECT_EQ(appName("[Startup]\nCmdLine=\n[Startup]\nAppName=three\n"), "");
    EXPECT_EQ(appName("AppName=outside\n[Other]\nAppName=other\n[Startup]\nAppName=right\n[More]"
                      "\nAppName=more"),
              "right");
}

TEST(IniFile, DoesNotTakeAKeyOfTheNextSection) {
    EXPECT_EQ(read("[Startup]\nCmdLine=x\n[Languages]\nAppName=wrong\n").copied, 0);
}

TEST(IniFile, KeepsEqualSignsInTheValue) {
    EXPECT_EQ(appName("[Startup]\nAppName=a=b=c\n"), "a=b=c");
}

TEST(IniFile, GivesTheDefaultWhereSectionOrKeyIsMissing) {
    EXPECT_EQ(read("[Startup]\nProduct=x\n", 50, "none").text, "none");
    EXPECT_EQ(read("[Other]\nAppName=x\n", 50, "none").text, "none");
    EXPECT_EQ(read("", 50, "none").copied, 4);
    EXPECT_EQ(read("[Startup]\nProduct=x\n", 3, "none").text, "no");
    EXPECT_EQ(read("", 50).copied, 0);
}

TEST(IniFile, GivesAnEmptyTextNotTheDefaultForAKeyWithoutAValue) {
    const auto found = read("[Startup]\nAppName=\n", 50, "none");
    EXPECT_EQ(found.text, "");
    EXPECT_EQ(found.copied, 0);
}

TEST(IniFile, CutsTheValueToTheBuffer) {
    const auto found = read("[Startup]\nAppName=" + std::string(60, 'x') + "\n");
    EXPECT_EQ(found.text, std::string(49, 'x'));
    EXPECT_EQ(found.copied, 49);
    EXPECT_EQ(read("[Startup]\nAppName=" + std::string(49, 'x')).copied, 49);
    EXPECT_EQ(read("[Startup]\nAppName=Cargo\n", 1).copied, 0);
    for (const int length : {0, -1, INT_MIN})
        EXPECT_EQ(read("[Startup]\nAppName=Cargo\n", length).text, "") << length;
    EXPECT_EQ(read("[Startup]\nAppName=Cargo\n", INT_MAX).text, "Cargo");
}

TEST(IniFile, CountsAndCutsWholeCharacters) {
    const auto found = read("[Startup]\nAppName=\xE2\x82\xAC\xF0\x9F\x92\xBF\xC3\xBC!\n", 4);
    EXPECT_EQ(found.text, "€\U0001F4BFü");
    EXPECT_EQ(found.copied, 3);
    EXPECT_EQ(read("[Startup]\nAppName=\xFC\xFC\xFC\xFC\n", 4).text, "üüü");
}

TEST(IniFile, ReadsEveryEncodingThatTextFilesHave) {
    EXPECT_EQ(appName("\xEF\xBB\xBF[Startup]\nAppName=Fr\xC3\xA4\x63ht\n"), "Frächt");
    EXPECT_EQ(appName("[Startup]\nAppName=Fr\xE4\x63ht\n"), "Frächt");
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const char c : "[Startup]\r\nAppName=Fr\xE4\x63ht\r\n"s) {
        little += {c, '\0'};
        big += {'\0', c};
    }
    EXPECT_EQ(appName(little), "Frächt");
    EXPECT_EQ(appName(big), "Frächt");
}

TEST(IniFile, EndsTheTextAtTheEndMarkOfOldFiles) {
    EXPECT_EQ(appName("[Startup]\nAppName=Cargo\x1A\n"), "Cargo");
    EXPECT_EQ(appName("[Startup]\n\x1A\nAppName=Cargo\n"), "");
}

TEST(IniFile, IsNotDisturbedByNuls) {
    EXPECT_EQ(appName("\0\0[Startup]\n\0AppName=\0Cargo\0rest\n"s), "Cargo");
    EXPECT_EQ(appName(std::string(100'000, '\0')), "");
}

TEST(IniFile, ReadsASectionHeadWithoutItsClosingBracket) {
    EXPECT_EQ(appName("[Startup\nAppName=Cargo\n"), "Cargo");
    EXPECT_EQ(appName("[\nAppName=Cargo\n"), "");
    EXPECT_EQ(appName("[Startup] ; what begins\nAppName=Cargo\n"), "Cargo");
}

TEST(IniFile, ReadsNoMoreThanAMegabyte) {
    const std::string head = "[Startup]\n" + std::string(kTextLimit, 'x');
    BufferSource source(head + "\nAppName=too far\n");
    EXPECT_EQ(privateProfileString(source, "Startup", "AppName", "", 50).text, "");
    EXPECT_LE(source.bytesAsked(), kTextLimit);
}

TEST(IniFile, ReadsNoFurtherThanTheValue) {
    const BufferSource source("[Startup]\nAppName=Cargo\n" + std::string(500'000, '\n'));
    EXPECT_EQ(privateProfileString(source, "Startup", "AppName", "", 50).text, "Cargo");
    EXPECT_LE(source.bytesAsked(), 8192U);
}

TEST(IniFile, IsReadQuicklyWhateverNamesItHolds) {
    // A name of many marks in the wrong order, which takes long to normalise.
    std::string name;
    for (int count = 0; count < 200'000; ++count)
        name += count < 100'000 ? "\u0301" : "\u0323";
    EXPECT_EQ(appName("[Startup]\n" + name + "=1\nAppName=Cargo\n"), "Cargo");
    EXPECT_EQ(appName("[" + name + "]\n[Startup]\nAppName=Cargo\n"), "Cargo");
}

TEST(IniFile, PassesAFailureOfTheMediumOn) {
    BufferSource source("[Startup]\nAppName=Cargo\n");
    source.failFrom(3);
    EXPECT_THROW(privateProfileString(source, "Startup", "AppName", "", 50), base::RuntimeError);
}

} // namespace

} // namespace discaro::disc

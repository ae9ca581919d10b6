#include "base/Text.h"
#include "support/RefusedMemory.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

using namespace discaro::base;

TEST(Text, WellFormedUtf8IsRecognised) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("plain"));
    EXPECT_TRUE(isValidUtf8("\xC3\x84\xE2\x82\xAC\xF0\x9F\x92\xBF"));
}

TEST(Text, BrokenUtf8IsRefused) {
    EXPECT_FALSE(isValidUtf8("\xC4"));
    EXPECT_FALSE(isValidUtf8("\x80"));
    EXPECT_FALSE(isValidUtf8("\xC0\xAF")) << "an overlong form";
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80")) << "a surrogate";
    EXPECT_FALSE(isValidUtf8("\xF4\x90\x80\x80")) << "above the last character";
}

TEST(Text, EveryByteOfTheWesternCodePageHasAText) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    const std::string text = decodeWindows1252(bytes);
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_NE(text.find("\xE2\x82\xAC"), std::string::npos) << "the euro sign stands at 0x80";
}

TEST(Text, UnlabelledBytesReadAsUtf8WhenTheyAreWellFormed) {
    EXPECT_EQ(decodeUnlabelled("\xC3\x84rger"), "\xC3\x84rger");
    EXPECT_EQ(decodeUnlabelled("\xC4rger"), "\xC3\x84rger");
}

TEST(Text, Utf16OfBothByteOrdersIsDecoded) {
    EXPECT_EQ(decodeUtf16Le(std::string_view("A\0\xE4\0", 4)), "A\xC3\xA4");
    EXPECT_EQ(decodeUtf16Be(std::string_view("\0A\0\xE4", 4)), "A\xC3\xA4");
    EXPECT_EQ(decodeUtf16Be(std::string_view("\xD8\x3D\xDC\xBF", 4)), "\xF0\x9F\x92\xBF");
}

TEST(Text, ALoneSurrogateBecomesTheReplacementCharacterAndAnOddByteIsDropped) {
    EXPECT_EQ(decodeUtf16Be(std::string_view("\xD8\x3D\0A\0", 5)), "\xEF\xBF\xBD"
                                                                   "A");
    EXPECT_EQ(decodeUtf16Le(std::string_view("\x3D\xDC", 2)), "\xEF\xBF\xBD");
    EXPECT_EQ(decodeUtf16Be(std::string_view("\0A\xDC\xBF", 4)), "A\xEF\xBF\xBD") << "the second half of a pair alone";
}

TEST(Text, FoldingPassesOverCaseInEveryScript) {
    EXPECT_TRUE(equalFolded("README.TXT", "readme.txt"));
    EXPECT_TRUE(equalFolded("\xC3\x84RGER", "\xC3\xA4rger"));
    EXPECT_TRUE(equalFolded("\xD0\x9A\xD0\x9D\xD0\x98\xD0\x93\xD0\x90", "\xD0\xBA\xD0\xBD\xD0\xB8\xD0\xB3\xD0\xB0"));
}

TEST(Text, ADecomposedLetterEqualsTheComposedOne) {
    EXPECT_TRUE(equalFolded("A\xCC\x88rger", "\xC3\xA4rger"));
    EXPECT_FALSE(equalFolded("A\xCC\x88rger", "arger"));
}

TEST(Text, NoForeignLetterFoldsToAnAsciiOne) {
    EXPECT_FALSE(equalFolded("\xC4\xB0", "i")) << "capital I with a dot";
}

TEST(Text, AMegabyteOfCombiningMarksIsFoldedInLinearTime) {
    std::string marks = "a";
    for (int i = 0; i < 250000; ++i)
        marks += i % 2 == 0 ? "\xCC\x81" : "\xCC\xA3"; // above, below: each pair has to be ordered
    EXPECT_GE(foldedForComparison(marks).size(), marks.size() / 2);
}

TEST(Text, BytesThatAreNotTextFoldToThemselves) {
    EXPECT_EQ(foldedForComparison("A\xFFZ"), "a\xFFz");
}

TEST(LowerCase, TouchesNothingButCapitals) {
    EXPECT_EQ(lowerCase("README.TXT"), "readme.txt");
    EXPECT_EQ(lowerCase("\u00C4\u0416"), "\u00E4\u0436");
    EXPECT_EQ(lowerCase("U\u0308"), "u\u0308") << "not composed";
    EXPECT_EQ(lowerCase("\u212A"), "\u212A") << "the sign for kelvin is no k";
    EXPECT_EQ(lowerCase("A\xFFZ"), "a\xFFz");
}

TEST(Text, EqualityIsThatOfTheFoldedForms) {
    EXPECT_TRUE(equalFolded("Same", "sAME"));
    EXPECT_TRUE(equalFolded("\u00C4", "a\u0308"));
    EXPECT_FALSE(equalFolded("Same", "Sam"));
    EXPECT_FALSE(equalFolded("a", "\u00e4"));
}

TEST(OrderKey, AnAccentedLetterStandsBehindItsBaseLetter) {
    EXPECT_LT(orderKey("Azur"), orderKey("\u00e4hnlich"));
    EXPECT_LT(orderKey("\u00e4hnlich"), orderKey("\u00C4rger"));
    EXPECT_LT(orderKey("\u00C4rger"), orderKey("B"));
    EXPECT_EQ(orderKey("A\u0308rger"), orderKey("\u00e4RGER"));
    EXPECT_EQ(orderKey("README.txt"), "readme.txt");
    EXPECT_EQ(orderKey("A\xFFZ"), "a\xFFz");
}

TEST(Text, AKeyThatFindsNoMemoryIsAnErrorAndNoEnd) {
    const std::string full(std::string().capacity(),
                           'a'); // what a text holds without asking for memory
    const std::string text = full + "\u00e4";
    std::string key;
    const discaro::test::RefusedMemory refused;
    EXPECT_THROW(appendOrderKey(key, text), std::bad_alloc);
}

TEST(OrderKey, MarksStandInTheirCanonicalOrder) {
    EXPECT_EQ(orderKey("s\u0307\u0323"), orderKey("\u1e69"));
    EXPECT_EQ(orderKey("s\u0323\u0307"), "s\u0323\u0307");
    EXPECT_EQ(orderKey("\uac01"), "\u1100\u1161\u11a8");
    std::string marks = "a";
    for (int i = 0; i < 250000; ++i)
        marks += i % 2 == 0 ? "\u0301" : "\u0323";
    EXPECT_EQ(orderKey(marks).size(), marks.size());
}

TEST(OrderKey, TextsThatAreEqualWhenFoldedHaveTheSameOne) {
    for (unsigned codePoint = 0x20; codePoint < 0x10000; ++codePoint) {
        if (codePoint >= 0xD800 && codePoint < 0xE000)
            continue;
        const std::string units{static_cast<char>(codePoint), static_cast<char>(codePoint >> 8)};
        const std::string text = "a" + decodeUtf16Le(units) + "\u0301";
        ASSERT_EQ(orderKey(text), orderKey(foldedForComparison(text))) << "U+" << std::hex << codePoint;
    }
}

TEST(Text, SignsThatOnlyLookLikeAsciiStayAsTheyAre) {
    for (const char* sign : {"\u212A", "\u037E", "\u1FEF"}) {
        EXPECT_EQ(foldedForComparison(sign), sign);
        EXPECT_EQ(orderKey(sign), sign);
        EXPECT_EQ(foldedForComparison(std::string("E\u0301") + sign + "\u0301"),
                  std::string("\u00e9") + sign + "\u0301");
    }
}

TEST(Text, OnlyBlanksAreTrimmed) {
    EXPECT_EQ(trimBlanks("  a b  "), "a b");
    EXPECT_EQ(trimBlanks("   "), "");
    EXPECT_EQ(trimBlanks("\ta "), "\ta");
}

TEST(Text, AsciiNamesCompareWithoutRegardToCase) {
    EXPECT_TRUE(equalAscii("Drive ID Number", "drive id number"));
    EXPECT_FALSE(equalAscii("size", "size "));
    EXPECT_EQ(lowerAscii("\xC3\x84"
                         "B"),
              "\xC3\x84"
              "b");
}

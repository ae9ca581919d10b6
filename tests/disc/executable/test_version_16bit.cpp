#include "base/Text.h"
#include "disc/executable/VersionResource.h"
#include "disc/executable/VersionResourceBlock.h"
#include "disc/executable/VersionResourceText.h"
#include "support/BufferSource.h"
#include "support/ExecutableBuilder.h"
#include "support/FileResources.h"

#include <gtest/gtest.h>

namespace discaro::disc {

namespace {

using namespace discaro::test;

VersionTexts textsOf(const std::string& file) {
    return readResources(BufferSource(file)).version;
}

std::string company(const std::string& name, const std::string& key = "040904E4") {
    return narrowVersion({.tables = {{key, {{"CompanyName", name}}}}, .translations = {}});
}

Resource version(const std::string& data, ResourceName name = uint16_t{1}) {
    return {kVersionType, std::move(name), data};
}

TEST(VersionOf16Bit, AreAllSeven) {
    EXPECT_EQ(textsOf(neFile({version(narrowVersion(sampleVersion("040904E4")))}).bytes), sampleTexts());
}

TEST(VersionOf16Bit, AreFoundWithEveryUsualAlignment) {
    for (const unsigned shift : {0U, 1U, 4U, 8U, 9U}) {
        const auto file = neFile({version(narrowVersion(sampleVersion("040904E4")))}, shift);
        EXPECT_EQ(textsOf(file.bytes), sampleTexts()) << shift;
    }
}

TEST(VersionOf16Bit, AreFoundBesideOtherResourcesAndNames) {
    auto resources = iconResources(3);
    resources.push_back({std::string("LIST"), std::string("CARGO"), "data"});
    resources.push_back(version(company("named"), std::string("INFO")));
    resources.push_back(version(company("second"), uint16_t{2}));
    resources.push_back(version(company("first")));
    EXPECT_EQ(textsOf(neFile(resources).bytes).companyName, "first");
}

TEST(VersionOf16Bit, ComeFromTheFirstResourceWhereNumberOneIsMissing) {
    const auto file = neFile({version(company("fifth"), uint16_t{5}), version(company("second"), uint16_t{2})});
    EXPECT_EQ(textsOf(file.bytes).companyName, "fifth");
}

TEST(VersionOf16Bit, MayBeInTheLaterFormAndTheOtherWayRound) {
    EXPECT_EQ(textsOf(neFile({version(wideVersion(sampleVersion()))}).bytes), sampleTexts());
    EXPECT_EQ(textsOf(peFile({version(narrowVersion(sampleVersion()))}).bytes), sampleTexts());
}

TEST(VersionOf16Bit, AreToldByTheKeyThatStandsWhereTheLaterFormHasAKind) {
    const auto resource = [](char fifth) { return std::string(4, '\1') + fifth + "KEY" + '\0'; };
    EXPECT_FALSE(VersionBlockTree(resource('V')).isWide());
    EXPECT_FALSE(VersionBlockTree(resource(' ')).isWide());
    EXPECT_TRUE(VersionBlockTree(resource('\1')).isWide());
    EXPECT_TRUE(VersionBlockTree(resource('\0')).isWide());
}

TEST(VersionOf16Bit, DoNotReachIntoTheAlignmentBehindTheResource) {
    auto file = neFile({version(company("whole"))}, 9);
    const auto junk = company("junk");
    const auto end = file.bytes.find("whole") + 8;
    file.bytes.replace(end, junk.size(), junk);
    EXPECT_EQ(textsOf(file.bytes).companyName, "whole");
}

TEST(VersionOf16Bit, OfAFileWithoutResourcesAreEmpty) {
    auto file = neFile({version(narrowVersion(sampleVersion("040904E4")))});
    putWord(file.bytes, file.header + 0x26,
            0x40); // names where the resources ought to be: there are none
    EXPECT_EQ(textsOf(file.bytes), VersionTexts{});
    EXPECT_EQ(textsOf(neFile({}).bytes), VersionTexts{});
}

struct CodePageCase {
    std::string name;
    std::string digits;
    std::string bytes;
    std::string text;
};

void PrintTo(const CodePageCase& row, std::ostream* stream) {
    *stream << row.name;
}

class VersionCodePage : public testing::TestWithParam<CodePageCase> {};

TEST_P(VersionCodePage, OfTheTableIsConverted) {
    const auto& row = GetParam();
    const auto file = neFile({version(company(row.bytes, "0409" + row.digits))});
    EXPECT_EQ(textsOf(file.bytes).companyName, row.text);
}

const std::vector<CodePageCase> kCodePages = {
    {"CentralEuropean", "04E2", "\xA3\xF3\x64\xBC", "\u0141\u00f3d\u013d"},
    {"Cyrillic", "04E3", "\xCC\xE8\xF0", "\u041c\u0438\u0440"},
    {"Western", "04E4", "Gr\xFC\xDF\x65 \x80 \x99", "Gr\u00fc\u00dfe \u20ac \u2122"},
    {"WesternThatLooksLikeUtf8", "04E4", "\xC3\xBC", "\u00c3\u00bc"},
    {"Greek", "04E5", "\xC5\xEB\xEB", "\u0395\u03bb\u03bb"},
    {"Turkish", "04E6", "\xDD\xFE\xFD", "\u0130\u015f\u0131"},
    {"Hebrew", "04E7", "\xF9\xEC\xE5\xED", "\u05e9\u05dc\u05d5\u05dd"},
    {"Arabic", "04E8", "\xD3\xE1\xC7\xE3", "\u0633\u0644\u0627\u0645"},
    {"Baltic", "04E9", "\xE0\xE8\xE6", "\u0105\u010d\u0119"},
    {"Vietnamese", "04EA", "\xFE\xF5", "\u20ab\u01a1"},
    {"Dos", "01B5", "\x81\xE1", "\u00fc\u00df"},
    {"DosLatin", "0352", "\x81\xB5", "\u00fc\u00c1"},
    {"DosCentralEuropean", "0354", "\xA5\xA4", "\u0105\u0104"},
    {"DosCyrillicOfOld", "0357", "\xA5\xA4", "\u0426\u0446"},
    {"DosCyrillic", "0362", "\x84\xA5", "\u0414\u0435"},
    {"Thai", "036A", "\xA1\xA5", "\u0e01\u0e05"},
    {"Japanese", "03A4", "\x93\xFA\x96\x7B\x83\x5C", "\u65e5\u672c\u30bd"},
    {"SimplifiedChinese", "03A8", "\xD6\xD0\xCE\xC4", "\u4e2d\u6587"},
    {"Korean", "03B5", "\xC7\xD1\xB1\xDB", "\ud55c\uae00"},
    {"TraditionalChinese", "03B6", "\xA4\xA4\xA4\xE5", "\u4e2d\u6587"},
    {"SevenBit", "0000", "plain", "plain"},
    {"SevenBitThatIsNot", "0000", "\xA9 1995", "\u00a9 1995"},
    {"ToldAsUnicode", "04B0", "\xA9 1995", "\u00a9 1995"},
    {"Utf8ToldAsUnicode", "04B0", "\xC2\xA9 1995", "\u00a9 1995"},
    {"Unknown", "FFFF", "\xA9 1995", "\u00a9 1995"},
    {"NotOfItsCodePage", "03A4", "\xA9\x80\xFF", "\u00a9\u20ac\u00ff"},
};

INSTANTIATE_TEST_SUITE_P(Texts, VersionCodePage, testing::ValuesIn(kCodePages),
                         [](const auto& instance) { return instance.param.name; });

TEST(VersionCodePages, OfTheTranslationIsUsedWhereTheTableTellsNone) {
    const auto resource =
        narrowVersion({.tables = {{"Russian", {{"ProductName", "\xCC\xE8\xF0"}}}}, .translations = {{0x419, 1251}}});
    EXPECT_EQ(versionTexts(resource).productName, "\u041c\u0438\u0440");
}

TEST(VersionCodePages, OfTheChosenTableIsUsedNotTheFirstOnes) {
    const auto resource = narrowVersion(
        {.tables = {{"040904E4", {{"ProductName", "english"}}}, {"041904E3", {{"ProductName", "\xCC\xE8\xF0"}}}},
         .translations = {{0x419, 1251}}});
    EXPECT_EQ(versionTexts(resource).productName, "\u041c\u0438\u0440");
}

TEST(VersionCodePages, GiveWellFormedTextForEveryByte) {
    std::string bytes;
    for (int value = 1; value < 256; ++value)
        bytes += static_cast<char>(value);
    for (unsigned codePage = 0; codePage < 1300; ++codePage) {
        const auto text = decodeCodePage(bytes, codePage);
        EXPECT_TRUE(base::isValidUtf8(text)) << codePage;
        EXPECT_GE(text.size(), bytes.size()) << codePage;
    }
}

} // namespace

} // namespace discaro::disc

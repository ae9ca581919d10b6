#include "disc/executable/VersionResource.h"
#include "support/BufferSource.h"
#include "support/ExecutableBuilder.h"
#include "support/FileResources.h"

#include <gtest/gtest.h>

namespace discaro::disc {

namespace {

using namespace discaro::test;

Resource version(const std::string& data, ResourceName name = uint16_t{1}, uint16_t language = 0x409) {
    return {kVersionType, std::move(name), data, language};
}

VersionTexts textsOf(const std::string& file) {
    return readResources(BufferSource(file)).version;
}

// A resource that tells nothing but the company.
std::string company(const std::string& name, const std::string& key = "040904B0") {
    return wideVersion({.tables = {{key, {{"CompanyName", name}}}}, .translations = {}});
}

TEST(VersionTexts, OfA32BitExecutableAreAllSeven) {
    EXPECT_EQ(textsOf(peFile({version(wideVersion(sampleVersion()))}).bytes), sampleTexts());
}

TEST(VersionTexts, OfA64BitExecutableAreAllSeven) {
    EXPECT_EQ(textsOf(peFile({version(wideVersion(sampleVersion()))}, {.wide = true}).bytes), sampleTexts());
}

TEST(VersionTexts, AreFoundBesideOtherResourcesAndNames) {
    auto resources = iconResources(5);
    resources.push_back({std::string("TYPELIB"), uint16_t{1}, "library"});
    resources.push_back({uint16_t{5}, std::string("ABOUT"), "dialog"});
    resources.push_back(version(wideVersion(sampleVersion())));
    EXPECT_EQ(textsOf(peFile(resources).bytes), sampleTexts());
}

TEST(VersionTexts, ComeFromTheResourceNumberOneBeforeOthers) {
    const auto file = peFile({version(company("named"), std::string("INFO")), version(company("first")),
                              version(company("seventh"), uint16_t{7})});
    EXPECT_EQ(textsOf(file.bytes).companyName, "first");
}

TEST(VersionTexts, ComeFromTheFirstResourceWhereNumberOneIsMissing) {
    EXPECT_EQ(textsOf(peFile({version(company("seventh"), uint16_t{7}), version(company("ninth"), uint16_t{9})}).bytes)
                  .companyName,
              "seventh");
    EXPECT_EQ(textsOf(peFile({version(company("named"), std::string("INFO"))}).bytes).companyName, "named");
}

TEST(VersionTexts, ComeFromTheFirstLanguageOfTheResource) {
    const auto file = peFile({version(company("deutsch"), uint16_t{1}, 0x407), version(company("english"))});
    EXPECT_EQ(textsOf(file.bytes).companyName, "deutsch");
}

TEST(VersionTexts, ComeFromTheNextLanguageWhereTheFirstLiesOutsideTheFile) {
    auto file = peFile({version(company("deutsch"), uint16_t{1}, 0x407), version(company("english"))});
    const size_t leaves = file.tree + 3 * 16 + (1 + 1 + 2) * 8;
    putDoubleWord(file.bytes, leaves, 0x7000'0000);
    EXPECT_EQ(textsOf(file.bytes).companyName, "english");
}

TEST(VersionTexts, AreFoundWhereALinkerLeftOutTheLevelOfLanguages) {
    auto file = peFile({version(company("direct"))});
    const size_t nameEntry = file.tree + 16 + 8 + 16;
    const size_t leaf = 3 * 16 + 3 * 8;
    putDoubleWord(file.bytes, nameEntry + 4, leaf);
    EXPECT_EQ(textsOf(file.bytes).companyName, "direct");
}

TEST(VersionTexts, AreFoundThroughAnySection) {
    for (const int before : {0, 1, 7}) {
        const auto apart =
            peFile({version(wideVersion(sampleVersion()))}, {.sectionsBefore = before, .dataInOwnSection = true});
        EXPECT_EQ(textsOf(apart.bytes), sampleTexts()) << before;
    }
}

TEST(VersionTexts, AreFoundWhereTheSectionTellsNoMemorySizeOrMoreThanTheFileHolds) {
    const std::vector<Resource> resources = {version(wideVersion(sampleVersion()))};
    EXPECT_EQ(textsOf(peFile(resources, {.virtualSizeIsZero = true}).bytes), sampleTexts());
    EXPECT_EQ(textsOf(peFile(resources, {.virtualExtra = 0x10000}).bytes), sampleTexts());
}

TEST(VersionTexts, AreFoundWhereTheSectionTellsAPlaceInsideASectorOfTheFile) {
    auto file = peFile({version(wideVersion(sampleVersion()))});
    const size_t place = file.header + 24 + 224 + 40 + 20;
    putDoubleWord(file.bytes, place, static_cast<uint32_t>(file.tree + 0x10));
    EXPECT_EQ(textsOf(file.bytes), sampleTexts());
}

TEST(VersionTexts, AreFoundBehindALongStub) {
    const auto file = peFile({version(wideVersion(sampleVersion()))}, {.stubLength = 0x4010});
    EXPECT_EQ(textsOf(file.bytes), sampleTexts());
}

TEST(VersionTexts, AreOfTheFirstTranslation) {
    const VersionContent content{.tables = {{"040904B0", {{"CompanyName", "english"}}},
                                            {"040704b0", {{"CompanyName", "deutsch"}}},
                                            {"040C04B0", {{"CompanyName", "francais"}}}},
                                 .translations = {{0x407, 0x4B0}, {0x409, 0x4B0}}};
    EXPECT_EQ(textsOf(peFile({version(wideVersion(content))}).bytes).companyName, "deutsch");
    EXPECT_EQ(versionTexts(wideVersion(content, {.listsTranslationsFirst = true})).companyName, "deutsch");
}

TEST(VersionTexts, KeysOfTablesCompareWithoutRegardToCase) {
    const VersionContent content{
        .tables = {{"040904B0", {{"CompanyName", "english"}}}, {"040c04e4", {{"CompanyName", "francais"}}}},
        .translations = {{0x40C, 0x4E4}}};
    EXPECT_EQ(versionTexts(wideVersion(content)).companyName, "francais");
}

TEST(VersionTexts, AreOfTheFirstTableWithTextsWhereTheTranslationHasNone) {
    VersionContent content{.tables = {{"040704B0", {}},
                                      {"040904B0", {{"FileVersion", "1"}, {"ProductName", ""}}},
                                      {"040C04B0", {{"ProductName", "un"}}},
                                      {"041004B0", {{"ProductName", "uno"}}}},
                           .translations = {{0x407, 0x4B0}}};
    EXPECT_EQ(versionTexts(wideVersion(content)).productName, "un");
    content.translations = {{0x411, 0x4B0}};
    EXPECT_EQ(versionTexts(wideVersion(content)).productName, "un");
    content.translations.clear();
    EXPECT_EQ(versionTexts(wideVersion(content)).productName, "un");
}

TEST(VersionTexts, AreFoundUnderATableKeyThatIsNoTranslation) {
    EXPECT_EQ(versionTexts(company("odd", "English")).companyName, "odd");
    EXPECT_EQ(versionTexts(company("longer", "040904B000")).companyName, "longer");
}

TEST(VersionTexts, NamesCompareWithoutRegardToCase) {
    const VersionContent content{
        .tables = {{"040904B0",
                    {{"COMPANYNAME", "company"}, {"filedescription", "description"}, {"OriginalFileName", "file"}}}},
        .translations = {}};
    const auto texts = versionTexts(wideVersion(content, {.tablePartKey = "STRINGFILEINFO"}));
    EXPECT_EQ(texts.companyName, "company");
    EXPECT_EQ(texts.fileDescription, "description");
    EXPECT_EQ(texts.originalFileName, "file");
}

TEST(VersionTexts, OfTwoWithTheSameNameTheFirstCounts) {
    const VersionContent content{.tables = {{"040904B0", {{"ProductName", "one"}, {"productname", "two"}}}},
                                 .translations = {}};
    EXPECT_EQ(versionTexts(wideVersion(content)).productName, "one");
}

TEST(VersionTexts, EndAtTheFirstNulAndLoseBlanksAtTheEndOnly) {
    const VersionContent content{.tables = {{"040904B0",
                                             {{"CompanyName", std::string("Before\0after", 12)},
                                              {"ProductName", "  two  words   "},
                                              {"InternalName", "   "},
                                              {"LegalCopyright", "line one\r\nline\ttwo"}}}},
                                 .translations = {}};
    const auto texts = versionTexts(wideVersion(content));
    EXPECT_EQ(texts.companyName, "Before");
    EXPECT_EQ(texts.productName, "  two  words");
    EXPECT_EQ(texts.internalName, "");
    EXPECT_EQ(texts.legalCopyright, "line one\r\nline\ttwo");
}

TEST(VersionTexts, MayBeInAnyScript) {
    const std::string name = "Gr\u00fc\u00dfe \u65e5\u672c\u8a9e \u0395\u03bb\u03bb \U0001F4BF";
    EXPECT_EQ(textsOf(peFile({version(company(name))}).bytes).companyName, name);
}

TEST(VersionTexts, WithHalfACharacterAreStillUtf8) {
    auto resource = company("A\u4e00B");
    const auto place = resource.find(std::string("A\0\x00\x4e", 4));
    ASSERT_NE(place, std::string::npos);
    resource.replace(place + 2, 2, "\x00\xD8", 2);
    EXPECT_EQ(versionTexts(resource).companyName, "A\uFFFDB");
}

TEST(VersionTexts, MayFillTheResource) {
    const std::string longText(20'000, 'x');
    EXPECT_EQ(textsOf(peFile({version(company(longText))}).bytes).companyName, longText);
}

TEST(VersionTexts, OfAFileWithoutAVersionResourceAreEmpty) {
    EXPECT_EQ(textsOf(peFile(iconResources(3)).bytes), VersionTexts{});
    EXPECT_EQ(textsOf(peFile({}).bytes), VersionTexts{});
    EXPECT_EQ(textsOf(stubFile()), VersionTexts{});
    EXPECT_EQ(textsOf("MZ"), VersionTexts{});
    EXPECT_EQ(textsOf("plain text"), VersionTexts{});
    EXPECT_EQ(textsOf(""), VersionTexts{});
}

TEST(VersionTexts, OfAnExecutableWithoutAResourceDirectoryAreEmpty) {
    auto file = peFile({version(wideVersion(sampleVersion()))});
    const size_t directoryCount = file.header + 24 + 92;
    putDoubleWord(file.bytes, directoryCount, 2);
    EXPECT_EQ(textsOf(file.bytes), VersionTexts{});
}

TEST(VersionTexts, AndIconsCanBeReadInOneGo) {
    auto resources = iconResources(4);
    resources.push_back(version(wideVersion(sampleVersion())));
    const auto both = readResources(BufferSource(peFile(resources).bytes));
    EXPECT_EQ(both.version, sampleTexts());
    EXPECT_EQ(both.icons, 4);
    EXPECT_EQ(readResources(BufferSource(iconFile(IconFileKind::Icon, 2))).icons, 1);
}

TEST(VersionTexts, OfNoExecutableCostOneShortRead) {
    const BufferSource source(std::string(100'000, 'x'));
    EXPECT_EQ(readResources(source).icons, 0);
    EXPECT_EQ(source.reads(), 1);
    EXPECT_LE(source.bytesAsked(), 64U);
}

TEST(VersionTexts, OfALargeExecutableCostALittleOfIt) {
    auto resources = iconResources(20);
    resources.push_back(version(wideVersion(sampleVersion())));
    resources.push_back({uint16_t{10}, uint16_t{1}, std::string(3'000'000, 'd')});
    const BufferSource source(peFile(resources).bytes);
    const auto found = readResources(source);
    EXPECT_EQ(found.version, sampleTexts());
    EXPECT_EQ(found.icons, 20);
    EXPECT_LE(source.bytesAsked(), 32'768U);
}

TEST(VersionTexts, PassAFailureOfTheMediumOn) {
    BufferSource source(peFile({version(wideVersion(sampleVersion()))}).bytes);
    source.failFrom(source.size() - 1);
    EXPECT_THROW(readResources(source), base::RuntimeError);
    source.failFrom(0);
    EXPECT_THROW(readResources(source), base::RuntimeError);
}

} // namespace

} // namespace discaro::disc

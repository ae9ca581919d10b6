#include "disc/ImageHelp.h"
#include "support/IsoBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::disc {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> plainNames(const std::vector<IsoEntry>& entries) {
    return namesOf(rootOf(*openBytes(plainIso(entries).image())).files);
}

std::vector<std::string> rockRidgeNames(const std::vector<std::string>& systemUses) {
    std::vector<IsoEntry> entries;
    for (size_t i = 0; i < systemUses.size(); ++i)
        entries.push_back(isoFile("F" + std::to_string(i) + ".;1", 0, 0, systemUses[i]));
    return namesOf(rootOf(*openBytes(rockRidgeIso(entries).image())).files);
}

std::vector<std::string> jolietNames(const std::vector<std::string>& identifiers) {
    std::vector<IsoEntry> entries;
    for (const auto& identifier : identifiers)
        entries.push_back(isoFile(identifier));
    return namesOf(rootOf(*openBytes(jolietIso(entries).image())).files);
}

TEST(IsoNames, PlainNamesLoseTheirVersionAndOneStopAndKeepTheirCase) {
    EXPECT_THAT(plainNames({isoFile("README.TXT;1"), isoFile("MAKEFILE.;1"), isoFile("lower.c;12"),
                            isoFile("NOVERSION"), isoFile("STOP.")}),
                ElementsAre("README.TXT", "MAKEFILE", "lower.c", "NOVERSION", "STOP"));
}

TEST(IsoNames, TheMediumKeepsItsOwnOrder) {
    EXPECT_THAT(plainNames({isoFile("Z;1"), isoFile("A;1"), isoFile("M;1")}), ElementsAre("Z", "A", "M"));
}

TEST(IsoNames, PlainNamesThatAreNotUtf8ReadAsWindows1252AndKeepTheirBytes) {
    const auto medium = openBytes(plainIso({isoFile("M\xDCLL.TXT;1")}).image());
    const auto listing = rootOf(*medium);
    EXPECT_EQ(listing.files.at(0).name, "MÜLL.TXT");
    EXPECT_EQ(listing.files.at(0).place.raw, "M\xDCLL.TXT;1");
}

TEST(IsoNames, PlainNamesThatAreUtf8StayUtf8) {
    EXPECT_THAT(plainNames({isoFile("MÜLL.TXT;1")}), ElementsAre("MÜLL.TXT"));
}

TEST(IsoNames, NamesThatWouldMeanAPlaceAreShownAsOrdinaryOnes) {
    const auto medium = openBytes(plainIso({isoFile(".."), isoFile("."), isoFile("A\\B;1"), isoFile("A/B;1"),
                                            isoFile(std::string("A\0B;1", 5)), isoDirectory("..", 20)})
                                      .image());
    const auto listing = rootOf(*medium);
    EXPECT_THAT(namesOf(listing.files), ElementsAre("\uFF0E", "\uFF0E", "A\uFF3CB", "A\uFF0FB", "A\uFFFDB"));
    EXPECT_THAT(namesOf(listing.directories), ElementsAre("\uFF0E"));
}

TEST(IsoNames, RockRidgeNamesOfDotsAreShownFullWidth) {
    EXPECT_THAT(rockRidgeNames({susp::name(".."), susp::name("."), susp::name("../../etc")}),
                ElementsAre("\uFF0E\uFF0E", "\uFF0E", "..\uFF0F..\uFF0Fetc"));
}

TEST(IsoNames, RecordsOfTheDirectoryAndItsParentAreNotListed) {
    const auto listing = rootOf(*openBytes(plainIso({}).image()));
    EXPECT_THAT(listing.files, IsEmpty());
    EXPECT_THAT(listing.directories, IsEmpty());
    EXPECT_EQ(listing.damage, "");
}

TEST(IsoNames, AssociatedFilesAreNotListed) {
    auto fork = isoFile("PICTURE.;1");
    fork.flags = 4;
    EXPECT_THAT(plainNames({fork, isoFile("PICTURE.;1")}), ElementsAre("PICTURE"));
}

TEST(IsoNames, RockRidgeNamesReplaceThePlainOnes) {
    EXPECT_THAT(rockRidgeNames({susp::name("a long name.with.dots;1"), susp::name("naïve 漢字")}),
                ElementsAre("a long name.with.dots;1", "naïve 漢字"));
}

TEST(IsoNames, ARecordWithoutARockRidgeNameKeepsItsPlainOne) {
    EXPECT_THAT(rockRidgeNames({"", susp::name("", 2), susp::name("", 4)}), ElementsAre("F0", "F1", "F2"));
}

TEST(IsoNames, ARockRidgeNameMarkedAsThatOfTheDirectoryOrItsParentIsPassedOver) {
    EXPECT_THAT(
        rockRidgeNames({susp::name("self", 2), susp::name("parent", 4), susp::name("self", 2) + susp::name("own"),
                        susp::name("one ", 1) + susp::name("parent", 4) + susp::name("two")}),
        ElementsAre("F0", "F1", "own", "one two"));
}

TEST(IsoNames, ARockRidgeNameWithoutTheMarkOfAnotherPieceIsWhole) {
    EXPECT_THAT(rockRidgeNames({susp::name("one ", 1) + susp::name("two", 0) + susp::name("three"),
                                susp::name("one", 32) + susp::name("two")}),
                ElementsAre("one two", "one"));
}

TEST(IsoNames, RockRidgeNamesInSeveralPiecesAreJoined) {
    EXPECT_THAT(rockRidgeNames({susp::name("one ", 1) + susp::name("two ", 1) + susp::name("three")}),
                ElementsAre("one two three"));
}

TEST(IsoNames, ASecondRockRidgeNameThatContinuesNothingIsPassedOver) {
    EXPECT_THAT(rockRidgeNames({susp::name("first") + susp::name("second")}), ElementsAre("first"));
}

TEST(IsoNames, RockRidgeNamesGoOnInContinuationAreas) {
    auto builder = rockRidgeIso(
        {isoFile("A.;1", 0, 0, susp::name("begins ", 1) + susp::continuation(30, 100, 64)), isoFile("B.;1")});
    const auto next = susp::name("goes on ", 1) + susp::continuation(31, 0, 8);
    builder.put(30, next + std::string(64 - next.size(), '\0'), 100);
    builder.put(31, susp::name("end"));
    EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre("begins goes on end", "B"));
}

TEST(IsoNames, RockRidgeNamesOf255BytesAreWhole) {
    const std::string text(255, 'n');
    auto builder = rockRidgeIso(
        {isoFile("A.;1", 0, 0, susp::name(text.substr(0, 100), 1) + susp::continuation(30, 0, 4 + 1 + 155))});
    builder.put(30, susp::name(text.substr(100)));
    EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre(text));
}

TEST(IsoNames, EntriesBehindTheEndMarkDoNotCount) {
    EXPECT_THAT(rockRidgeNames({susp::end() + susp::name("late")}), ElementsAre("F0"));
}

TEST(IsoNames, WithoutTheMarkInTheRootThereIsNoRockRidge) {
    EXPECT_THAT(plainNames({isoFile("A.;1", 0, 0, susp::name("rock ridge"))}), ElementsAre("A"));
}

TEST(IsoNames, TheMarkStandsBehindXaAttributesOnDiscsThatHaveThem) {
    const std::string xa(14, 'x');
    IsoBuilder builder;
    const auto size =
        builder.directory(20, 20, {isoFile("A.;1", 0, 0, xa + susp::name("behind"))}, xa + susp::mark(14));
    builder.primary(16, {.rootBlock = 20, .rootSize = size});
    EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre("behind"));
}

TEST(IsoNames, JolietNamesAreTheOnesInUse) {
    EXPECT_THAT(jolietNames({ucs2("Long name, naïve 漢字.txt;1"), ucs2("no version."), ucs2("a;b;2")}),
                ElementsAre("Long name, naïve 漢字.txt", "no version.", "a;b"));
}

TEST(IsoNames, AllThreeLevelsOfJolietAreRecognised) {
    for (const char* escape : {"%/@", "%/C", "%/E"}) {
        auto builder = jolietIso({isoFile(ucs2("joliet"))});
        builder.joliet(17, {.label = "J", .rootBlock = 21}, escape);
        EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre("joliet")) << escape;
    }
}

TEST(IsoNames, ASupplementaryDescriptorOfAnotherEncodingIsNotUsed) {
    auto builder = jolietIso({isoFile(ucs2("joliet"))});
    builder.directory(20, 20, {isoFile("PRIMARY.;1")});
    builder.joliet(17, {.label = "J", .rootBlock = 21}, "%/G");
    EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre("PRIMARY"));
}

TEST(IsoNames, JolietGoesBeforeRockRidge) {
    auto builder = jolietIso({isoFile(ucs2("joliet"))});
    builder.directory(20, 20, {isoFile("A.;1", 0, 0, susp::name("rock ridge"))}, susp::mark());
    EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre("joliet"));
}

TEST(IsoNames, ABrokenJolietTreeGivesWayToThePrimaryOne) {
    auto builder = jolietIso({isoFile(ucs2("joliet"))});
    builder.directory(20, 20, {isoFile("A.;1", 0, 0, susp::name("rock ridge"))}, susp::mark());
    builder.put(21, std::string(2048, '\0'));
    const auto medium = openBytes(builder.image());
    EXPECT_THAT(namesOf(rootOf(*medium).files), ElementsAre("rock ridge"));
    EXPECT_EQ(medium->facts().label, "PRIMARY");
}

TEST(IsoNames, AJolietRootBeyondTheImageGivesWayToThePrimaryOne) {
    auto builder = jolietIso({});
    builder.directory(20, 20, {isoFile("A.;1")});
    builder.joliet(17, {.label = "J", .rootBlock = 4000});
    EXPECT_THAT(namesOf(rootOf(*openBytes(builder.image())).files), ElementsAre("A"));
}

TEST(IsoNames, JolietNamesWithLoneSurrogatesAndNulsAreShownWithReplacements) {
    EXPECT_THAT(jolietNames({std::string("\xD8\x00\x00X", 4), std::string("\x00\x41\x00\x00\x00\x42", 6),
                             std::string("\x00\x5C\x00\x2F", 4), "\x7F"}),
                ElementsAre("\uFFFDX", "A\uFFFDB", "\uFF3C\uFF0F", "\uFFFD"));
}

TEST(IsoNames, JolietNamesKeepTheirTextAsRawName) {
    const auto listing = rootOf(*openBytes(jolietIso({isoFile(ucs2("A\\B;1"))}).image()));
    EXPECT_EQ(listing.files.at(0).name, "A\uFF3CB");
    EXPECT_EQ(listing.files.at(0).place.raw, "A\\B;1");
}

} // namespace
} // namespace discaro::disc

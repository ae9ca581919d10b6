#include "disc/ImageHelp.h"
#include "support/IsoBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::disc {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint32_t kFileMode = 0100644;
constexpr uint32_t kLinkMode = 0120777;
constexpr uint32_t kFolderMode = 0040755;

TEST(RockRidge, ASymbolicLinkIsAFileOfNoLength) {
    const auto medium =
        openBytes(rockRidgeIso({isoFile("L.;1", 30, 500, susp::mode(kLinkMode) + susp::link("/etc/passwd"))}).image());
    const auto found = walk(*medium);
    EXPECT_THAT(found.paths(), ElementsAre("L"));
    EXPECT_EQ(found.entries[0].facts.size, 0U);
    EXPECT_NE(found.entries[0].facts.modified, 0);
    EXPECT_EQ(contentOf(*medium, found.entries[0]), "");
}

TEST(RockRidge, ALinkTargetAloneMakesASymbolicLink) {
    const auto facts = onlyFile(*openBytes(rockRidgeIso({isoFile("L.;1", 30, 500, susp::link("target"))}).image()));
    EXPECT_EQ(facts.size, 0U);
}

TEST(RockRidge, AModeOfAFileGoesBeforeALinkTarget) {
    const auto facts = onlyFile(
        *openBytes(rockRidgeIso({isoFile("L.;1", 30, 500, susp::mode(kFileMode) + susp::link("target"))}).image()));
    EXPECT_EQ(facts.size, 500U);
}

TEST(RockRidge, ADirectoryThatClaimsToBeALinkIsADirectory) {
    auto builder = rockRidgeIso({isoDirectory("D", 22, 2048, susp::mode(kLinkMode))});
    builder.directory(22, 20, {isoFile("IN.;1")});
    EXPECT_THAT(walk(*openBytes(builder.image())).paths(), ElementsAre("D/", "D/IN"));
}

TEST(RockRidge, AModeOfADirectoryMakesOne) {
    auto builder = rockRidgeIso({isoFile("D", 22, 2048, susp::mode(kFolderMode))});
    builder.directory(22, 20, {isoFile("IN.;1")});
    EXPECT_THAT(walk(*openBytes(builder.image())).paths(), ElementsAre("D/", "D/IN"));
}

// Where writers move directories that lie too deep: "DEEP" in the root stands for the directory at sector 23, which
// is recorded in "RR_MOVED".
IsoBuilder relocatingImage() {
    auto builder = rockRidgeIso({isoFile("DEEP", 35, 2048, susp::name("deep") + susp::childLink(23)),
                                 isoDirectory("RR_MOVED", 22, 2048, susp::name("rr_moved"))});
    builder.directory(22, 20, {isoDirectory("DEEP", 23, 4096, susp::name("deep") + susp::relocated())});
    std::vector<IsoEntry> files;
    for (int i = 0; i < 60; ++i)
        files.push_back(isoFile("F" + std::to_string(100 + i) + ".;1"));
    builder.directory(23, 22, files);
    return builder;
}

TEST(RockRidge, RelocatedDirectoriesAreListedWhereTheyBelong) {
    const auto found = walk(*openBytes(relocatingImage().image()));
    EXPECT_THAT(found.damage, IsEmpty());
    ASSERT_NE(found.find("deep"), nullptr);
    EXPECT_TRUE(found.find("deep")->isDirectory);
    ASSERT_NE(found.find("rr_moved"), nullptr);
    EXPECT_EQ(found.find("rr_moved/deep"), nullptr);
    EXPECT_NE(found.find("deep/F100"), nullptr);
    EXPECT_NE(found.find("deep/F159"), nullptr) << "the size is that of the directory's own record";
    EXPECT_EQ(found.entries.size(), 62U);
}

TEST(RockRidge, TwoLinksToOneRelocatedDirectoryGiveOneOfThemItsContent) {
    auto builder = relocatingImage();
    builder.directory(20, 20,
                      {isoFile("A", 35, 2048, susp::childLink(23)), isoFile("B", 35, 2048, susp::childLink(23))},
                      susp::mark());
    const auto found = walk(*openBytes(builder.image()));
    EXPECT_NE(found.find("A/F100"), nullptr);
    EXPECT_EQ(found.find("B/F100"), nullptr);
    EXPECT_THAT(found.damage, ElementsAre(testing::HasSubstr("more than one place")));
}

TEST(RockRidge, ARelocatedDirectoryBeyondTheImageIsShownAndDamaged) {
    const auto found = walk(*openBytes(rockRidgeIso({isoFile("D", 35, 0, susp::childLink(70000))}).image()));
    EXPECT_THAT(found.paths(), ElementsAre("D/"));
    EXPECT_EQ(found.damage.size(), 1U);
}

TEST(RockRidge, ARelocatedLinkToTheRootIsALoopAndEnds) {
    const auto found = walk(*openBytes(rockRidgeIso({isoFile("D", 35, 0, susp::childLink(20))}).image()));
    EXPECT_THAT(found.paths(), ElementsAre("D/"));
    EXPECT_THAT(found.damage, ElementsAre(testing::HasSubstr("more than one place")));
}

TEST(RockRidge, AContinuationThatLeadsToItselfEnds) {
    auto builder = rockRidgeIso({isoFile("A.;1", 0, 0, susp::name("a", 1) + susp::continuation(30, 0, 2048))});
    builder.put(30, susp::name("b", 1) + susp::continuation(30, 0, 2048));
    const auto listing = rootOf(*openBytes(builder.image()));
    EXPECT_EQ(listing.files.at(0).name, "a" + std::string(16, 'b'));
}

TEST(RockRidge, AContinuationBeyondTheImageIsDamageAndTheNameWhatThereIs) {
    const auto listing = rootOf(
        *openBytes(rockRidgeIso({isoFile("A.;1", 0, 0, susp::name("begin", 1) + susp::continuation(70000, 0, 100)),
                                 isoFile("B.;1")})
                       .image()));
    EXPECT_THAT(namesOf(listing.files), ElementsAre("begin", "B"));
    EXPECT_THAT(listing.damage, testing::HasSubstr("continuation"));
}

TEST(RockRidge, NamesHaveAnEnd) {
    std::string pieces;
    auto builder = rockRidgeIso({isoFile("A.;1", 0, 0, susp::continuation(30, 0, 2048))});
    for (uint32_t sector = 30; sector < 40; ++sector) {
        pieces.clear();
        for (int i = 0; i < 8; ++i)
            pieces += susp::name(std::string(240, 'n'), 1);
        builder.put(sector, pieces + susp::continuation(sector + 1, 0, 2048));
    }
    EXPECT_EQ(rootOf(*openBytes(builder.image())).files.at(0).name, std::string(1024, 'n'));
}

TEST(RockRidge, ContinuationsOfAllRecordsTogetherHaveALimit) {
    std::vector<IsoEntry> entries;
    for (int i = 0; i < 200; ++i)
        entries.push_back(isoFile("F" + std::to_string(i), 0, 0, susp::continuation(38, 0, 2048)));
    auto builder = rockRidgeIso(entries);
    builder.put(38, susp::continuation(38, 0, 2048));
    const auto listing = rootOf(*openBytes(builder.image()));
    EXPECT_EQ(listing.files.size(), 200U);
    EXPECT_THAT(listing.damage, testing::HasSubstr("continuation"));
}

TEST(RockRidge, EntriesWithImpossibleLengthsEndTheirArea) {
    for (const size_t length : {0, 1, 3, 255}) {
        auto entry = susp::name("x");
        entry[2] = static_cast<char>(length);
        const auto listing = rootOf(*openBytes(rockRidgeIso({isoFile("A.;1", 0, 0, entry)}).image()));
        EXPECT_THAT(namesOf(listing.files), ElementsAre("A")) << length;
    }
    const auto listing = rootOf(*openBytes(rockRidgeIso({isoFile("A.;1", 0, 0, "N")}).image()));
    EXPECT_THAT(namesOf(listing.files), ElementsAre("A"));
}

TEST(RockRidge, TruncatedEntriesAreHarmless) {
    for (const char* name : {"NM", "PX", "TF", "SL", "CL", "RE", "CE", "SP", "PL"}) {
        auto builder = rockRidgeIso({isoFile("A.;1", 0, 0, susp::entry(name, "")), isoFile("B.;1")});
        const auto found = walk(*openBytes(builder.image()));
        EXPECT_NE(found.find("B"), nullptr) << name;
    }
}

} // namespace
} // namespace discaro::disc

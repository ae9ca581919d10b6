#include "disc/ImageHelp.h"
#include "support/IsoBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::disc {
namespace {

using namespace test;
using base::ErrorNumber;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Walk walkOf(const IsoBuilder& builder) {
    return walk(*openBytes(builder.image()));
}

TEST(IsoHostile, ADirectoryThatHoldsItselfEnds) {
    auto builder = plainIso({isoDirectory("LOOP", 22)});
    builder.directory(22, 20, {isoDirectory("LOOP", 22), isoFile("A.;1")});
    const auto found = walkOf(builder);
    EXPECT_THAT(found.paths(), ElementsAre("LOOP/", "LOOP/A", "LOOP/LOOP/"));
    EXPECT_THAT(found.damage, ElementsAre("LOOP/LOOP/: the directory stands in more than one place of the disc"));
}

TEST(IsoHostile, ADirectoryThatHoldsTheRootEnds) {
    auto builder = plainIso({isoDirectory("A", 22)});
    builder.directory(22, 20, {isoDirectory("ROOT", 20)});
    EXPECT_THAT(walkOf(builder).paths(), ElementsAre("A/", "A/ROOT/"));
}

TEST(IsoHostile, ADirectoryThatHoldsAnAncestorEnds) {
    auto builder = plainIso({isoDirectory("A", 22)});
    builder.directory(22, 20, {isoDirectory("B", 23)});
    builder.directory(23, 22, {isoDirectory("C", 22)});
    const auto found = walkOf(builder);
    EXPECT_THAT(found.paths(), ElementsAre("A/", "A/B/", "A/B/C/"));
    EXPECT_EQ(found.damage.size(), 1U);
}

TEST(IsoHostile, ADirectoryInTwoPlacesIsListedInTheFirst) {
    auto builder = plainIso({isoDirectory("A", 22), isoDirectory("B", 22)});
    builder.directory(22, 20, {isoFile("IN.;1")});
    EXPECT_THAT(walkOf(builder).paths(), ElementsAre("A/", "A/IN", "B/"));
}

TEST(IsoHostile, ADirectoryIsListedAgainFromItsOwnPlaceAsOftenAsAsked) {
    auto builder = plainIso({isoDirectory("A", 22), isoDirectory("B", 22)});
    builder.directory(22, 20, {isoFile("IN.;1")});
    const auto medium = openBytes(builder.image());
    const auto first = walk(*medium).paths();
    EXPECT_EQ(walk(*medium).paths(), first);
    EXPECT_EQ(walk(*medium).paths(), first);
}

TEST(IsoHostile, EmptyDirectoriesWithoutAnExtentAreNoLoop) {
    const auto found = walkOf(plainIso({isoDirectory("A", 0, 0), isoDirectory("B", 0, 0)}));
    EXPECT_THAT(found.paths(), ElementsAre("A/", "B/"));
    EXPECT_THAT(found.damage, IsEmpty());
}

TEST(IsoHostile, ADirectoryThatRunsIntoAnotherOneStopsThere) {
    auto builder = plainIso({isoDirectory("A", 22, 8192), isoDirectory("B", 23)});
    builder.directory(22, 20, {isoFile("INA.;1")});
    builder.directory(23, 20, {isoFile("INB.;1")});
    const auto found = walkOf(builder);
    EXPECT_THAT(found.paths(), ElementsAre("A/", "A/INA", "B/", "B/INB"));
    EXPECT_THAT(found.damage, ElementsAre(HasSubstr("runs into another")));
}

TEST(IsoHostile, ADirectoryBeyondTheImageIsUnreadableAndTheOthersAreFine) {
    auto builder = plainIso({isoDirectory("GONE", 5000), isoDirectory("HERE", 22)});
    builder.directory(22, 20, {isoFile("IN.;1")});
    const auto medium = openBytes(builder.image());
    EXPECT_THAT(walk(*medium).paths(), ElementsAre("GONE/", "HERE/", "HERE/IN"));
    const auto gone = rootOf(*medium).directories.at(0).place;
    EXPECT_EQ(errorOf([&] { medium->list(medium->root(), gone); }), numberOf(ErrorNumber::DirectoryDamaged));
}

TEST(IsoHostile, ADirectoryCutShortGivesWhatIsThere) {
    std::vector<IsoEntry> entries;
    for (int i = 0; i < 200; ++i)
        entries.push_back(isoFile("FILE" + std::to_string(1000 + i) + ".;1"));
    const auto builder = plainIso(entries);
    const auto medium = openBytes(builder.image().substr(0, 22 * 2048));
    const auto listing = rootOf(*medium);
    EXPECT_GT(listing.files.size(), 60U);
    EXPECT_LT(listing.files.size(), 200U);
    EXPECT_THAT(listing.damage, HasSubstr("ends before the directory"));
}

TEST(IsoHostile, ADamagedRecordEndsItsSectorAndNoMore) {
    std::vector<IsoEntry> entries;
    for (int i = 0; i < 100; ++i)
        entries.push_back(isoFile("FILE" + std::to_string(1000 + i) + ".;1"));
    entries[10].identifierLength = 250;
    const auto listing = rootOf(*openBytes(plainIso(entries).image()));
    EXPECT_EQ(listing.files.at(9).name, "FILE1009");
    EXPECT_GT(listing.files.size(), 30U);
    EXPECT_EQ(listing.files.back().name, "FILE1099");
    EXPECT_THAT(listing.damage, HasSubstr("record"));
}

TEST(IsoHostile, RecordsWithImpossibleLengthsAreDamage) {
    for (const unsigned length : {1U, 33U, 34U, 40U}) {
        auto bad = isoFile("SOME NAME OF SOME LENGTH.TXT;1");
        bad.length = static_cast<uint8_t>(length);
        const auto listing = rootOf(*openBytes(plainIso({isoFile("A.;1"), bad}).image()));
        EXPECT_EQ(listing.files.at(0).name, "A") << length;
        EXPECT_EQ(listing.files.size(), 1U) << length;
    }
}

TEST(IsoHostile, ARecordMayNotCrossItsSector) {
    IsoBuilder builder;
    builder.directory(20, 20, {});
    const auto record = isoFile("CROSSING.TXT;1").bytes();
    std::vector<IsoEntry> entries(40, isoFile("FILLS.;1"));
    const auto size = builder.directory(20, 20, entries);
    ASSERT_EQ(size, 2048U);
    builder.put(20, record, 2048 - 20);
    builder.put(20, std::string(200, '\xEE'), 2048 - 220);
    builder.primary(16, {.rootBlock = 20, .rootSize = 4096});
    const auto listing = rootOf(*openBytes(builder.image()));
    EXPECT_THAT(listing.damage, HasSubstr("record"));
    EXPECT_THAT(namesOf(listing.files), testing::Not(testing::Contains("CROSSING.TXT")));
}

TEST(IsoHostile, ARecordWithoutANameIsDamage) {
    auto bad = isoFile("X");
    bad.identifierLength = 0;
    const auto listing = rootOf(*openBytes(plainIso({bad}).image()));
    EXPECT_THAT(listing.files, IsEmpty());
    EXPECT_THAT(listing.damage, HasSubstr("record"));
}

TEST(IsoHostile, ADirectoryOfZerosHasNoRecordOfItself) {
    const auto found = walkOf(plainIso({isoDirectory("ZEROS", 30)}));
    EXPECT_THAT(found.damage, ElementsAre("ZEROS/: the directory has no record of itself"));
}

TEST(IsoHostile, ADirectoryOfGarbageIsDamaged) {
    auto builder = plainIso({isoDirectory("TEXT", 30)});
    builder.put(30, std::string(2048, '\xFF'));
    EXPECT_EQ(walkOf(builder).damage.size(), 1U);
}

TEST(IsoHostile, AbsurdLittleEndianNumbersGiveWayToTheBigEndianOnes) {
    auto file = isoFile("A.;1", 0xFFFFFF00, 0xFFFFFF00);
    file.bigBlock = 30;
    file.bigSize = 5;
    auto directory = isoDirectory("D", 0x80000000);
    directory.bigBlock = 22;
    auto builder = plainIso({file, directory});
    builder.put(30, "hello");
    builder.directory(22, 20, {isoFile("IN.;1")});
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(found.find("A")->facts.size, 5U);
    EXPECT_EQ(contentOf(*medium, *found.find("A")), "hello");
    EXPECT_NE(found.find("D/IN"), nullptr);
}

TEST(IsoHostile, LittleEndianNumbersStandWhereTheyMakeSense) {
    auto file = isoFile("A.;1", 30, 5);
    file.bigBlock = 31;
    file.bigSize = 9;
    EXPECT_EQ(onlyFile(*openBytes(plainIso({file}).image())).size, 5U);
}

TEST(IsoHostile, AFileBeyondTheImageKeepsItsSizeAndCannotBeRead) {
    const auto medium = openBytes(plainIso({isoFile("A.;1", 39, 100000)}).image());
    const auto found = walk(*medium);
    EXPECT_EQ(found.entries.at(0).facts.size, 100000U);
    const auto source = medium->open(found.entries[0].parent, found.entries[0].place);
    EXPECT_EQ(source->size(), 100000U);
    std::string piece(2048, ' ');
    const auto buffer = std::as_writable_bytes(std::span(piece));
    EXPECT_EQ(source->read(0, buffer), 2048U);
    EXPECT_EQ(errorOf([&] { source->read(1, buffer); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(errorOf([&] { source->read(50000, buffer); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(source->read(100000, buffer), 0U);
}

TEST(IsoHostile, AFileWhoseLastExtentIsMissingIsListedWithADamage) {
    auto first = isoFile("BIG.;1", 30, 2048);
    first.flags = 128;
    const auto medium = openBytes(plainIso({first, isoFile("OTHER.;1", 31, 7)}).image());
    const auto found = walk(*medium);
    EXPECT_THAT(found.paths(), ElementsAre("BIG", "OTHER"));
    EXPECT_THAT(found.damage, ElementsAre(HasSubstr("last part")));
    EXPECT_EQ(found.find("BIG")->facts.size, 2048U);
    EXPECT_EQ(found.find("OTHER")->facts.size, 7U);
    const auto alone = walkOf(plainIso({first}));
    EXPECT_THAT(alone.damage, ElementsAre(HasSubstr("last part")));
}

TEST(IsoHostile, ADirectoryWithTheMarkOfMoreExtentsIsADirectory) {
    auto directory = isoDirectory("D", 22);
    directory.flags |= 128;
    auto builder = plainIso({directory, isoFile("A.;1")});
    builder.directory(22, 20, {});
    EXPECT_THAT(walkOf(builder).paths(), ElementsAre("A", "D/"));
}

TEST(IsoHostile, AHugeDirectoryIsReadUpToALimit) {
    auto builder = plainIso({isoDirectory("HUGE", 22, 0xFFFFFFFF)}, 40);
    builder.directory(22, 20, {isoFile("IN.;1")});
    const auto found = walkOf(builder);
    EXPECT_NE(found.find("HUGE/IN"), nullptr);
    EXPECT_THAT(found.damage, ElementsAre(HasSubstr("too large")));
}

// Directories that overlap each other make many large ones out of few bytes.
TEST(IsoHostile, AllDirectoriesTogetherAreNoLargerThanTheDisc) {
    constexpr uint32_t kSectors = 2000;
    std::vector<IsoEntry> entries;
    for (uint32_t i = 0; i < 1500; ++i)
        entries.push_back(isoDirectory("D" + std::to_string(10000 + i), 200 + i, 3'000'000));
    auto builder = plainIso(entries, kSectors);
    for (uint32_t sector = 200; sector < kSectors; ++sector)
        builder.records(sector, std::vector<IsoEntry>(60, isoFile("A")));
    const auto found = walk(*openBytes(builder.image()));
    EXPECT_LT(found.entries.size(), 400'000U);
    EXPECT_THAT(found.damage, testing::Contains(HasSubstr("larger than the disc")));
}

TEST(IsoHostile, AMillionEntriesInOneDirectoryAreListed) {
    constexpr size_t kCount = 1'000'000;
    constexpr uint32_t kPerSector = 48;
    constexpr uint32_t kSectors = kCount / kPerSector + 1;
    IsoBuilder builder(kSectors + 30);
    std::string sector;
    for (uint32_t i = 0; i < kPerSector; ++i)
        sector += isoFile("FILE." + std::to_string(100 + i), i, i).bytes();
    ASSERT_LE(sector.size(), 2048U);
    builder.directory(20, 20, {});
    for (uint32_t i = 1; i < kSectors; ++i)
        builder.put(20 + i, sector);
    builder.primary(16, {.rootBlock = 20, .rootSize = kSectors * 2048});
    const auto listing = rootOf(*openBytes(builder.image()));
    EXPECT_EQ(listing.files.size(), (kSectors - 1) * kPerSector);
    EXPECT_EQ(listing.damage, "");
}

TEST(IsoHostile, ATreeAsDeepAsTheImageIsWalkedToItsEnd) {
    constexpr uint32_t kDepth = 3000;
    auto builder = plainIso({isoDirectory("D", 21)}, kDepth + 30);
    for (uint32_t i = 0; i < kDepth; ++i)
        builder.directory(21 + i, 20 + i, {isoDirectory("D", 22 + i)});
    builder.directory(21 + kDepth, 20 + kDepth, {isoFile("END.;1")});
    const auto found = walkOf(builder);
    EXPECT_EQ(found.entries.size(), kDepth + 2);
    EXPECT_THAT(found.damage, IsEmpty());
}

TEST(IsoHostile, AnImageCutShortOpensAsLongAsItsRootIsThere) {
    const auto image = plainIso({isoFile("A.;1", 30, 2048)}).image();
    EXPECT_THAT(walk(*openBytes(image.substr(0, 21 * 2048))).paths(), ElementsAre("A"));
    EXPECT_THAT(walk(*openBytes(image.substr(0, 20 * 2048 + 200))).paths(), ElementsAre("A"));
    EXPECT_EQ(errorOf([&] { openBytes(image.substr(0, 20 * 2048)); }), numberOf(ErrorNumber::FileSystemUnsupported));
    EXPECT_EQ(errorOf([&] { openBytes(image.substr(0, 16 * 2048 + 3)); }), numberOf(ErrorNumber::FileSystemUnknown));
}

TEST(IsoHostile, EveryCutOfAnImageIsHarmless) {
    auto builder = jolietIso({isoDirectory(ucs2("Folder"), 22), isoFile(ucs2("File.txt"), 30, 3000)});
    builder.directory(22, 21, {isoFile(ucs2("Inner"), 32, 100)});
    const auto& image = builder.image();
    for (size_t length = 0; length < image.size(); length += 509) {
        const auto error = errorOf([&] { walk(*openBytes(image.substr(0, length))); });
        EXPECT_TRUE(!error || error == numberOf(ErrorNumber::FileSystemUnknown) ||
                    error == numberOf(ErrorNumber::FileSystemUnsupported))
            << length;
    }
}

TEST(IsoHostile, EveryDamagedByteOfTheStructuresIsHarmless) {
    auto joliet = jolietIso({isoDirectory(ucs2("Folder"), 22), isoFile(ucs2("File.txt"), 30, 3000)});
    joliet.directory(22, 21, {isoFile(ucs2("Inner"), 32, 100)});
    auto rockRidge = rockRidgeIso({isoFile("A.;1", 30, 9, susp::name("a", 1) + susp::continuation(33, 0, 9)),
                                   isoFile("D", 0, 0, susp::name("deep") + susp::childLink(22))});
    rockRidge.directory(22, 20, {isoFile("IN.;1", 31, 5, susp::modified({99, 1, 1, 1, 1, 1, 1}))});
    rockRidge.put(33, susp::name("rest"));
    for (const auto& whole : {joliet.image(), rockRidge.image()})
        for (size_t at = 0; at < whole.size(); ++at)
            for (const char value : {'\0', '\x7F', '\xFF'}) {
                if (whole[at] == '\0' && at % 7 != 0)
                    continue;
                auto damaged = whole;
                damaged[at] = value;
                const auto error = errorOf([&] {
                    const auto medium = openBytes(std::move(damaged));
                    for (const auto& entry : walk(*medium, 2000).entries)
                        if (!entry.isDirectory && entry.facts.size < 100000)
                            base::skipErrors([&] { contentOf(*medium, entry); });
                });
                EXPECT_TRUE(!error || error == numberOf(ErrorNumber::FileSystemUnknown) ||
                            error == numberOf(ErrorNumber::FileSystemUnsupported))
                    << at;
            }
}

TEST(IsoHostile, ARootThatIsNoDirectoryIsNoFileSystem) {
    auto builder = plainIso({});
    builder.put(20, std::string(2048, '\0'));
    EXPECT_EQ(errorOf([&] { openBytes(builder.image()); }), numberOf(ErrorNumber::FileSystemUnsupported));
    builder.primary(16, {.rootBlock = 20, .rootSize = 0});
    EXPECT_EQ(errorOf([&] { openBytes(builder.image()); }), numberOf(ErrorNumber::FileSystemUnsupported));
    builder.primary(16, {.rootBlock = 0xFFFFFFFF, .rootSize = 0xFFFFFFFF});
    EXPECT_EQ(errorOf([&] { openBytes(builder.image()); }), numberOf(ErrorNumber::FileSystemUnsupported));
}

TEST(IsoHostile, ManyDescriptorsWithoutAnEndAreHarmless) {
    IsoBuilder builder(200);
    for (uint32_t sector = 16; sector < 200; ++sector)
        builder.put(sector, std::string("\0CD001\1", 7));
    EXPECT_EQ(errorOf([&] { openBytes(builder.image()); }), numberOf(ErrorNumber::FileSystemUnsupported));
}

// A medium whose sectors fail one by one.
class ScratchedDisc : public ByteSource {
public:
    ScratchedDisc(std::string image, uint64_t badSector)
        : m_image(std::move(image))
        , m_bad(badSector * 2048) {}

    uint64_t size() const override { return m_image.size(); }

    size_t read(uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset < m_bad + 2048 && offset + buffer.size() > m_bad)
            throw base::RuntimeError(ErrorNumber::ReadFailure);
        return m_image.read(offset, buffer);
    }

private:
    struct Image : BufferSource {
        using BufferSource::BufferSource;
    } m_image;
    uint64_t m_bad;
};

TEST(IsoHostile, ABadSectorOfADirectoryCostsItsOwnEntriesOnly) {
    std::vector<IsoEntry> entries;
    for (int i = 0; i < 200; ++i)
        entries.push_back(isoFile("FILE" + std::to_string(1000 + i) + ".;1"));
    const auto image = plainIso(entries).image();
    const auto medium = openMedium({std::make_shared<ScratchedDisc>(image, 22), {0}});
    const auto listing = rootOf(*medium);
    EXPECT_EQ(listing.files.front().name, "FILE1000");
    EXPECT_EQ(listing.files.back().name, "FILE1199");
    EXPECT_LT(listing.files.size(), 170U);
    EXPECT_THAT(listing.damage, HasSubstr("could not be read"));
}

TEST(IsoHostile, ADirectoryWhoseOnlySectorIsBadCannotBeListed) {
    auto builder = plainIso({isoDirectory("D", 22)});
    builder.directory(22, 20, {});
    const auto medium = openMedium({std::make_shared<ScratchedDisc>(builder.image(), 22), {0}});
    const auto place = rootOf(*medium).directories.at(0).place;
    EXPECT_EQ(errorOf([&] { medium->list(medium->root(), place); }), numberOf(ErrorNumber::DirectoryDamaged));
}

TEST(IsoHostile, ADiscThatIsGoneInADirectoryIsNoDamageOfIt) {
    const std::string aside = susp::mode(0100444) + susp::continuation(30, 0, 2048);
    auto builder = rockRidgeIso({isoDirectory("A", 22), isoDirectory("B", 23), isoDirectory("MOVED", 24)});
    builder.directory(22, 20, {isoFile("IN.;1")});
    builder.directory(23, 20, {isoFile("ASIDE.;1", 0, 0, aside)});
    builder.directory(24, 20, {isoDirectory("HERE", 0, 0, susp::childLink(31))});
    const auto disc = std::make_shared<BufferSource>(builder.image());
    const auto medium = openMedium({disc, {0}});
    const auto directories = rootOf(*medium).directories;
    for (const auto& [directory, sector] : {std::pair{0, 22}, {1, 30}, {2, 31}}) {
        disc->failFrom(uint64_t{2048} * sector, ErrorNumber::DriveNotReady);
        EXPECT_EQ(errorOf([&] { medium->list(medium->root(), directories.at(directory).place); }),
                  numberOf(ErrorNumber::DriveNotReady))
            << directory;
    }
}

TEST(IsoHostile, ABadSectorOfAFileIsAReadFailure) {
    const auto image = plainIso({isoFile("A.;1", 30, 6000)}).image();
    const auto medium = openMedium({std::make_shared<ScratchedDisc>(image, 31), {0}});
    const auto found = walk(*medium);
    EXPECT_EQ(errorOf([&] { contentOf(*medium, found.entries.at(0)); }), numberOf(ErrorNumber::ReadFailure));
}

} // namespace
} // namespace discaro::disc

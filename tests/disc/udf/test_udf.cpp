#include "disc/ImageHelp.h"
#include "disc/udf/UdfMedium.h"
#include "support/IsoBuilder.h"
#include "support/UdfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::disc {
namespace {

using namespace test;
using base::ErrorNumber;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::time_t kBuilderStamp = 946782245; // 2 January 2000, 03:04:05 GMT
constexpr unsigned kHiddenMark = 1;
constexpr unsigned kDirectoryMark = 2;
constexpr unsigned kDeletedMark = 4;

Walk walkOf(const UdfBuilder& builder) {
    return walk(*openBytes(builder.image()));
}

TEST(Udf, FilesAndDirectoriesAreListedInTheMediumsOrder) {
    auto builder = udfImage({udf::identifier(udf::name8("z.txt"), 10), udf::identifier(udf::name8("Folder"), 12, 2),
                             udf::identifier(udf::name8("a.txt"), 14)});
    builder.file(10, "content of z");
    builder.file(14, "");
    builder.directory(12, {udf::identifier(udf::name8("inner.txt"), 16)});
    builder.file(16, "inner");
    const auto medium = openBytes(builder.image());
    EXPECT_THAT(namesOf(rootOf(*medium).files), ElementsAre("z.txt", "a.txt"));
    const auto found = walk(*medium);
    EXPECT_THAT(found.paths(), ElementsAre("Folder/", "Folder/inner.txt", "a.txt", "z.txt"));
    EXPECT_THAT(found.damage, IsEmpty());
    EXPECT_EQ(contentOf(*medium, *found.find("z.txt")), "content of z");
    EXPECT_EQ(contentOf(*medium, *found.find("a.txt")), "");
    EXPECT_EQ(contentOf(*medium, *found.find("Folder/inner.txt")), "inner");
    EXPECT_EQ(found.find("z.txt")->facts.size, 12U);
    EXPECT_EQ(found.find("z.txt")->facts.modified, kBuilderStamp);
    EXPECT_EQ(found.find("z.txt")->facts.attributes, attribute::kReadOnly);
}

TEST(Udf, NamesOfBothWidthsAreRead) {
    const auto found =
        walkOf(udfImage({udf::identifier(udf::name8("Latin \xFC.txt"), 10),
                         udf::identifier(udf::name16("Größe 漢字"), 10), udf::identifier(udf::name8("a\\b"), 10),
                         udf::identifier(udf::name8(".."), 10), udf::identifier(udf::name8(""), 10)}));
    EXPECT_THAT(
        namesOf(rootOf(*openBytes(udfImage({udf::identifier(udf::name8("Latin \xFC\x80"), 10)}).image())).files),
        ElementsAre("Latin ü\u0080"));
    EXPECT_THAT(found.paths(), ElementsAre("Größe 漢字", "Latin ü.txt", "a\uFF3Cb", "\uFF0E\uFF0E", "\uFFFD"));
}

TEST(Udf, DeletedEntriesAreNotListedAndHiddenOnesAre) {
    auto builder = udfImage({udf::identifier(udf::name8("gone"), 10, kDeletedMark),
                             udf::identifier(udf::name8("hidden"), 10, kHiddenMark),
                             udf::identifier(udf::name8("used"), 10, 0, 0, 20)});
    builder.file(10, "x");
    const auto found = walkOf(builder);
    EXPECT_THAT(found.paths(), ElementsAre("hidden", "used"));
    EXPECT_EQ(found.find("hidden")->facts.attributes, attribute::kReadOnly | attribute::kHidden);
}

TEST(Udf, DirectoriesHaveFactsToo) {
    auto builder = udfImage({udf::identifier(udf::name8("D"), 10, kDirectoryMark | kHiddenMark)});
    builder.directory(10, {});
    const auto medium = openBytes(builder.image());
    const auto facts = medium->fileFacts(medium->root(), rootOf(*medium).directories.at(0).place);
    EXPECT_EQ(facts.attributes, attribute::kReadOnly | attribute::kDirectory | attribute::kHidden);
    EXPECT_EQ(facts.modified, kBuilderStamp);
    EXPECT_EQ(medium->fileFacts(medium->root(), medium->root()).attributes,
              attribute::kReadOnly | attribute::kDirectory);
}

TEST(Udf, TheVolumesFactsAreThoseOfItsDescriptors) {
    auto builder = udfImage({});
    const auto facts = openBytes(builder.image())->facts();
    EXPECT_EQ(facts.label, "Label");
    EXPECT_EQ(facts.fileSystem, "UDF");
    EXPECT_EQ(facts.totalBytes, 100U * 2048);
    EXPECT_EQ(facts.freeBytes, 0U);
    unsigned sums[4] = {};
    const auto set = UdfBuilder::fileSet(1);
    for (size_t i = 0; i < set.size(); ++i)
        sums[i % 4] += static_cast<unsigned char>(set[i]);
    char serial[10];
    std::snprintf(serial, sizeof serial, "%02X%02X-%02X%02X", sums[0] & 0xFF, sums[1] & 0xFF, sums[2] & 0xFF,
                  sums[3] & 0xFF);
    EXPECT_EQ(facts.serial, serial);
}

TEST(Udf, ContentIsFoundByAllKindsOfAllocation) {
    auto builder = udfImage({udf::identifier(udf::name8("short"), 10), udf::identifier(udf::name8("long"), 11),
                             udf::identifier(udf::name8("embedded"), 12), udf::identifier(udf::name8("extended"), 13)});
    const std::string first(2048, 'a');
    builder.putBlock(20, first);
    builder.putBlock(30, "tail");
    builder.putBlock(
        10, udf::fileEntry({.size = 2052, .allocation = udf::shortExtent(2048, 20) + udf::shortExtent(4, 30)}));
    builder.putBlock(
        11, udf::fileEntry(
                {.size = 2052, .allocationKind = 1, .allocation = udf::longExtent(2048, 20) + udf::longExtent(4, 30)}));
    builder.putBlock(
        12, udf::fileEntry(
                {.size = 8, .allocationKind = 3, .allocation = "embedded", .attributes = std::string(100, '\0')}));
    builder.putBlock(13, udf::fileEntry({.size = 4, .allocation = udf::shortExtent(4, 30), .isExtended = true}));
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(contentOf(*medium, *found.find("short")), first + "tail");
    EXPECT_EQ(contentOf(*medium, *found.find("long")), first + "tail");
    EXPECT_EQ(contentOf(*medium, *found.find("embedded")), "embedded");
    EXPECT_EQ(contentOf(*medium, *found.find("extended")), "tail");
    EXPECT_EQ(found.find("extended")->facts.modified, kBuilderStamp);
}

TEST(Udf, PartsThatWereNotRecordedReadAsZeros) {
    auto builder = udfImage({udf::identifier(udf::name8("sparse"), 10)});
    builder.putBlock(20, "end!");
    builder.putBlock(10, udf::fileEntry({.size = 4100,
                                         .allocation = udf::shortExtent(2048, 0, 2) + udf::shortExtent(2048, 20, 1) +
                                                       udf::shortExtent(4, 20)}));
    const auto medium = openBytes(builder.image());
    EXPECT_EQ(contentOf(*medium, *walk(*medium).find("sparse")), std::string(4096, '\0') + "end!");
}

TEST(Udf, AllocationGoesOnInFurtherBlocks) {
    auto builder = udfImage({udf::identifier(udf::name8("chained"), 10)});
    const auto rest = udf::shortExtent(4, 21);
    builder.putBlock(
        10, udf::fileEntry({.size = 2052, .allocation = udf::shortExtent(2048, 20) + udf::shortExtent(2048, 22, 3)}));
    builder.putBlock(20, std::string(2048, 'a'));
    builder.putBlock(21, "tail");
    builder.putBlock(22, udf::descriptor(258, 22, little32(0) + little32(static_cast<uint32_t>(rest.size())) + rest));
    const auto medium = openBytes(builder.image());
    EXPECT_EQ(contentOf(*medium, *walk(*medium).find("chained")), std::string(2048, 'a') + "tail");
}

TEST(Udf, ASymbolicLinkIsAFileOfNoLength) {
    auto builder = udfImage({udf::identifier(udf::name8("link"), 10)});
    builder.putBlock(10, udf::fileEntry({.type = 12, .size = 7, .allocationKind = 3, .allocation = "target."}));
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(found.find("link")->facts.size, 0U);
    EXPECT_EQ(contentOf(*medium, *found.find("link")), "");
}

TEST(Udf, ADirectoryInManyBlocksIsWhole) {
    std::vector<std::string> identifiers;
    std::string content = udf::identifier("", 1, 2 | 8);
    for (int i = 0; i < 500; ++i)
        content += udf::identifier(udf::name8("file " + std::to_string(1000 + i)), 10);
    auto builder = udfImage({});
    builder.putBlock(30, content);
    const auto size = static_cast<uint32_t>(content.size());
    builder.putBlock(1, udf::fileEntry({.type = 4, .size = size, .allocation = udf::shortExtent(size, 30)}));
    builder.file(10, "x");
    const auto found = walkOf(builder);
    EXPECT_EQ(found.entries.size(), 500U);
    EXPECT_THAT(found.damage, IsEmpty());
    EXPECT_EQ(found.entries.back().path, "file 1499");
    EXPECT_EQ(found.entries.back().facts.size, 1U);
}

TEST(Udf, NsrOfBothVersionsIsRecognised) {
    for (const char* revision : {"NSR02", "NSR03"}) {
        auto builder = udfImage({});
        builder.volume({.revision = revision});
        EXPECT_EQ(openBytes(builder.image())->facts().fileSystem, "UDF") << revision;
    }
}

TEST(Udf, TheReserveIsReadWhereTheMainDescriptorsAreDamaged) {
    auto builder = udfImage({udf::identifier(udf::name8("A"), 10)});
    const auto sequence = builder.image().substr(240 * 2048, 4 * 2048);
    builder.put(290, sequence);
    builder.put(240, std::string(2048, '\0'));
    builder.put(241, std::string(2048, '\0'));
    builder.put(256, udf::descriptor(2, 256, little32(32768) + little32(240) + little32(32768) + little32(290)));
    EXPECT_THAT(walkOf(builder).paths(), ElementsAre("A"));
}

// Two descriptors of one purpose in the sequence, in the places of the first one and of the terminator behind all.
void replaceDescriptor(UdfBuilder& builder, uint32_t sector, const std::string& first, const std::string& second) {
    constexpr uint32_t kTerminatorSector = 243;
    const auto terminator = builder.image().substr(kTerminatorSector * 2048, 2048);
    builder.put(sector, first);
    builder.put(kTerminatorSector, second);
    builder.put(kTerminatorSector + 1, terminator);
}

// The descriptor at a sector with another sequence number, and other bytes at a place.
std::string variant(const UdfBuilder& builder, uint32_t sector, uint32_t sequenceNumber, size_t at,
                    const std::string& bytes) {
    auto descriptor = builder.image().substr(sector * 2048, 2048);
    descriptor.replace(16, 4, little32(sequenceNumber));
    return descriptor.replace(at, bytes.size(), bytes);
}

TEST(Udf, OfTwoVolumeDescriptorsTheOneWithTheHigherSequenceNumberHolds) {
    constexpr size_t kLabelText = 85;
    for (const bool newerFirst : {true, false}) {
        auto builder = udfImage({});
        const auto older = variant(builder, 241, 0x1FF, kLabelText, "Older");
        const auto newer = variant(builder, 241, 0x200, kLabelText, "Newer");
        replaceDescriptor(builder, 241, newerFirst ? newer : older, newerFirst ? older : newer);
        EXPECT_EQ(openBytes(builder.image())->facts().label, "Newer") << newerFirst;
    }
}

TEST(Udf, OfTwoDescriptorsOfAPartitionTheOneWithTheHigherSequenceNumberHolds) {
    constexpr size_t kStart = 188;
    for (const bool newerFirst : {true, false}) {
        auto builder = udfImage({udf::identifier(udf::name8("A"), 10)});
        const auto start = builder.image().substr(242 * 2048 + kStart, 4);
        const auto older = variant(builder, 242, 0x1FF, kStart, little32(20));
        const auto newer = variant(builder, 242, 0x200, kStart, start);
        replaceDescriptor(builder, 242, newerFirst ? newer : older, newerFirst ? older : newer);
        EXPECT_THAT(walkOf(builder).paths(), ElementsAre("A")) << newerFirst;
    }
}

TEST(Udf, TheAnchorAtTheEndServesWhereTheFirstIsDamaged) {
    auto builder = udfImage({udf::identifier(udf::name8("A"), 10)});
    builder.put(256, std::string(2048, '\0'));
    builder.put(399, udf::descriptor(2, 399, little32(32768) + little32(240) + std::string(16, '\0')));
    EXPECT_THAT(walkOf(builder).paths(), ElementsAre("A"));
}

// Partitions of other kinds

TEST(UdfPartitionKinds, PacketsThatWereMovedAreReadWhereTheyAre) {
    UdfBuilder builder(500);
    builder.volume({.maps = {udf::sparableMap(32, 280)}});
    builder.directory(1, {udf::identifier(udf::name8("moved"), 64), udf::identifier(udf::name8("still"), 10)});
    builder.file(10, "in place");
    builder.file(64, "the old content");
    builder.put(450, builder.image().substr((300 + 64) * 2048, 2048));
    builder.put(451, "the new content");
    builder.put(280, udf::descriptor(0, 280,
                                     std::string(1, '\0') + "*UDF Sparing Table" + std::string(13, '\0') + little16(1) +
                                         std::string(6, '\0') + little32(64) + little32(450)));
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(contentOf(*medium, *found.find("moved")), "the new content");
    EXPECT_EQ(contentOf(*medium, *found.find("still")), "in place");
}

// The table of a packet written disc: blocks 0 to 2 stand for others. Two maps: the plain one and the virtual one.
UdfBuilder packetWritten(bool isOldRevision) {
    UdfBuilder builder(400);
    builder.volume(
        {.maps = {udf::plainMap(), udf::virtualMap()}, .fileSetBlock = 0, .fileSetPartition = 1, .rootPartition = 1});
    builder.putBlock(20, UdfBuilder::fileSet(1, 1));
    builder.directory(21, {udf::identifier(udf::name8("packet.txt"), 2, 0, 1)});
    builder.putBlock(22, udf::fileEntry({.size = 6, .allocationKind = 1, .allocation = udf::longExtent(6, 23, 0)}));
    builder.putBlock(23, "packet");
    std::string table = little32(20) + little32(21) + little32(22);
    if (isOldRevision) {
        std::string identifier = std::string(1, '\0') + "*UDF Virtual Alloc Tbl";
        identifier.resize(32, '\0');
        table += identifier + little32(0xFFFFFFFF);
    } else {
        table = little16(152) + std::string(150, '\0') + table;
    }
    const auto size = static_cast<uint32_t>(table.size());
    builder.putBlock(24, table);
    builder.putBlock(97, udf::fileEntry({.type = isOldRevision ? 0U : 248U,
                                         .size = size,
                                         .allocation = udf::shortExtent(size, 24),
                                         .location = 97}));
    return builder;
}

TEST(UdfPartitionKinds, PacketWrittenDiscsAreReadThroughTheirTable) {
    for (const bool isOldRevision : {true, false}) {
        const auto medium = openBytes(packetWritten(isOldRevision).image());
        const auto found = walk(*medium);
        ASSERT_THAT(found.paths(), ElementsAre("packet.txt")) << isOldRevision;
        EXPECT_EQ(contentOf(*medium, found.entries[0]), "packet");
    }
}

TEST(UdfPartitionKinds, APacketWrittenDiscWithoutItsTableIsToldPlainly) {
    auto builder = packetWritten(false);
    builder.putBlock(97, std::string(2048, '\0'));
    try {
        openBytes(builder.image());
        ADD_FAILURE();
    } catch (const base::RuntimeError& error) {
        EXPECT_TRUE(error.is(ErrorNumber::FileSystemUnsupported));
        EXPECT_THAT(error.description(), HasSubstr("virtual allocation table"));
    }
}

UdfBuilder withMetadata() {
    UdfBuilder builder(400);
    builder.volume({.maps = {udf::plainMap(), udf::metadataMap(50, 51)}, .fileSetPartition = 1, .rootPartition = 1});
    const auto metadata = udf::fileEntry({.type = 250,
                                          .size = 4 * 2048,
                                          .allocation = udf::shortExtent(2 * 2048, 60) + udf::shortExtent(2 * 2048, 70),
                                          .isExtended = true});
    builder.putBlock(50, metadata);
    builder.putBlock(51, metadata);
    builder.putBlock(60, UdfBuilder::fileSet(1, 1));
    builder.directory(61, {udf::identifier(udf::name8("meta.txt"), 2, 0, 1)});
    builder.putBlock(70, udf::fileEntry({.size = 8, .allocationKind = 1, .allocation = udf::longExtent(8, 80)}));
    builder.putBlock(80, "metadata");
    return builder;
}

TEST(UdfPartitionKinds, MetadataPartitionsAreRead) {
    const auto medium = openBytes(withMetadata().image());
    const auto found = walk(*medium);
    ASSERT_THAT(found.paths(), ElementsAre("meta.txt"));
    EXPECT_EQ(contentOf(*medium, found.entries[0]), "metadata");
}

TEST(UdfPartitionKinds, TheMirrorServesWhereTheMetadataFileIsDamaged) {
    auto builder = withMetadata();
    builder.putBlock(50, std::string(2048, '\0'));
    EXPECT_THAT(walkOf(builder).paths(), ElementsAre("meta.txt"));
}

// Beside ISO 9660

// A UDF image whose first sectors hold an ISO 9660 volume with these files in its root.
std::string bridge(const UdfBuilder& udfSide, const std::vector<IsoEntry>& isoEntries) {
    auto image = udfSide.image();
    const auto iso = plainIso(isoEntries).image();
    const auto recognition = image.substr(16 * 2048, 3 * 2048);
    image.replace(16 * 2048, 24 * 2048, iso, 16 * 2048, 24 * 2048);
    image.replace(17 * 2048, recognition.size(), recognition);
    return image;
}

UdfBuilder udfSide() {
    auto builder = udfImage({udf::identifier(udf::name8("one.vob"), 10), udf::identifier(udf::name8("two.vob"), 10),
                             udf::identifier(udf::name8("three.vob"), 10)});
    builder.file(10, "film");
    return builder;
}

TEST(Bridge, ADiscWithBothSidesIsReadAsIso9660) {
    const auto image = bridge(udfSide(), {isoFile("ONE.VOB;1"), isoFile("TWO.VOB;1"), isoFile("THREE.VOB;1")});
    const auto medium = openBytes(image);
    EXPECT_EQ(medium->facts().fileSystem, "CDFS");
    EXPECT_THAT(walk(*medium).paths(), ElementsAre("ONE.VOB", "THREE.VOB", "TWO.VOB"));
}

TEST(Bridge, ANoteBesideAUdfDiscIsPassedOver) {
    for (const auto& note :
         {std::vector<IsoEntry>{}, {isoFile("README.TXT;1")}, {isoFile("README.TXT;1"), isoFile("LIESMICH.TXT;1")}}) {
        const auto medium = openBytes(bridge(udfSide(), note));
        EXPECT_EQ(medium->facts().fileSystem, "UDF");
        EXPECT_THAT(walk(*medium).paths(), ElementsAre("one.vob", "three.vob", "two.vob"));
    }
}

TEST(Bridge, AFewFilesOnBothSidesAreReadAsIso9660) {
    auto builder = udfImage({udf::identifier(udf::name8("one"), 10), udf::identifier(udf::name8("two"), 10)});
    EXPECT_EQ(openBytes(bridge(builder, {isoFile("ONE.;1"), isoFile("TWO.;1")}))->facts().fileSystem, "CDFS");
}

TEST(Bridge, ANoteWhoseUdfSideCannotBeReadIsNoCatalogue) {
    auto image = bridge(udfSide(), {isoFile("README.TXT;1")});
    image.replace(256 * 2048, 2048, std::string(2048, '\0'));
    try {
        openBytes(image);
        ADD_FAILURE();
    } catch (const base::RuntimeError& error) {
        EXPECT_TRUE(error.is(ErrorNumber::FileSystemUnsupported));
        EXPECT_THAT(error.description(), HasSubstr("UDF"));
    }
}

TEST(Bridge, AFullIsoSideNeedsNoUdfSide) {
    auto image = bridge(udfSide(), {isoFile("A.;1"), isoFile("B.;1"), isoFile("C.;1")});
    image.replace(256 * 2048, 2048, std::string(2048, '\0'));
    EXPECT_EQ(openBytes(image)->facts().fileSystem, "CDFS");
}

TEST(Bridge, ABrokenIsoSideGivesWayToTheUdfSide) {
    auto image = bridge(udfSide(), {});
    image.replace(20 * 2048, 2048, std::string(2048, '\0'));
    EXPECT_EQ(openBytes(image)->facts().fileSystem, "UDF");
}

// Damage

TEST(UdfHostile, ADirectoryThatHoldsItselfOrTheRootEnds) {
    auto builder = udfImage({udf::identifier(udf::name8("self"), 10, 2)});
    builder.directory(10, {udf::identifier(udf::name8("again"), 10, 2), udf::identifier(udf::name8("top"), 1, 2)});
    const auto found = walkOf(builder);
    EXPECT_THAT(found.paths(), ElementsAre("self/", "self/again/", "self/top/"));
    EXPECT_EQ(found.damage.size(), 2U);
}

TEST(UdfHostile, ADirectoryIsListedAgainFromItsOwnPlace) {
    auto builder = udfImage({udf::identifier(udf::name8("a"), 10, 2), udf::identifier(udf::name8("b"), 10, 2)});
    builder.directory(10, {udf::identifier(udf::name8("in"), 12)});
    const auto medium = openBytes(builder.image());
    const auto first = walk(*medium).paths();
    EXPECT_THAT(first, ElementsAre("a/", "a/in", "b/"));
    EXPECT_EQ(walk(*medium).paths(), first);
}

TEST(UdfHostile, EntriesThatLeadNowhereAreShownAndFailWhenAsked) {
    auto builder =
        udfImage({udf::identifier(udf::name8("far"), 70000), udf::identifier(udf::name8("folder"), 70000, 2),
                  udf::identifier(udf::name8("nopart"), 10, 0, 7), udf::identifier(udf::name8("blank"), 90)});
    const auto medium = openBytes(builder.image());
    const auto listing = rootOf(*medium);
    EXPECT_THAT(namesOf(listing.files), ElementsAre("far", "nopart", "blank"));
    for (const auto& file : listing.files) {
        EXPECT_EQ(errorOf([&] { medium->fileFacts(medium->root(), file.place); }), numberOf(ErrorNumber::FileDamaged));
        EXPECT_EQ(errorOf([&] { medium->open(medium->root(), file.place); }), numberOf(ErrorNumber::FileDamaged));
    }
    EXPECT_EQ(errorOf([&] { medium->list(medium->root(), listing.directories.at(0).place); }),
              numberOf(ErrorNumber::DirectoryDamaged));
}

TEST(UdfHostile, ADirectoryWithADamagedRecordGivesWhatIsBeforeIt) {
    std::string bad = udf::identifier(udf::name8("bad"), 10);
    bad[4] = static_cast<char>(bad[4] + 1);
    const auto found =
        walkOf(udfImage({udf::identifier(udf::name8("good"), 10), bad, udf::identifier(udf::name8("lost"), 10)}));
    EXPECT_THAT(found.paths(), ElementsAre("good"));
    EXPECT_THAT(found.damage, ElementsAre(HasSubstr("record")));
}

TEST(UdfHostile, ADiscThatIsGoneInADirectoryIsNoDamageOfIt) {
    const auto content = udf::identifier(udf::name8("in"), 12);
    const auto size = static_cast<uint32_t>(content.size());
    auto builder = udfImage({udf::identifier(udf::name8("folder"), 10, kDirectoryMark)});
    builder.putBlock(10, udf::fileEntry({.type = 4, .size = size, .allocation = udf::shortExtent(size, 20)}));
    builder.putBlock(20, content);
    const auto disc = std::make_shared<BufferSource>(builder.image());
    const auto medium = openMedium({disc, {0}});
    const auto folder = rootOf(*medium).directories.at(0).place;
    EXPECT_THAT(namesOf(medium->list(medium->root(), folder).files), ElementsAre("in"));
    for (const uint32_t block : {20U, 10U}) {
        disc->failFrom(uint64_t{2048} * (UdfBuilder::kStart + block), ErrorNumber::DriveNotReady);
        EXPECT_EQ(errorOf([&] { medium->list(medium->root(), folder); }), numberOf(ErrorNumber::DriveNotReady))
            << block;
    }
}

TEST(UdfHostile, SizesBeyondTheDiscAreKeptAndCannotBeRead) {
    auto builder = udfImage({udf::identifier(udf::name8("vast"), 10), udf::identifier(udf::name8("endless"), 11)});
    builder.putBlock(10, udf::fileEntry({.size = UINT64_MAX, .allocation = udf::shortExtent(2048, 20)}));
    builder.putBlock(11, udf::fileEntry({.size = 1 << 20, .allocation = udf::shortExtent(1 << 20, 90)}));
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(found.find("vast")->facts.size, UINT64_MAX);
    std::string piece(2048, ' ');
    const auto buffer = std::as_writable_bytes(std::span(piece));
    for (const char* name : {"vast", "endless"}) {
        const auto source = medium->open(medium->root(), found.find(name)->place);
        EXPECT_EQ(source->read(0, buffer), 2048U);
        EXPECT_EQ(errorOf([&] { source->read(source->size() - 2048, buffer); }), numberOf(ErrorNumber::ReadFailure));
    }
}

TEST(UdfHostile, AnEndlessChainOfAllocationsEnds) {
    auto builder = udfImage({udf::identifier(udf::name8("chain"), 10)});
    const auto again = udf::shortExtent(2048, 22, 3);
    builder.putBlock(10, udf::fileEntry({.size = 1 << 30, .allocation = again}));
    builder.putBlock(22, udf::descriptor(258, 22, little32(0) + little32(8) + again));
    const auto medium = openBytes(builder.image());
    const auto source = medium->open(medium->root(), walk(*medium).entries.at(0).place);
    EXPECT_EQ(source->size(), 1U << 30);
}

TEST(UdfHostile, DirectoriesOfZerosWithoutEndAreReadUpToTheDiscsSize) {
    std::vector<std::string> identifiers;
    for (uint32_t i = 0; i < 40; ++i)
        identifiers.push_back(udf::identifier(udf::name8("d" + std::to_string(i)), 10 + i, 2));
    auto builder = udfImage(identifiers);
    for (uint32_t i = 0; i < 40; ++i)
        builder.putBlock(10 + i,
                         udf::fileEntry({.type = 4, .size = 1 << 29, .allocation = udf::shortExtent(1 << 29, 0, 2)}));
    const auto found = walkOf(builder);
    EXPECT_EQ(found.damage.size(), 40U);
    EXPECT_THAT(found.damage, testing::Contains(HasSubstr("larger than the disc")));
}

TEST(UdfHostile, OtherBlockSizesAndUnknownPartitionsAreToldPlainly) {
    for (const auto& volume : {UdfBuilder::Volume{.blockSize = 512},
                               UdfBuilder::Volume{.maps = {std::string("\2\x40") + std::string(62, 'x')}},
                               UdfBuilder::Volume{.maps = {}}, UdfBuilder::Volume{.rootBlock = 70}}) {
        auto builder = udfImage({});
        builder.volume(volume);
        EXPECT_EQ(errorOf([&] { openBytes(builder.image()); }), numberOf(ErrorNumber::FileSystemUnsupported));
    }
}

TEST(UdfHostile, EveryCutOfAnImageIsHarmless) {
    for (const auto& whole : {udfSide().image(), packetWritten(true).image(), withMetadata().image()})
        for (size_t length = 16 * 2048; length < whole.size(); length += 1021)
            errorOf([&] { walk(*openBytes(whole.substr(0, length))); });
    SUCCEED();
}

TEST(UdfHostile, EveryDamagedByteOfTheStructuresIsHarmless) {
    for (const auto& whole : {udfSide().image(), packetWritten(false).image(), withMetadata().image()}) {
        for (size_t at = 240 * 2048; at < whole.size(); ++at) {
            if (whole[at] == '\0')
                continue;
            for (const char value : {'\0', '\xFF'}) {
                auto damaged = whole;
                damaged[at] = value;
                const auto error = errorOf([&] { walk(*openBytes(std::move(damaged)), 2000); });
                EXPECT_TRUE(!error || error == numberOf(ErrorNumber::FileSystemUnsupported)) << at;
            }
        }
    }
}

} // namespace
} // namespace discaro::disc

#include "disc/ImageHelp.h"
#include "disc/medium/DiscTime.h"
#include "disc/medium/VolumeSerial.h"
#include "disc/udf/UdfTime.h"
#include "support/IsoBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::disc {
namespace {

using namespace test;

constexpr std::time_t k2000 = 946684800; // 1 January 2000, GMT
constexpr std::time_t kBuilderStamp = k2000 + 86400 + 3 * 3600 + 4 * 60 + 5;

// The four sums one after the other, as the serial number shows them.
std::string serialByHand(std::string_view descriptor) {
    char text[10];
    unsigned sums[4] = {};
    for (size_t i = 0; i < descriptor.size(); ++i)
        sums[i % 4] += static_cast<unsigned char>(descriptor[i]);
    std::snprintf(text, sizeof text, "%02X%02X-%02X%02X", sums[0] & 0xFF, sums[1] & 0xFF, sums[2] & 0xFF,
                  sums[3] & 0xFF);
    return text;
}

std::time_t timeOf(const std::array<uint8_t, 7>& stamp) {
    return recordTime(std::as_bytes(std::span(stamp)));
}

std::time_t digitsTimeOf(std::string_view digits, int quarters = 0) {
    const std::string text = std::string(digits) + static_cast<char>(quarters);
    return digitsTime(std::as_bytes(std::span(text)));
}

FileFacts factsWith(const IsoEntry& entry) {
    return onlyFile(*openBytes(rockRidgeIso({entry}).image()));
}

TEST(VolumeSerial, IsTheFourSumsInOrderInUpperCase) {
    const std::string bytes = "\x01\x02\x03\x04\x0A\x0B\x0C\xFF";
    EXPECT_EQ(volumeSerial(std::as_bytes(std::span(bytes))), "0B0D-0F03");
    EXPECT_EQ(volumeSerial({}), "0000-0000");
}

TEST(IsoFacts, TheSerialIsOverThePrimaryDescriptor) {
    const auto image = plainIso({}).image();
    EXPECT_EQ(openBytes(image)->facts().serial, serialByHand(image.substr(16 * 2048, 2048)));
}

TEST(IsoFacts, TheSerialIsOverTheJolietDescriptorWhereThatIsInUse) {
    const auto image = jolietIso({}).image();
    const auto serial = openBytes(image)->facts().serial;
    EXPECT_EQ(serial, serialByHand(image.substr(17 * 2048, 2048)));
    EXPECT_NE(serial, serialByHand(image.substr(16 * 2048, 2048)));
}

TEST(IsoFacts, TheLabelHasNoPadding) {
    auto builder = plainIso({});
    builder.primary(16, {.label = "MY DISC", .rootBlock = 20});
    EXPECT_EQ(openBytes(builder.image())->facts().label, "MY DISC");
    builder.primary(16, {.label = std::string("NULS\0\0\0", 7) + std::string(25, '\0'), .rootBlock = 20});
    EXPECT_EQ(openBytes(builder.image())->facts().label, "NULS");
    builder.primary(16, {.label = "", .rootBlock = 20});
    EXPECT_EQ(openBytes(builder.image())->facts().label, "");
}

TEST(IsoFacts, ALabelThatIsNotUtf8ReadsAsWindows1252) {
    auto builder = plainIso({});
    builder.primary(16, {.label = "B\xC4R", .rootBlock = 20});
    EXPECT_EQ(openBytes(builder.image())->facts().label, "BÄR");
}

TEST(IsoFacts, TheJolietLabelIsTheOneInUse) {
    auto builder = jolietIso({});
    builder.joliet(17, {.label = "Größe 漢", .rootBlock = 21});
    EXPECT_EQ(openBytes(builder.image())->facts().label, "Größe 漢");
}

TEST(IsoFacts, TheFileSystemIsCdfsWhateverTheNames) {
    EXPECT_EQ(openBytes(plainIso({}).image())->facts().fileSystem, "CDFS");
    EXPECT_EQ(openBytes(rockRidgeIso({}).image())->facts().fileSystem, "CDFS");
    EXPECT_EQ(openBytes(jolietIso({}).image())->facts().fileSystem, "CDFS");
}

TEST(IsoFacts, TheCapacityIsTheVolumesAndNothingIsFree) {
    auto builder = plainIso({});
    builder.primary(16, {.rootBlock = 20, .blocks = 333000});
    const auto facts = openBytes(builder.image())->facts();
    EXPECT_EQ(facts.totalBytes, 333000U * 2048);
    EXPECT_EQ(facts.freeBytes, 0U);
}

TEST(IsoFacts, AnAbsurdCapacityGivesWayToTheImagesSize) {
    for (const uint32_t blocks : {0U, 3U, 0xFFFFFFFFU}) {
        auto builder = plainIso({});
        builder.primary(16, {.rootBlock = 20, .blocks = blocks});
        EXPECT_EQ(openBytes(builder.image())->facts().totalBytes, 40U * 2048) << blocks;
    }
}

TEST(IsoFacts, ASmallerLogicalBlockCounts) {
    IsoBuilder builder;
    auto file = isoFile("A.;1", 100, 5); // block of 512 bytes
    builder.records(20, {isoDirectory(std::string(1, '\0'), 80), isoDirectory("\1", 80), file});
    builder.put(25, "hello");
    builder.primary(16, {.rootBlock = 80, .blocks = 160, .blockSize = 512});
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(contentOf(*medium, *found.find("A")), "hello");
    EXPECT_EQ(medium->facts().totalBytes, 160U * 512);
}

TEST(IsoFacts, FilesAreReadOnlyAndHiddenAsTheirRecordSays) {
    EXPECT_EQ(factsWith(isoFile("A.;1")).attributes, attribute::kReadOnly);
    auto hidden = isoFile("A.;1");
    hidden.flags = 1;
    EXPECT_EQ(factsWith(hidden).attributes, attribute::kReadOnly | attribute::kHidden);
}

TEST(IsoFacts, DirectoriesHaveFactsToo) {
    auto directory = isoDirectory("D", 22);
    directory.flags |= 1;
    auto builder = plainIso({directory});
    builder.directory(22, 20, {});
    const auto medium = openBytes(builder.image());
    const auto facts = medium->fileFacts(medium->root(), rootOf(*medium).directories.at(0).place);
    EXPECT_EQ(facts.attributes, attribute::kReadOnly | attribute::kDirectory | attribute::kHidden);
    EXPECT_EQ(facts.modified, kBuilderStamp);
    EXPECT_EQ(facts.size, 0U);
    const auto root = medium->fileFacts(medium->root(), medium->root());
    EXPECT_EQ(root.attributes, attribute::kReadOnly | attribute::kDirectory);
    EXPECT_EQ(root.modified, kBuilderStamp);
}

TEST(IsoFacts, SizeAndStampAreTheRecords) {
    const auto facts = factsWith(isoFile("A.;1", 30, 1234));
    EXPECT_EQ(facts.size, 1234U);
    EXPECT_EQ(facts.modified, kBuilderStamp);
}

TEST(IsoFacts, TheRockRidgeStampIsPreferred) {
    EXPECT_EQ(factsWith(isoFile("A.;1", 0, 0, susp::modified({70, 1, 1, 0, 1, 0, 0}))).modified, 60);
    EXPECT_EQ(factsWith(isoFile("A.;1", 0, 0, susp::modifiedLong("2000010100000000"))).modified, k2000);
    EXPECT_EQ(factsWith(isoFile("A.;1", 0, 0, susp::modifiedLong("2000010100000000", 4))).modified, k2000 - 3600);
}

TEST(IsoFacts, ARockRidgeStampThatIsNoDateGivesWayToTheRecords) {
    EXPECT_EQ(factsWith(isoFile("A.;1", 0, 0, susp::modified({70, 13, 1, 0, 1, 0, 0}))).modified, kBuilderStamp);
    EXPECT_EQ(factsWith(isoFile("A.;1", 0, 0, susp::modifiedLong("0000000000000000"))).modified, kBuilderStamp);
}

TEST(IsoFacts, StampsOfAllYearsSurvive) {
    for (const char* year : {"0001", "1601", "1900", "1970", "2155", "9999"}) {
        const auto facts = factsWith(isoFile("A.;1", 0, 0, susp::modifiedLong(std::string(year) + "070112000000")));
        EXPECT_EQ(facts.modified, digitsTimeOf(std::string(year) + "070112000000")) << year;
        EXPECT_NE(facts.modified, kBuilderStamp) << year;
    }
}

TEST(DiscTime, RecordStampsCountTheirOffsetFromGmt) {
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 0, 0}), k2000);
    EXPECT_EQ(timeOf({100, 1, 1, 1, 0, 0, 4}), k2000);
    EXPECT_EQ(timeOf({99, 12, 31, 16, 0, 0, static_cast<uint8_t>(-32)}), k2000);
    EXPECT_EQ(timeOf({100, 2, 29, 0, 0, 0, 0}), k2000 + 59 * 86400);
    EXPECT_EQ(timeOf({70, 1, 1, 0, 0, 1, 0}), 1);
    EXPECT_EQ(timeOf({69, 12, 31, 23, 59, 59, 0}), -1);
}

TEST(DiscTime, AnOffsetOutOfRangeCountsAsGmt) {
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 0, 100}), k2000);
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 0, static_cast<uint8_t>(-100)}), k2000);
    EXPECT_EQ(timeOf({100, 1, 1, 14, 0, 0, 56}), k2000) << "the most";
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 0, 57}), k2000);
    EXPECT_EQ(timeOf({99, 12, 31, 12, 0, 0, static_cast<uint8_t>(-48)}), k2000) << "the least";
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 0, static_cast<uint8_t>(-49)}), k2000);
}

TEST(DiscTime, WhatIsNoDateIsNoTime) {
    EXPECT_EQ(timeOf({0, 0, 0, 0, 0, 0, 0}), 0);
    EXPECT_EQ(timeOf({100, 13, 1, 0, 0, 0, 0}), 0);
    EXPECT_EQ(timeOf({100, 2, 30, 0, 0, 0, 0}), 0);
    EXPECT_EQ(timeOf({101, 2, 29, 0, 0, 0, 0}), 0);
    EXPECT_EQ(timeOf({100, 1, 1, 24, 0, 0, 0}), 0);
    EXPECT_EQ(timeOf({100, 1, 1, 0, 60, 0, 0}), 0);
    EXPECT_EQ(timeOf({100, 1, 1, 0, 0, 60, 0}), 0);
    EXPECT_EQ(recordTime({}), 0);
    EXPECT_EQ(digitsTimeOf("20000101xx000000"), 0);
    EXPECT_EQ(digitsTimeOf("00000101000000"), 0);
    EXPECT_EQ(digitsTime({}), 0);
}

TEST(DiscTime, UdfStampsCountTheirOffsetInMinutes) {
    const auto time = [](const std::array<uint8_t, 12>& stamp) { return udfTime(std::as_bytes(std::span(stamp))); };
    EXPECT_EQ(time({0, 0x10, 0xD0, 7, 1, 1, 0, 0, 0, 0, 0, 0}), k2000);
    EXPECT_EQ(time({60, 0x10, 0xD0, 7, 1, 1, 1, 0, 0, 0, 0, 0}), k2000);
    EXPECT_EQ(time({0xC4, 0x1F, 0xCF, 7, 12, 31, 23, 0, 0, 0, 0, 0}), k2000); // -60 minutes
    EXPECT_EQ(time({0x01, 0x18, 0xD0, 7, 1, 1, 0, 0, 0, 0, 0, 0}), k2000);    // none stated
    EXPECT_EQ(time({0xA0, 0x15, 0xD0, 7, 1, 2, 0, 0, 0, 0, 0, 0}), k2000) << "a whole day is the most";
    EXPECT_EQ(time({0xA1, 0x15, 0xD0, 7, 1, 1, 0, 0, 0, 0, 0, 0}), k2000);
    EXPECT_EQ(time({0x60, 0x1A, 0xCF, 7, 12, 31, 0, 0, 0, 0, 0, 0}), k2000) << "a whole day is the least";
    EXPECT_EQ(time({0x5F, 0x1A, 0xD0, 7, 1, 1, 0, 0, 0, 0, 0, 0}), k2000);
    EXPECT_EQ(time({0, 0x10, 0xD0, 7, 0, 1, 0, 0, 0, 0, 0, 0}), 0);
    EXPECT_EQ(time({0, 0x10, 0xFF, 0xFF, 1, 1, 0, 0, 0, 0, 0, 0}), 0);
}

TEST(IsoContent, AFileIsReadByteForByteFromAnyOffset) {
    std::string content;
    for (int i = 0; i < 100000; ++i)
        content += static_cast<char>(i * 7 + i / 256);
    auto builder = plainIso({isoFile("A.;1", 22, 100000)}, 90);
    builder.put(22, content);
    const auto medium = openBytes(builder.image());
    const auto found = walk(*medium);
    EXPECT_EQ(contentOf(*medium, *found.find("A")), content);
    const auto source = medium->open(medium->root(), found.find("A")->place);
    std::string piece(5000, ' ');
    EXPECT_EQ(source->read(97000, std::as_writable_bytes(std::span(piece))), 3000U);
    EXPECT_EQ(piece.substr(0, 3000), content.substr(97000));
    EXPECT_EQ(source->read(100000, std::as_writable_bytes(std::span(piece))), 0U);
    EXPECT_EQ(source->read(UINT64_MAX, std::as_writable_bytes(std::span(piece))), 0U);
}

TEST(IsoContent, AFileBehindAnExtendedAttributeRecordBeginsAfterIt) {
    auto file = isoFile("A.;1", 22, 5);
    file.extendedBlocks = 2;
    auto builder = plainIso({file});
    builder.put(24, "hello");
    const auto medium = openBytes(builder.image());
    EXPECT_EQ(contentOf(*medium, *walk(*medium).find("A")), "hello");
}

TEST(IsoContent, ADirectoryBehindAnExtendedAttributeRecordIsListed) {
    auto directory = isoDirectory("D", 22);
    directory.extendedBlocks = 1;
    auto builder = plainIso({directory});
    builder.directory(23, 20, {isoFile("IN.;1")});
    EXPECT_NE(walk(*openBytes(builder.image())).find("D/IN"), nullptr);
}

TEST(IsoContent, AFileInSeveralExtentsIsOneFile) {
    auto first = isoFile("BIG.DAT;1", 22, 2048);
    first.flags = 128;
    auto second = isoFile("BIG.DAT;1", 24, 4096);
    second.flags = 128;
    auto builder = plainIso({isoFile("A.;1"), first, second, isoFile("BIG.DAT;1", 27, 10), isoFile("Z.;1")});
    builder.put(22, std::string(2048, 'a'));
    builder.put(24, std::string(4096, 'b'));
    builder.put(27, std::string(10, 'c'));
    const auto medium = openBytes(builder.image());
    EXPECT_THAT(namesOf(rootOf(*medium).files), testing::ElementsAre("A", "BIG.DAT", "Z"));
    const auto found = walk(*medium);
    EXPECT_EQ(found.find("BIG.DAT")->facts.size, 2048U + 4096 + 10);
    EXPECT_EQ(found.find("BIG.DAT")->facts.modified, kBuilderStamp);
    EXPECT_EQ(contentOf(*medium, *found.find("BIG.DAT")),
              std::string(2048, 'a') + std::string(4096, 'b') + std::string(10, 'c'));
}

TEST(IsoContent, ExtentsWhoseRecordsLieInTwoSectorsAreOneFile) {
    std::vector<IsoEntry> entries;
    for (int i = 0; i < 46; ++i)
        entries.push_back(isoFile("F" + std::to_string(100 + i) + ".;1"));
    entries.push_back(isoFile("Z.;1", 30, 2048));
    entries.back().flags = 128;
    for (int i = 0; i < 3; ++i) {
        entries.push_back(entries.back());
        entries.back().block += 1;
    }
    entries.back().flags = 0;
    const auto builder = plainIso(entries);
    const auto found = walk(*openBytes(builder.image()));
    EXPECT_EQ(found.entries.size(), 47U);
    EXPECT_EQ(found.find("Z")->facts.size, 4U * 2048);
}

TEST(IsoContent, AFileOfMoreThanFourGigabytesHasItsWholeSize) {
    auto first = isoFile("BIG.DAT;1", 22, 0xFFFFF800);
    first.flags = 128;
    const auto builder = plainIso({first, isoFile("BIG.DAT;1", 22 + 0x1FFFFF, 1000)});
    EXPECT_EQ(onlyFile(*openBytes(builder.image())).size, 0xFFFFF800ULL + 1000);
}

} // namespace
} // namespace discaro::disc

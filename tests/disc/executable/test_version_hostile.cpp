#include "base/Text.h"
#include "disc/executable/Executable.h"
#include "disc/executable/ExecutableReader.h"
#include "disc/executable/VersionResource.h"
#include "disc/executable/VersionResourceBlock.h"
#include "support/BufferSource.h"
#include "support/ExecutableBuilder.h"
#include "support/FileResources.h"

#include <gtest/gtest.h>

namespace discaro::disc {

namespace {

using namespace discaro::test;

struct Sample {
    std::string name;
    std::string bytes;
    bool executable = true;
};

std::vector<Resource> sampleResources(const std::string& version) {
    auto resources = iconResources(2);
    resources.push_back({kGroupIconType, std::string("MAIN"), "group"});
    resources.push_back({kVersionType, uint16_t{1}, version});
    return resources;
}

const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = {
        {"PE32", peFile(sampleResources(wideVersion(sampleVersion()))).bytes},
        {"PE32+",
         peFile(sampleResources(wideVersion(sampleVersion())), {.wide = true, .dataInOwnSection = true}).bytes},
        {"NE", neFile(sampleResources(narrowVersion(sampleVersion("040904E3")))).bytes},
        {"icon file", iconFile(IconFileKind::Icon, 3), false},
    };
    return all;
}

bool isSound(const VersionTexts& texts) {
    for (const auto& text : {texts.companyName, texts.fileDescription, texts.legalCopyright, texts.productName,
                             texts.productVersion, texts.internalName, texts.originalFileName}) {
        if (!base::isValidUtf8(text) || text.size() > 400'000)
            return false;
    }
    return true;
}

// Whether reading ends as it must: within the limits, with sound texts and a count that is possible.
testing::AssertionResult readsSafely(const BufferSource& source) {
    const auto found = readResources(source);
    if (source.bytesAsked() > ExecutableReader::kReadLimit)
        return testing::AssertionFailure() << source.bytesAsked() << " bytes read";
    if (found.icons < 0 || found.icons > ExecutableReader::kEntryLimit)
        return testing::AssertionFailure() << found.icons << " icons";
    return isSound(found.version) ? testing::AssertionSuccess() : testing::AssertionFailure() << "texts";
}

testing::AssertionResult readsSafely(const std::string& bytes) {
    return readsSafely(BufferSource(bytes));
}

TEST(VersionHostile, AFileCutAnywhereReadsSafely) {
    for (const auto& sample : samples()) {
        for (size_t length = 0; length < sample.bytes.size(); ++length)
            ASSERT_TRUE(readsSafely(sample.bytes.substr(0, length))) << sample.name << " cut at " << length;
    }
}

TEST(VersionHostile, AFileThatClaimsMoreThanTheMediumHasReadsSafely) {
    for (const auto& sample : samples()) {
        for (size_t length = 0; length < sample.bytes.size(); length += 7) {
            BufferSource source(sample.bytes.substr(0, length));
            source.claimSize(uint64_t{1} << 40);
            ASSERT_TRUE(readsSafely(source)) << sample.name << " at " << length;
        }
    }
}

TEST(VersionHostile, AnyByteMayBeAnything) {
    for (const auto& sample : samples()) {
        auto bytes = sample.bytes;
        for (size_t at = 0; at < bytes.size(); ++at) {
            const char good = bytes[at];
            for (const int change : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
                bytes[at] = static_cast<char>(change);
                ASSERT_TRUE(readsSafely(bytes)) << sample.name << " byte " << at << " as " << change;
                bytes[at] = static_cast<char>(good ^ change);
                ASSERT_TRUE(readsSafely(bytes)) << sample.name << " byte " << at << " changed by " << change;
            }
            bytes[at] = good;
        }
    }
}

TEST(VersionHostile, AnyFourBytesMayBeHigh) {
    for (const auto& sample : samples()) {
        for (size_t at = 0; at + 4 <= sample.bytes.size(); at += 2) {
            for (const uint32_t value : {0xFFFF'FFFFU, 0x7FFF'FFFFU, 0x8000'0000U, 0xFFFF'0000U}) {
                auto bytes = sample.bytes;
                putDoubleWord(bytes, at, value);
                ASSERT_TRUE(readsSafely(bytes)) << sample.name << " at " << at;
            }
        }
    }
}

TEST(VersionHostile, WhatCanBeReadOfACutFileStays) {
    const auto file = peFile(sampleResources(wideVersion(sampleVersion())));
    const auto lastText = file.bytes.find(std::string("P\0r\0o\0d\0u\0c\0t\0V\0", 16));
    ASSERT_NE(lastText, std::string::npos);
    const auto found = readResources(BufferSource(file.bytes.substr(0, lastText)));
    EXPECT_EQ(found.icons, 3);
    EXPECT_EQ(found.version.companyName, "Northwind Shipping");
    EXPECT_EQ(found.version.productName, "Cargo  for  Ships");
    EXPECT_EQ(found.version.productVersion, "");
}

TEST(VersionHostile, DirectoriesThatLeadBackEnd) {
    auto file = peFile(sampleResources(wideVersion(sampleVersion())));
    for (size_t entry = 0; entry < 3; ++entry)
        putDoubleWord(file.bytes, file.tree + 16 + entry * 8 + 4, 0x8000'0000);
    const auto found = readResources(BufferSource(file.bytes));
    EXPECT_EQ(found.version, VersionTexts{});
    EXPECT_EQ(found.icons, 3) << "the root's own three entries";
}

TEST(VersionHostile, CountsBeyondTheFileEndWithIt) {
    auto pe = peFile(sampleResources(wideVersion(sampleVersion())));
    const size_t groups = pe.tree + 16 + 3 * 8 + 16 + 2 * 8;
    putDoubleWord(pe.bytes, groups + 12, 0xFFFF'FFFF);
    EXPECT_TRUE(readsSafely(pe.bytes));
    putDoubleWord(pe.bytes, pe.tree + 12, 0xFFFF'FFFF);
    EXPECT_TRUE(readsSafely(pe.bytes));
    putWord(pe.bytes, pe.header + 6, 0xFFFF);
    EXPECT_TRUE(readsSafely(pe.bytes));
    auto ne = neFile(sampleResources(narrowVersion(sampleVersion("040904E4"))));
    putWord(ne.bytes, ne.tree + 2 + 2, 0xFFFF);
    EXPECT_TRUE(readsSafely(ne.bytes));
}

TEST(VersionHostile, CountsInsideAHugeFileEndAtTheLimit) {
    auto pe = peFile(sampleResources(wideVersion(sampleVersion())));
    putWord(pe.bytes, pe.tree + 12, 0xFFFF);
    const size_t rawSize = pe.header + 24 + 224 + 40 + 16;
    putDoubleWord(pe.bytes, rawSize, 0x7000'0000);
    pe.bytes.resize(3'000'000, '\x0E');
    EXPECT_TRUE(readsSafely(pe.bytes));
    auto ne = neFile({});
    for (int block = 0; block < 30'000; ++block) {
        const auto place = ne.tree + 2 + static_cast<size_t>(block) * 20;
        ne.bytes.resize(std::max(ne.bytes.size(), place + 20), '\0');
        putWord(ne.bytes, place, 0x8000 | kGroupIconType);
        putWord(ne.bytes, place + 2, 1);
        putWord(ne.bytes, place + 8, 1);
        putWord(ne.bytes, place + 10, 1);
    }
    EXPECT_TRUE(readsSafely(ne.bytes));
    const BufferSource source(ne.bytes);
    EXPECT_EQ(Executable(source).icons(), ExecutableReader::kEntryLimit / 2);
}

TEST(VersionHostile, GroupsBeyondTheLimitAreNotCounted) {
    auto file = peFile(iconResources(1));
    const size_t groups = file.tree + 16 + 2 * 8 + 16 + 8;
    putWord(file.bytes, file.header + 24 + 224 + 40 + 18, 0x7000);
    file.bytes.resize(1'000'000, '\x01');
    putWord(file.bytes, groups + 14, 0xFFFF);
    for (size_t entry = 0; entry < 0xFFFF; ++entry)
        putDoubleWord(file.bytes, groups + 16 + entry * 8 + 4, 0x8000'0000);
    const BufferSource source(file.bytes);
    const auto icons = Executable(source).icons();
    EXPECT_LE(icons, ExecutableReader::kEntryLimit);
    EXPECT_GE(icons, ExecutableReader::kEntryLimit - 10);
}

TEST(VersionHostile, AVersionResourceIsNoLongerThanItCanTell) {
    auto file = peFile({{kVersionType, uint16_t{1}, wideVersion(sampleVersion())}});
    putWord(file.bytes, file.header + 24 + 224 + 40 + 18, 0x7000);
    putDoubleWord(file.bytes, file.tree + 3 * 24 + 4, 0x7FFF'FFFF);
    file.bytes.resize(3'000'000, '\0');
    const BufferSource source(file.bytes);
    EXPECT_EQ(Executable(source).versionResource().size(), 0x10000U);
    EXPECT_EQ(readResources(source).version, sampleTexts());
}

TEST(VersionHostile, BlocksEndAtTheLimit) {
    std::string resource("\xFF\xFF\0\0root\0\0\0\0", 12);
    while (resource.size() < 0x10000)
        resource += std::string("\x08\0\0\0abc\0", 8);
    VersionBlockTree tree(resource);
    const auto root = tree.root();
    ASSERT_TRUE(root);
    EXPECT_EQ(tree.children(*root).size(), 8191U);
    EXPECT_EQ(tree.children(*root).size(), VersionBlockTree::kBlockLimit - 8191U);
    EXPECT_TRUE(tree.children(*root).empty());
}

TEST(VersionHostile, LeavesAllOverAHugeFileEndAtTheLimit) {
    // Every entry leads to a leaf far from the last one, and each leaf to data that holds no version.
    auto file = peFile({{kVersionType, uint16_t{1}, "x"}});
    const size_t languages = file.tree + 2 * 24;
    putDoubleWord(file.bytes, file.header + 24 + 224 + 40 + 16, 0x7000'0000);
    file.bytes.resize(16'000'000, '\0');
    putWord(file.bytes, languages + 14, 9000);
    for (size_t entry = 0; entry < 9000; ++entry)
        putDoubleWord(file.bytes, languages + 16 + entry * 8 + 4,
                      static_cast<uint32_t>(entry * 7919 * 512 % 0xF0'0000));
    EXPECT_TRUE(readsSafely(file.bytes));
}

TEST(VersionHostile, SectionsMayLieOnEachOther) {
    auto file = peFile(sampleResources(wideVersion(sampleVersion())), {.sectionsBefore = 3});
    const size_t table = file.header + 24 + 224;
    for (size_t section = 0; section < 4; ++section) {
        putDoubleWord(file.bytes, table + section * 40 + 8, 0xFFFF'FFFF);
        putDoubleWord(file.bytes, table + section * 40 + 12, 0);
    }
    EXPECT_TRUE(readsSafely(file.bytes));
    putDoubleWord(file.bytes, table + 16, 0xFFFF'FFFF);
    putDoubleWord(file.bytes, table + 20, 0xFFFF'FFFF);
    EXPECT_TRUE(readsSafely(file.bytes));
}

TEST(VersionHostile, AnImpossibleShiftGivesNothing) {
    for (const uint16_t shift : {17, 64, 255, 0x8000, 0xFFFF}) {
        auto file = neFile(sampleResources(narrowVersion(sampleVersion("040904E4"))));
        putWord(file.bytes, file.tree, shift);
        const auto found = readResources(BufferSource(file.bytes));
        EXPECT_EQ(found.icons, 0) << shift;
        EXPECT_EQ(found.version, VersionTexts{}) << shift;
    }
}

TEST(VersionHostile, ANewHeaderAnywhereReadsSafely) {
    for (const auto& sample : samples()) {
        for (uint32_t place = 0; sample.executable && place < sample.bytes.size(); place += 2) {
            auto bytes = sample.bytes;
            putDoubleWord(bytes, 0x3C, place);
            ASSERT_TRUE(readsSafely(bytes)) << sample.name << " at " << place;
        }
    }
}

TEST(VersionHostile, BlocksThatShareTheirChildrenEnd) {
    // Thousands of tables, each telling a value so long that all have the same children: one long blank text.
    VersionContent content;
    for (int table = 0; table < 800; ++table)
        content.tables.push_back({"04090000", {}});
    content.tables.push_back({"04090000", {{"CompanyName", std::string(20'000, ' ')}}});
    for (const uint16_t reach : {uint16_t{0}, uint16_t{4}, uint16_t{20'000}, uint16_t{60'000}, uint16_t{0xFFFF}}) {
        const VersionHabits habits{.tableLengthError = 30'000, .tableValueLength = reach};
        EXPECT_TRUE(isSound(versionTexts(narrowVersion(content, habits)))) << reach;
        EXPECT_TRUE(isSound(versionTexts(wideVersion(content, habits)))) << reach;
    }
}

TEST(VersionHostile, ResourcesOfOneByteOverAndOverEnd) {
    for (int value = 0; value < 256; ++value)
        EXPECT_EQ(versionTexts(std::string(65'536, static_cast<char>(value))), VersionTexts{}) << value;
}

TEST(VersionHostile, ACutResourceReadsSafely) {
    for (const auto& whole : {wideVersion(sampleVersion()), narrowVersion(sampleVersion("040403B6"))}) {
        for (size_t length = 0; length < whole.size(); ++length)
            ASSERT_TRUE(isSound(versionTexts(std::string_view(whole).substr(0, length)))) << length;
    }
}

} // namespace

} // namespace discaro::disc

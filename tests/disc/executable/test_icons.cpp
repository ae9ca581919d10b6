#include "disc/executable/Executable.h"
#include "support/BufferSource.h"
#include "support/ExecutableBuilder.h"

#include <gtest/gtest.h>

namespace discaro::disc {

namespace {

using namespace discaro::test;

int64_t iconsOf(const std::string& file) {
    const BufferSource source(file);
    return Executable(source).icons();
}

TEST(IconCount, OfA32Or64BitExecutableIsItsIconGroups) {
    for (const int count : {0, 1, 2, 17, 300}) {
        EXPECT_EQ(iconsOf(peFile(iconResources(count)).bytes), count);
        EXPECT_EQ(iconsOf(peFile(iconResources(count), {.wide = true}).bytes), count);
    }
}

TEST(IconCount, OfA16BitExecutableIsItsIconGroups) {
    for (const int count : {0, 1, 2, 17, 300})
        EXPECT_EQ(iconsOf(neFile(iconResources(count)).bytes), count);
}

TEST(IconCount, CountsNamedGroupsToo) {
    auto resources = iconResources(2);
    resources.push_back({kGroupIconType, std::string("MAINICON"), "group"});
    EXPECT_EQ(iconsOf(peFile(resources).bytes), 3);
    EXPECT_EQ(iconsOf(neFile(resources).bytes), 3);
}

TEST(IconCount, CountsAGroupOnceHoweverManyLanguagesItHas) {
    auto resources = iconResources(2);
    resources.push_back({kGroupIconType, uint16_t{1}, "gruppe", 0x407});
    resources.push_back({kGroupIconType, uint16_t{1}, "groupe", 0x40C});
    EXPECT_EQ(iconsOf(peFile(resources).bytes), 2);
}

TEST(IconCount, DoesNotCountPicturesCursorsOrOtherResources) {
    const std::vector<Resource> resources = {{kIconType, uint16_t{1}, "picture"},
                                             {uint16_t{12}, uint16_t{1}, "cursors"},
                                             {std::string("14"), uint16_t{1}, "a type named by a text"},
                                             {kVersionType, uint16_t{1}, "version"}};
    EXPECT_EQ(iconsOf(peFile(resources).bytes), 0);
    EXPECT_EQ(iconsOf(neFile(resources).bytes), 0);
}

TEST(IconCount, DoesNotTakeATextForATypesNumber) {
    auto file = peFile({{kGroupIconType, uint16_t{1}, "group"}});
    putDoubleWord(file.bytes, file.tree + 16, 0x8000'0000 | kGroupIconType);
    EXPECT_EQ(iconsOf(file.bytes), 0);
}

TEST(IconCount, OfA16BitFileAddsUpBlocksOfTheSameType) {
    auto file = neFile({{kGroupIconType, uint16_t{1}, "one"}, {uint16_t{5}, uint16_t{1}, "dialog"}});
    putWord(file.bytes, file.tree + 2 + 8 + 12, 0x8000 | kGroupIconType);
    EXPECT_EQ(iconsOf(file.bytes), 2);
}

TEST(IconCount, OfAnExecutableWithoutResourcesIsZero) {
    EXPECT_EQ(iconsOf(peFile({}).bytes), 0);
    EXPECT_EQ(iconsOf(neFile({}).bytes), 0);
}

TEST(IconCount, OfAProgramForTheTimeBeforeWindowsIsZero) {
    EXPECT_EQ(iconsOf(stubFile()), 0);
    EXPECT_EQ(iconsOf(stubFile(0x40)), 0);
    EXPECT_EQ(iconsOf("MZ"), 0);
    auto linear = stubFile();
    putDoubleWord(linear, 0x3C, 0x40);
    linear.replace(0x40, 2, "LE");
    EXPECT_EQ(iconsOf(linear), 0);
}

TEST(IconCount, OfAnIconOrCursorFileIsOne) {
    for (const int pictures : {1, 2, 9, 64}) {
        EXPECT_EQ(iconsOf(iconFile(IconFileKind::Icon, pictures)), 1);
        EXPECT_EQ(iconsOf(iconFile(IconFileKind::Cursor, pictures)), 1);
    }
}

TEST(IconCount, OfAnIconFileThatIsNotOneIsZero) {
    const auto good = iconFile(IconFileKind::Icon, 2);
    const auto patched = [&](size_t offset, uint16_t value) {
        auto bytes = good;
        putWord(bytes, offset, value);
        return iconsOf(bytes);
    };
    EXPECT_EQ(patched(0, 1), 0) << "the reserved word";
    EXPECT_EQ(patched(2, 0), 0) << "the kind";
    EXPECT_EQ(patched(2, 3), 0) << "the kind";
    EXPECT_EQ(patched(4, 0), 0) << "no picture";
    EXPECT_EQ(patched(4, 3), 0) << "more pictures than the list has room for";
    EXPECT_EQ(patched(4, 0xFFFF), 0) << "more pictures than the file has room for";
    EXPECT_EQ(patched(6 + 8, 0), 0) << "a picture without bytes";
    EXPECT_EQ(patched(6 + 10, 0xFFFF), 0) << "a picture longer than the file";
    EXPECT_EQ(patched(6 + 12, 6), 0) << "a picture inside the list";
    EXPECT_EQ(patched(6 + 14, 0xFFFF), 0) << "a picture behind the file";
    EXPECT_EQ(iconsOf(good.substr(0, good.size() - 1)), 0) << "cut short";
    EXPECT_EQ(iconsOf(good.substr(0, 5)), 0);
    EXPECT_EQ(iconsOf(good), 1);
}

TEST(IconCount, OfAnyOtherFileIsZeroForOneShortRead) {
    for (const auto& bytes : {std::string("[Startup]\nAppName=Cargo\n"), std::string(5000, '\0'),
                              std::string("\x7F"
                                          "ELF"),
                              std::string(1, 'M')}) {
        const BufferSource source(bytes);
        EXPECT_EQ(Executable(source).icons(), 0);
        EXPECT_EQ(source.reads(), 1);
        EXPECT_LE(source.bytesAsked(), 64U);
    }
    EXPECT_EQ(iconsOf(""), 0);
}

TEST(IconCount, LeavesOutGroupsThatLeadOutOfTheFile) {
    auto pe = peFile(iconResources(3));
    const size_t secondGroup = pe.tree + 16 + 2 * 8 + 16 + 3 * 8 + 16 + 8;
    putDoubleWord(pe.bytes, secondGroup + 4, 0xFFFF'FFF0);
    EXPECT_EQ(iconsOf(pe.bytes), 2);
    auto ne = neFile(iconResources(3));
    const size_t firstGroup = ne.tree + 2 + 8 + 3 * 12 + 8;
    putWord(ne.bytes, firstGroup, 0xFFFF);
    EXPECT_EQ(iconsOf(ne.bytes), 2);
}

TEST(IconCount, PassesAFailureOfTheMediumOn) {
    BufferSource source(peFile(iconResources(3)).bytes);
    source.failFrom(512);
    EXPECT_THROW(Executable(source).icons(), base::RuntimeError);
}

} // namespace

} // namespace discaro::disc

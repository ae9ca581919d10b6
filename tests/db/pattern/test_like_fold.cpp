#include "base/Text.h"
#include "db/pattern/FoldBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace discaro::db::test {

namespace {

std::string encoded(char32_t codePoint) {
    const auto tail = [&](int shift) { return static_cast<char>(0x80 | (codePoint >> shift & 0x3F)); };
    if (codePoint < 0x80)
        return {static_cast<char>(codePoint)};
    if (codePoint < 0x800)
        return {static_cast<char>(0xC0 | codePoint >> 6), tail(0)};
    if (codePoint < 0x10000)
        return {static_cast<char>(0xE0 | codePoint >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | codePoint >> 18), tail(12), tail(6), tail(0)};
}

} // namespace

TEST(FoldBuffer, FoldsEveryCharacterAsComparisonsDo) {
    FoldBuffer buffer;
    for (char32_t codePoint = 0; codePoint < 0x20000; ++codePoint) {
        const std::string text = "A" + encoded(codePoint) + "B";
        buffer.fold(text);
        ASSERT_EQ(buffer.view(), base::foldedForComparison(text)) << "U+" << std::hex << uint32_t(codePoint);
    }
}

TEST(FoldBuffer, FoldsEveryCharacterBeforeAMarkAsComparisonsDo) {
    FoldBuffer buffer;
    for (const char* mark : {"\u0301", "\u3099", "\u11a8", "\u0338"})
        for (char32_t codePoint = 0; codePoint < 0x10000; ++codePoint) {
            const std::string text = encoded(codePoint) + mark;
            buffer.fold(text);
            ASSERT_EQ(buffer.view(), base::foldedForComparison(text)) << "U+" << std::hex << uint32_t(codePoint);
        }
}

TEST(FoldBuffer, FoldsMixedTextAsComparisonsDo) {
    constexpr std::array<std::pair<char32_t, char32_t>, 9> kScripts = {{{0x20, 0x7E},
                                                                        {0x80, 0x58F},
                                                                        {0x1E00, 0x1EFF},
                                                                        {0x1100, 0x11FF},
                                                                        {0x2000, 0x2130},
                                                                        {0x3000, 0x30FF},
                                                                        {0x4E00, 0x9FFF},
                                                                        {0xAC00, 0xD7A3},
                                                                        {0x300, 0x345}}};
    std::mt19937 random(3);
    FoldBuffer buffer;
    for (int round = 0; round < 50000; ++round) {
        std::string text;
        for (unsigned count = random() % 8; count > 0; --count) {
            const auto [first, last] = kScripts[random() % kScripts.size()];
            text += encoded(first + random() % (last - first + 1));
        }
        if (random() % 20 == 0)
            text += static_cast<char>(random());
        buffer.fold(text);
        ASSERT_EQ(buffer.view(), base::foldedForComparison(text)) << testing::PrintToString(text);
    }
}

TEST(FoldBuffer, BrokenTextFoldsAsComparisonsDo) {
    FoldBuffer buffer;
    for (const char* text : {"A\xC3", "A\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE2\x84", "\xED\xA0\x80",
                             "\xF5\x80\x80\x80", "\x80", "\xFFZ", "\xE3\x81"}) {
        buffer.fold(text);
        EXPECT_EQ(buffer.view(), base::foldedForComparison(text)) << testing::PrintToString(text);
    }
}

TEST(FoldBuffer, LowersAsciiOfAnyLength) {
    FoldBuffer buffer;
    std::string all;
    for (char c = 0x01; c < 0x7F; ++c)
        all += c;
    for (size_t length = 0; length <= all.size(); ++length) {
        EXPECT_TRUE(buffer.lowerAscii(std::string_view(all).substr(0, length)));
        EXPECT_EQ(buffer.view(), base::lowerAscii(std::string_view(all).substr(0, length)));
    }
}

TEST(FoldBuffer, SaysWhetherTheTextIsAscii) {
    FoldBuffer buffer;
    for (size_t place = 0; place < 30; ++place) {
        std::string text(30, 'Q');
        EXPECT_TRUE(buffer.lowerAscii(text));
        text[place] = '\xC9';
        EXPECT_FALSE(buffer.lowerAscii(text)) << place;
        EXPECT_EQ(buffer.view(), base::lowerAscii(text)) << place;
    }
}

// The search in an index relies on it: where a pattern has an ASCII character the stored text has it too.
TEST(FoldBuffer, NoCharacterOutsideAsciiFoldsToAscii) {
    FoldBuffer buffer;
    for (char32_t codePoint = 0x80; codePoint < 0x110000; ++codePoint) {
        if (codePoint >= 0xD800 && codePoint < 0xE000)
            continue;
        buffer.fold(encoded(codePoint));
        for (const char c : buffer.view())
            ASSERT_GE(static_cast<unsigned char>(c), 0x80) << "U+" << std::hex << uint32_t(codePoint);
    }
}

} // namespace discaro::db::test

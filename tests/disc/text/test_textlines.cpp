#include "base/Text.h"
#include "disc/text/TextLines.h"
#include "support/BufferSource.h"

#include <gtest/gtest.h>

namespace discaro::disc {

namespace {

using namespace std::string_literals;
using test::BufferSource;
using Lines = std::vector<std::string>;

Lines linesOf(const std::string& bytes, size_t limit = kTextLimit) {
    return readTextLines(BufferSource(bytes), limit);
}

// ASCII text with two bytes for each character.
std::string utf16(std::string_view text, bool bigEndian = false) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text)
        bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

TEST(TextLines, EndWithAnyOfTheThreeLineEnds) {
    EXPECT_EQ(linesOf("one\r\ntwo\nthree\rfour"), (Lines{"one", "two", "three", "four"}));
}

TEST(TextLines, CountALastLineWithoutAnEndOnceAndNoEmptyOneBehindAnEnd) {
    EXPECT_EQ(linesOf("one\ntwo"), (Lines{"one", "two"}));
    EXPECT_EQ(linesOf("one\ntwo\n"), (Lines{"one", "two"}));
    EXPECT_EQ(linesOf("one\r\n"), (Lines{"one"}));
}

TEST(TextLines, KeepEmptyLines) {
    EXPECT_EQ(linesOf("\n"), (Lines{""}));
    EXPECT_EQ(linesOf("\r\n\r\n"), (Lines{"", ""}));
    EXPECT_EQ(linesOf("\r\r\n\n"), (Lines{"", "", ""}));
    EXPECT_EQ(linesOf("[autorun]\r\n\r\nopen=setup.exe\r\n"), (Lines{"[autorun]", "", "open=setup.exe"}));
}

TEST(TextLines, OfAnEmptyFileAreNone) {
    EXPECT_EQ(linesOf(""), Lines{});
    EXPECT_EQ(linesOf("\xEF\xBB\xBF"), Lines{});
    EXPECT_EQ(linesOf("\xFF\xFE"), Lines{});
    EXPECT_EQ(linesOf("\x1A"), Lines{});
}

TEST(TextLines, KeepBlanksAndNuls) {
    EXPECT_EQ(linesOf("  one \t\n\0two\0\n"s), (Lines{"  one \t", "\0two\0"s}));
}

TEST(TextLines, EndAtTheEndMarkOfOldFiles) {
    EXPECT_EQ(linesOf("one\r\ntwo\r\n\x1Athree\r\n"), (Lines{"one", "two"}));
    EXPECT_EQ(linesOf("one\r\ntw\x1Ao\r\nthree"), (Lines{"one", "tw"}));
    EXPECT_EQ(linesOf(utf16("one\r\n\x1Atwo")), (Lines{"one"}));
}

TEST(TextLines, AreUtf8OrWindows1252LineByLine) {
    EXPECT_EQ(linesOf("Gr\xC3\xBC\xC3\x9F\x65\nGr\xFC\xDF\x65\n\x80\n"), (Lines{"Grüße", "Grüße", "€"}));
}

TEST(TextLines, BehindAByteOrderMarkAreInItsEncoding) {
    EXPECT_EQ(linesOf("\xEF\xBB\xBFone\r\ntwo"), (Lines{"one", "two"}));
    EXPECT_EQ(linesOf(utf16("one\r\n\r\ntwo\rthree\n")), (Lines{"one", "", "two", "three"}));
    EXPECT_EQ(linesOf(utf16("one\r\n\r\ntwo\rthree\n", true)), (Lines{"one", "", "two", "three"}));
    EXPECT_EQ(linesOf("\xFF\xFE\xFC\x00\x3D\xD8\xBF\xDC\x0A\x00"s), (Lines{"\u00FC\U0001F4BF"}));
}

TEST(TextLines, OfUtf16AreNotEndedByBytesThatOnlyLookLikeAnEnd) {
    EXPECT_EQ(linesOf("\xFF\xFE\x0A\x01\x1A\x01\x0D\x0A"s), (Lines{"\u010A\u011A\u0A0D"}));
}

TEST(TextLines, OfUtf16LoseAnOddLastByte) {
    EXPECT_EQ(linesOf(utf16("one") + "x"), (Lines{"one"}));
}

TEST(TextLines, AreTheSameWhereverThePartsOfALongFileMeet) {
    for (size_t length = 8180; length < 8200; ++length) {
        const std::string first(length, 'a');
        EXPECT_EQ(linesOf(first + "\r\nsecond\r\n"), (Lines{first, "second"})) << length;
        EXPECT_EQ(linesOf(first + "\xC3\xBC\nsecond"), (Lines{first + "ü", "second"})) << length;
        EXPECT_EQ(linesOf(utf16(first + "\r\nsecond")), (Lines{first, "second"})) << length;
    }
}

TEST(TextLines, StopAtTheLimit) {
    EXPECT_EQ(linesOf("one\ntwo\nthree\n", 9), (Lines{"one", "two", "t"}));
    EXPECT_EQ(linesOf("one\ntwo\nthree\n", 8), (Lines{"one", "two"}));
    EXPECT_EQ(linesOf("one\ntwo\nthree\n", 0), Lines{});
}

TEST(TextLines, AreCutAtAWholeCharacterByTheLimit) {
    const auto text = "a\u00FC\u20AC\U0001F4BF!"s; // of 1, 2, 3, 4 and 1 bytes
    const std::vector<std::string> cut = {"a", "a", "aü", "aü", "aü", "aü€", "aü€", "aü€", "aü€", "aü€\U0001F4BF"};
    for (size_t limit = 1; limit <= cut.size(); ++limit)
        EXPECT_EQ(linesOf(text, limit), Lines{cut[limit - 1]}) << limit;
    EXPECT_EQ(linesOf("Gr\xFC\xDF\x65", 4), (Lines{"Grüß"}));
}

TEST(TextLines, OfAFileThatEndsInsideACharacterAreWindows1252) {
    EXPECT_EQ(linesOf("caf\xC3"), (Lines{"cafÃ"}));
    EXPECT_EQ(linesOf("caf\xC3\x1A beyond the mark and the limit", 6), (Lines{"cafÃ"}));
}

TEST(TextLines, OfALongFileCostOnlyTheLimit) {
    BufferSource source(std::string(3'000'000, 'x'));
    source.claimSize(uint64_t{1} << 40);
    const auto lines = readTextLines(source);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].size(), kTextLimit);
    EXPECT_LE(source.bytesAsked(), kTextLimit);
}

TEST(TextLines, OfAFileShorterThanItClaimsAreThoseThatAreThere) {
    BufferSource source("one\ntwo");
    source.claimSize(5000);
    EXPECT_EQ(readTextLines(source), (Lines{"one", "two"}));
}

TEST(TextLines, BeforeADamageHaveBeenGivenWhenItIsReported) {
    std::string bytes;
    for (int line = 0; line < 2000; ++line)
        bytes += "line " + std::to_string(line) + "\r\n";
    BufferSource source(bytes);
    source.failFrom(9000);
    Lines lines;
    EXPECT_THROW(readTextLines(source, kTextLimit, [&](std::string_view line) { lines.emplace_back(line); }),
                 base::RuntimeError);
    ASSERT_GT(lines.size(), 700U);
    EXPECT_EQ(lines.back(), "line " + std::to_string(lines.size() - 1));
}

TEST(TextLines, CanBeTakenOneByOne) {
    const BufferSource source("one\ntwo");
    TextLineReader reader(source);
    EXPECT_EQ(reader.next(), "one");
    EXPECT_EQ(reader.next(), "two");
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST(TextLines, BehindTheEndMarkStayAway) {
    const BufferSource source("one\x1Atwo\nthree");
    TextLineReader reader(source);
    EXPECT_EQ(reader.next(), "one");
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST(TextLines, AreWellFormedWhateverTheBytes) {
    unsigned state = 7;
    for (const auto* mark : {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        for (int round = 0; round < 300; ++round) {
            std::string bytes = mark;
            for (int count = 0; count < 200; ++count)
                bytes += static_cast<char>((state = state * 1664525U + 1013904223U) >> 24);
            for (const auto& line : linesOf(bytes, 150))
                ASSERT_TRUE(base::isValidUtf8(line));
        }
    }
}

} // namespace

} // namespace discaro::disc

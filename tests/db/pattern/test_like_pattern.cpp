#include "base/Text.h"
#include "db/pattern/LikePattern.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace discaro::db::test {

namespace {

bool matches(std::string_view pattern, std::string_view text) {
    return LikePattern(pattern).matches(text);
}

// Bytes of the character that folded text begins with.
size_t firstLength(std::string_view text) {
    for (size_t length = 2; length <= 4 && length <= text.size(); ++length) {
        const bool lone = base::isValidUtf8(text.substr(0, 1));
        if (!lone && base::isValidUtf8(text.substr(0, length)))
            return length;
    }
    return 1;
}

// The definition, as slow as it is plain; both sides folded.
bool defined(std::string_view pattern, std::string_view text) {
    if (pattern.empty())
        return text.empty();
    if (pattern[0] == '*')
        return defined(pattern.substr(1), text) || (!text.empty() && defined(pattern, text.substr(firstLength(text))));
    if (text.empty())
        return false;
    if (pattern[0] == '?')
        return defined(pattern.substr(1), text.substr(firstLength(text)));
    const bool same = pattern[0] == '#' ? text[0] >= '0' && text[0] <= '9' : pattern[0] == text[0];
    return same && defined(pattern.substr(1), text.substr(1));
}

// Whether folded text begins with a part that holds no *.
bool beginsWith(std::string_view part, std::string_view text) {
    for (const char c : part) {
        if (text.empty() || (c == '#' && (text[0] < '0' || text[0] > '9')))
            return false;
        if (c != '?' && c != '#' && c != text[0])
            return false;
        text.remove_prefix(c == '?' ? firstLength(text) : 1);
    }
    return true;
}

std::string repeated(std::string_view piece, int times) {
    std::string text;
    for (; times > 0; --times)
        text += piece;
    return text;
}

bool definedUnfolded(std::string_view pattern, std::string_view text) {
    return defined(base::foldedForComparison(pattern), base::foldedForComparison(text));
}

template <size_t N>
std::string randomText(std::mt19937& random, const std::array<std::string_view, N>& pieces, unsigned most) {
    std::string text;
    for (unsigned count = random() % (most + 1); count > 0; --count)
        text += pieces[random() % N];
    return text;
}

} // namespace

TEST(LikePattern, WithoutWildcardsItIsEqualityWithoutCase) {
    EXPECT_TRUE(matches("readme.txt", "README.TXT"));
    EXPECT_TRUE(matches("README.TXT", "readme.txt"));
    EXPECT_FALSE(matches("readme", "readme.txt"));
    EXPECT_FALSE(matches("readme.txt", "readme"));
    EXPECT_TRUE(matches("", ""));
    EXPECT_FALSE(matches("", "a"));
    EXPECT_FALSE(matches("a", ""));
}

TEST(LikePattern, AStarIsAnyRun) {
    for (const char* pattern : {"*", "**", "r*", "*t", "*adme*", "read*txt", "*r*e*a*d*", "readme.txt*", "*readme.txt"})
        EXPECT_TRUE(matches(pattern, "README.TXT")) << pattern;
    for (const char* pattern : {"x*", "*x", "*admx*", "read*tx", "readme.txt*t", "*d*a*e*r*", "eadme*", "*readme"})
        EXPECT_FALSE(matches(pattern, "README.TXT")) << pattern;
    EXPECT_TRUE(matches("*", ""));
    EXPECT_FALSE(matches("*a", ""));
}

TEST(LikePattern, EndsDoNotOverlap) {
    EXPECT_FALSE(matches("aba*ba", "aba"));
    EXPECT_TRUE(matches("aba*ba", "ababa"));
    EXPECT_FALSE(matches("a*b*ab", "ab"));
    EXPECT_FALSE(matches("ab*b", "ab"));
    EXPECT_FALSE(matches("a?*?b", "axb"));
    EXPECT_TRUE(matches("a?*?b", "axyb"));
}

TEST(LikePattern, AQuestionMarkIsOneCharacter) {
    EXPECT_TRUE(matches("?:\\", "D:\\"));
    EXPECT_FALSE(matches("?:\\", "D:\\data"));
    EXPECT_FALSE(matches("?:\\", ":\\"));
    EXPECT_TRUE(matches("caf?", "caf\u00e9"));
    EXPECT_TRUE(matches("caf?", "cafe\u0301"));
    EXPECT_TRUE(matches("?", "\u65e5"));
    EXPECT_TRUE(matches("?", "\U0001F4BF"));
    EXPECT_FALSE(matches("??", "\U0001F4BF"));
    EXPECT_TRUE(matches("?", "\xFF"));
    EXPECT_TRUE(matches("??", "\xE2\x84"));
    EXPECT_TRUE(matches("*?", "x\u65e5"));
    EXPECT_FALSE(matches("?", ""));
}

TEST(LikePattern, ANumberSignIsOneDigit) {
    EXPECT_TRUE(matches("img_##.jpg", "IMG_07.JPG"));
    EXPECT_FALSE(matches("img_##.jpg", "IMG_7.JPG"));
    EXPECT_FALSE(matches("#", "x"));
    EXPECT_FALSE(matches("#", "\u0663"));
    EXPECT_FALSE(matches("#", "\uFF13"));
    EXPECT_TRUE(matches("*#", "disc 2"));
    EXPECT_TRUE(matches("*#*", "win95b"));
    EXPECT_FALSE(matches("*#*", "win"));
}

TEST(LikePattern, NothingElseIsSpecial) {
    EXPECT_TRUE(matches("[a-z]*", "[A-Z] list"));
    EXPECT_FALSE(matches("[a-z]", "q"));
    EXPECT_TRUE(matches("100%_!^\\", "100%_!^\\"));
    EXPECT_FALSE(matches("%", "x"));
    EXPECT_FALSE(matches("_", "x"));
    EXPECT_TRUE(matches("a.c", "A.C"));
    EXPECT_FALSE(matches("a.c", "abc"));
}

TEST(LikePattern, CaseIsFoldedInEveryScript) {
    EXPECT_TRUE(matches("*ОТЧЁТ*", "Годовой отчёт.doc"));
    EXPECT_TRUE(matches("ÅRSRAPPORT", "årsrapport"));
    EXPECT_TRUE(matches("ΑΒΓ*", "αβγδ"));
    EXPECT_FALSE(matches("отчет", "отчёт"));
    EXPECT_FALSE(matches("strasse", "straße"));
}

TEST(LikePattern, ComposedAndDecomposedAreTheSame) {
    EXPECT_TRUE(matches("*caf\u00e9*", "Le Cafe\u0301 noir"));
    EXPECT_TRUE(matches("*cafe\u0301*", "Le CAF\u00c9 noir"));
    EXPECT_TRUE(matches("\uac01", "\u1100\u1161\u11a8"));
    EXPECT_FALSE(matches("cafe", "cafe\u0301"));
    EXPECT_FALSE(matches("cafe*", "cafe\u0301s"));
    EXPECT_TRUE(matches("*e\u0301", "\u00e9"));
}

TEST(LikePattern, SignsThatOnlyLookLikeAsciiAreSignsOfTheirOwn) {
    EXPECT_FALSE(matches("300 k", "300 \u212A"));
    EXPECT_FALSE(matches("*k*", "300 \u212A."));
    EXPECT_FALSE(matches("a;b", "a\u037Eb"));
    EXPECT_FALSE(matches("`*", "\u1FEFx"));
    EXPECT_FALSE(matches("\u212A*", "kiosk"));
    EXPECT_TRUE(matches("300 ?", "300 \u212A"));
    EXPECT_TRUE(matches("*\u212A\u0327\u0301", "\u212A\u0301\u0327"));
}

TEST(LikePattern, BrokenTextIsComparedByByte) {
    EXPECT_TRUE(matches("a\xFF*", "A\xFF\xFE"));
    EXPECT_FALSE(matches("a\xFF", "a\xFE"));
    EXPECT_TRUE(matches("*b*", "\xC3(b"));
    EXPECT_TRUE(matches(std::string_view("a\0b*", 4), std::string_view("A\0Bc", 4)));
    EXPECT_FALSE(matches(std::string_view("a\0b", 3), std::string_view("a\0c", 3)));
}

TEST(LikePattern, OnePatternServesManyTexts) {
    LikePattern pattern("*TEXT*");
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(pattern.matches("context.txt"));
        EXPECT_FALSE(pattern.matches("contents"));
        EXPECT_TRUE(pattern.matches(std::string(10000, 'x') + "tExT" + std::string(10000, '\n')));
        EXPECT_FALSE(pattern.matches(std::string(100000, 't')));
        EXPECT_TRUE(pattern.matches("\u00fcbertext"));
        EXPECT_FALSE(pattern.matches("\u00fcberte\u0301xt"));
        EXPECT_FALSE(pattern.matches(""));
    }
}

TEST(LikePattern, MatchesAsDefinedInEveryLength) {
    for (size_t before = 0; before < 40; ++before)
        for (size_t behind = 0; behind < 20; ++behind) {
            const std::string text = std::string(before, '-') + "Z@A" + std::string(behind, '[');
            EXPECT_TRUE(matches("*z@a*", text)) << text;
            EXPECT_FALSE(matches("*z`a*", text)) << text;
            EXPECT_EQ(matches("-*z@a[*[", text), before > 0 && behind > 1) << text;
        }
}

TEST(LikePattern, MatchesAsDefinedForAsciiText) {
    constexpr std::array<std::string_view, 8> kPattern = {"a", "b", "ab", "*", "*", "?", "#", "1"};
    constexpr std::array<std::string_view, 6> kText = {"a", "B", "A", "b", "1", "2"};
    std::mt19937 random(1);
    size_t matching = 0;
    for (int round = 0; round < 100000; ++round) {
        const std::string pattern = randomText(random, kPattern, 7);
        const std::string text = randomText(random, kText, 9);
        const bool expected = definedUnfolded(pattern, text);
        matching += expected ? 1 : 0;
        ASSERT_EQ(matches(pattern, text), expected) << pattern << " like " << text;
    }
    EXPECT_GT(matching, 5000U);
}

TEST(LikePattern, MatchesAsDefinedForAnyText) {
    constexpr std::array<std::string_view, 20> kPieces = {
        "a",      "K",      "k",      ";",      "1",      "\u212A", "\u0301", "\u0323", "\u00e9", "e",
        "\u0416", "\u0436", "\u65e5", "\u304b", "\u3099", "\uac00", "\u11a8", "\xFF",   "\xC3",   "\u1e69"};
    constexpr std::array<std::string_view, 10> kWild = {"*", "*", "*", "?", "#", "a", "e", "k", "\u00e9", "\u0301"};
    std::mt19937 random(2);
    size_t matching = 0;
    for (int round = 0; round < 100000; ++round) {
        const std::string text = randomText(random, kPieces, 6);
        std::string pattern = randomText(random, kWild, 3);
        pattern += random() % 2 == 0 ? text : randomText(random, kPieces, 3);
        pattern += randomText(random, kWild, 2);
        const bool expected = definedUnfolded(pattern, text);
        matching += expected ? 1 : 0;
        ASSERT_EQ(matches(pattern, text), expected)
            << testing::PrintToString(pattern) << " like " << testing::PrintToString(text);
    }
    EXPECT_GT(matching, 5000U);
}

TEST(LikePattern, ManyStarsDoNotMultiplyTheWork) {
    std::string pattern;
    for (int count = 0; count < 5000; ++count)
        pattern += "*a";
    const std::string text(60000, 'a');
    EXPECT_TRUE(matches(pattern + "*", text));
    EXPECT_FALSE(matches(pattern + "*b", text));
    EXPECT_FALSE(matches(pattern + "*b*", text));
}

TEST(LikePattern, LongPartsWithWildcardsMatchAsDefined) {
    constexpr std::array<std::string_view, 7> kPattern = {"a", "a", "b", "?", "?", "#", "\u00e9"};
    constexpr std::array<std::string_view, 8> kText = {"a", "a", "a", "b", "1", "\u00e9", "\u65e5", "\xC3"};
    std::mt19937 random(4);
    size_t matching = 0;
    for (int round = 0; round < 600; ++round) {
        std::string text;
        while (text.size() < 700)
            text += kText[random() % kText.size()];
        // Cut from the text and made vague, so that it is found about as often as not.
        std::string part = randomText(random, kPattern, 3);
        size_t place = random() % 600;
        while ((static_cast<unsigned char>(text[place]) & 0xC0) == 0x80)
            ++place;
        for (const size_t end = place + random() % 150; place < end && place < text.size();) {
            const size_t length = firstLength(std::string_view(text).substr(place));
            part += random() % 3 == 0 ? "?" : text.substr(place, length);
            place += length;
        }
        const std::string pattern = "*" + part + "*";
        bool expected = false;
        const std::string folded = base::foldedForComparison(text);
        for (size_t at = 0; at < folded.size() && !expected; at += firstLength(std::string_view(folded).substr(at)))
            expected = beginsWith(base::foldedForComparison(part), std::string_view(folded).substr(at));
        matching += expected ? 1 : 0;
        ASSERT_EQ(matches(pattern, text), expected) << pattern << " like " << text;
    }
    EXPECT_GT(matching, 60U);
    EXPECT_LT(matching, 540U);
}

// These would take minutes if every place were tried by itself.
TEST(LikePattern, NoPatternMultipliesTheWork) {
    const std::string text(1 << 20, 'a');
    const std::string other = repeated("\u0439", 1 << 19);
    const std::string wild(10000, '?');
    const std::string as(5000, 'a');
    for (const std::string& pattern :
         {"*" + wild + "b*", "*" + wild + "#*", "*b" + wild + "*", "*" + as + "?" + as + "b*",
          "*" + as + "#" + as + "*", "*" + repeated("a?", 5000) + "b*", "*" + repeated("?a", 5000) + "#*",
          "*" + repeated("a?*", 3000) + "b?*", "*" + repeated("\u0439?", 3000) + "b*"}) {
        EXPECT_FALSE(matches(pattern, text)) << pattern.substr(0, 20);
        EXPECT_FALSE(matches(pattern, other)) << pattern.substr(0, 20);
    }
    EXPECT_TRUE(matches("*" + wild + "*", text));
    EXPECT_TRUE(matches("*" + wild + "a*", text));
    EXPECT_TRUE(matches("*" + as + "?" + as + "*", text));
    EXPECT_TRUE(matches("*" + repeated("?\u0439", 3000) + "*", other));
}

TEST(LikePattern, APatternLongerThanTheTextIsNotTried) {
    LikePattern pattern("*" + std::string(16 << 20, 'a') + "?*");
    for (int round = 0; round < 1000000; ++round)
        ASSERT_FALSE(pattern.matches("a file's name.txt"));
    EXPECT_TRUE(matches("*\u0958?*", "\u0958\u0958")) << "folding makes this text longer";
}

TEST(LikePattern, OfALongTextNothingIsFoundBehindItsEnd) {
    LikePattern twice("*zz*zz*");
    EXPECT_TRUE(twice.matches("zz" + std::string(800, 'x') + "zz"));
    EXPECT_FALSE(twice.matches(std::string(100, 'x') + "zz" + std::string(650, 'x')));
}

TEST(LikeShape, TheHeadEndsAtTheFirstWildcard) {
    const LikeShape prefix = likeShape("C12D1S*");
    EXPECT_EQ(prefix.head, "c12d1s");
    EXPECT_EQ(prefix.asciiHead, 6U);
    EXPECT_EQ(prefix.rest, LikeShape::Rest::Anything);
    EXPECT_EQ(likeShape("abc").rest, LikeShape::Rest::Nothing);
    EXPECT_EQ(likeShape("abc**").rest, LikeShape::Rest::Anything);
    EXPECT_EQ(likeShape("abc*d").rest, LikeShape::Rest::Pattern);
    EXPECT_EQ(likeShape("abc?").rest, LikeShape::Rest::Pattern);
    EXPECT_EQ(likeShape("*abc").head, "");
    EXPECT_EQ(likeShape("").rest, LikeShape::Rest::Nothing);
}

TEST(LikeShape, TheAsciiHeadStopsBeforeALetterThatComposes) {
    EXPECT_EQ(likeShape("caf\u00e9*").asciiHead, 3U);
    EXPECT_EQ(likeShape("cafe\u0301*").asciiHead, 3U);
    EXPECT_EQ(likeShape(std::string_view("ab\0c", 4)).asciiHead, 2U);
    EXPECT_EQ(likeShape("300\u212A").asciiHead, 3U);
}

} // namespace discaro::db::test

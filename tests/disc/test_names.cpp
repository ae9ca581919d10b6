#include "base/Text.h"
#include "disc/Names.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace discaro::disc {
namespace {

TEST(Names, OrdinaryNamesAreShownAsTheyAre) {
    EXPECT_EQ(shownName("README.TXT"), "README.TXT");
    EXPECT_EQ(shownName("long name, with blanks.txt "), "long name, with blanks.txt ");
    EXPECT_EQ(shownName("...hidden"), "...hidden");
}

TEST(Names, Utf8NamesKeepTheirBytesDecomposedOnesToo) {
    EXPECT_EQ(shownName("Übung 漢字 🎵"), "Übung 漢字 🎵");
    EXPECT_EQ(shownName("U\xCC\x88"
                        "bung"),
              "U\xCC\x88"
              "bung");
}

TEST(Names, BytesThatAreNotUtf8ReadAsWindows1252) {
    EXPECT_EQ(shownName("\xDC"
                        "bung \x80"),
              "Übung €");
}

TEST(Names, EveryByteValueGivesValidUtf8WithoutABackslash) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto name = shownName(std::string(1, static_cast<char>(byte)));
        EXPECT_FALSE(name.empty()) << byte;
        EXPECT_TRUE(base::isValidUtf8(name)) << byte;
        EXPECT_EQ(name.find_first_of("\\/\0"sv), std::string::npos) << byte;
    }
}

TEST(Names, SeparatorsAndNulBecomeCharactersThatAreNone) {
    EXPECT_EQ(shownName("a\\b"), "a\uFF3Cb");
    EXPECT_EQ(shownName("a/b"), "a\uFF0Fb");
    EXPECT_EQ(shownName("a\0b"sv), "a\uFFFDb");
    EXPECT_EQ(shownName("\xDC\\"), "Ü\uFF3C");
}

TEST(Names, NamesThatMeanAPlaceCannotBeMistakenForOne) {
    EXPECT_EQ(shownName("."), "\uFF0E");
    EXPECT_EQ(shownName(".."), "\uFF0E\uFF0E");
    EXPECT_EQ(shownName("../.."), "..\uFF0F..");
}

TEST(Names, AnEmptyNameIsShownAsAReplacementCharacter) {
    EXPECT_EQ(shownName(""), "\uFFFD");
}

TEST(Names, TheVersionIsCut) {
    EXPECT_EQ(withoutVersion("A.TXT;1"), "A.TXT");
    EXPECT_EQ(withoutVersion("A.TXT;32767"), "A.TXT");
    EXPECT_EQ(withoutVersion("a;b;2"), "a;b");
}

TEST(Names, APathOfTheComputerKeepsItsSlashesAndReadsAsText) {
    EXPECT_EQ(shownPath("/home/anna/my disc.iso"), "/home/anna/my disc.iso");
    EXPECT_EQ(shownPath("/home/\xDC"
                        "bung/a\\b"),
              "/home/Übung/a\\b");
    EXPECT_EQ(shownPath(""), "");
}

TEST(Names, ASemicolonThatBeginsNoVersionStays) {
    EXPECT_EQ(withoutVersion("A;TXT"), "A;TXT");
    EXPECT_EQ(withoutVersion("A;"), "A;");
    EXPECT_EQ(withoutVersion("A;1x"), "A;1x");
    EXPECT_EQ(withoutVersion(";1"), ";1");
    EXPECT_EQ(withoutVersion(""), "");
}

TEST(Names, APlainIdentifierLosesItsVersionThenOneStop) {
    EXPECT_EQ(plainIsoName("README.;1"), "README");
    EXPECT_EQ(plainIsoName("README..;1"), "README.");
    EXPECT_EQ(plainIsoName("README."), "README");
    EXPECT_EQ(plainIsoName("Mixed.Case;1"), "Mixed.Case");
    EXPECT_EQ(plainIsoName(".;1"), ".");
    EXPECT_EQ(plainIsoName("."), ".");
}

} // namespace
} // namespace discaro::disc

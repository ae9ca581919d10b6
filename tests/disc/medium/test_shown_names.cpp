#include "base/Text.h"
#include "disc/medium/ShownNames.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace discaro::disc {
namespace {

TEST(ShownNames, OrdinaryNamesAreShownAsTheyAre) {
    EXPECT_EQ(shownName("README.TXT"), "README.TXT");
    EXPECT_EQ(shownName("long name, with blanks.txt "), "long name, with blanks.txt ");
    EXPECT_EQ(shownName("...hidden"), "...hidden");
}

TEST(ShownNames, Utf8NamesKeepTheirBytesDecomposedOnesToo) {
    EXPECT_EQ(shownName("Übung 漢字 🎵"), "Übung 漢字 🎵");
    EXPECT_EQ(shownName("U\xCC\x88"
                        "bung"),
              "U\xCC\x88"
              "bung");
}

TEST(ShownNames, BytesThatAreNotUtf8ReadAsWindows1252) {
    EXPECT_EQ(shownName("\xDC"
                        "bung \x80"),
              "Übung €");
}

TEST(ShownNames, EveryByteValueGivesValidUtf8WithoutABackslash) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto name = shownName(std::string(1, static_cast<char>(byte)));
        EXPECT_FALSE(name.empty()) << byte;
        EXPECT_TRUE(base::isValidUtf8(name)) << byte;
        EXPECT_EQ(name.find_first_of("\\/\0"sv), std::string::npos) << byte;
    }
}

TEST(ShownNames, SeparatorsAndNulBecomeCharactersThatAreNone) {
    EXPECT_EQ(shownName("a\\b"), "a\uFF3Cb");
    EXPECT_EQ(shownName("a/b"), "a\uFF0Fb");
    EXPECT_EQ(shownName("a\0b"sv), "a\uFFFDb");
    EXPECT_EQ(shownName("\xDC\\"), "Ü\uFF3C");
}

TEST(ShownNames, NamesThatMeanAPlaceCannotBeMistakenForOne) {
    EXPECT_EQ(shownName("."), "\uFF0E");
    EXPECT_EQ(shownName(".."), "\uFF0E\uFF0E");
    EXPECT_EQ(shownName("../.."), "..\uFF0F..");
}

TEST(ShownNames, AnEmptyNameIsShownAsAReplacementCharacter) {
    EXPECT_EQ(shownName(""), "\uFFFD");
}

TEST(ShownNames, TheVersionIsCut) {
    EXPECT_EQ(withoutVersion("A.TXT;1"), "A.TXT");
    EXPECT_EQ(withoutVersion("A.TXT;32767"), "A.TXT");
    EXPECT_EQ(withoutVersion("a;b;2"), "a;b");
}

TEST(ShownNames, APathOfTheComputerKeepsItsSlashesAndReadsAsText) {
    EXPECT_EQ(shownPath("/home/anna/my disc.iso"), "/home/anna/my disc.iso");
    EXPECT_EQ(shownPath("/home/\xDC"
                        "bung/a\\b"),
              "/home/Übung/a\\b");
    EXPECT_EQ(shownPath(""), "");
}

TEST(ShownNames, ASemicolonThatBeginsNoVersionStays) {
    EXPECT_EQ(withoutVersion("A;TXT"), "A;TXT");
    EXPECT_EQ(withoutVersion("A;"), "A;");
    EXPECT_EQ(withoutVersion("A;1x"), "A;1x");
    EXPECT_EQ(withoutVersion(";1"), ";1");
    EXPECT_EQ(withoutVersion(""), "");
}

TEST(ShownNames, APlainIdentifierLosesItsVersionThenOneStop) {
    EXPECT_EQ(plainIsoName("README.;1"), "README");
    EXPECT_EQ(plainIsoName("README..;1"), "README.");
    EXPECT_EQ(plainIsoName("README."), "README");
    EXPECT_EQ(plainIsoName("Mixed.Case;1"), "Mixed.Case");
    EXPECT_EQ(plainIsoName(".;1"), ".");
    EXPECT_EQ(plainIsoName("."), ".");
}

} // namespace
} // namespace discaro::disc

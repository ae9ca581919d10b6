#include "disc/executable/VersionResource.h"
#include "support/ExecutableBuilder.h"

#include <gtest/gtest.h>

// What old resource compilers wrote, each read as it was meant.

namespace discaro::disc {

namespace {

using namespace discaro::test;

struct Habit {
    std::string name;
    VersionHabits habits;
};

void PrintTo(const Habit& habit, std::ostream* stream) {
    *stream << habit.name;
}

class VersionHabit : public testing::TestWithParam<Habit> {};

TEST_P(VersionHabit, InUtf16GivesAllTexts) {
    EXPECT_EQ(versionTexts(wideVersion(sampleVersion(), GetParam().habits)), sampleTexts());
}

TEST_P(VersionHabit, InTheOldFormGivesAllTexts) {
    EXPECT_EQ(versionTexts(narrowVersion(sampleVersion("040904E4"), GetParam().habits)), sampleTexts());
}

TEST_P(VersionHabit, KeepsTheChosenLanguage) {
    auto content = sampleVersion();
    content.tables.insert(content.tables.begin(), {"040704B0", {{"CompanyName", "the other table"}}});
    EXPECT_EQ(versionTexts(wideVersion(content, GetParam().habits)), sampleTexts());
}

const std::vector<Habit> kHabits = {
    {"Usual", {}},
    {"LengthsInBytes", {.countsTextsInBytes = true}},
    {"LengthsInBytesWithoutTerminators", {.countsTextsInBytes = true, .terminatesTexts = false}},
    {"NoTerminators", {.terminatesTexts = false}},
    {"PaddingCounted", {.countsPaddingBehind = true}},
    {"GarbageAsPadding", {.padding = '\x5A'}},
    {"NoPaddingBehindKeys", {.padsKeys = false}},
    {"NoPaddingBetweenBlocks", {.padsBlocks = false}},
    {"NoPaddingAtAll", {.padsKeys = false, .padsBlocks = false}},
    {"LengthsInBytesWithoutPadding", {.countsTextsInBytes = true, .padsKeys = false, .padsBlocks = false}},
    {"TextBlocksTellTwoTooFew", {.textLengthError = -2}},
    {"TextBlocksTellFourTooFew", {.textLengthError = -4}},
    {"TablesTellTwoTooFew", {.tableLengthError = -2}},
    {"TablesTellTwoTooMany", {.tableLengthError = 2}},
    {"RootTellsTooFew", {.rootLengthError = -4}},
    {"RootTellsTooMany", {.rootLengthError = 40}},
    {"TranslationsFirst", {.listsTranslationsFirst = true}},
    {"FixedPartCountedInWords", {.fixedInfoLength = 26}},
    {"FixedPartCountedInWordsWithoutPadding", {.padsKeys = false, .padsBlocks = false, .fixedInfoLength = 26}},
    {"FixedPartToldAsMissing", {.fixedInfoLength = 0}},
    {"TablesTellAValueThatIsNotThere", {.tableValueLength = 24}},
};

INSTANTIATE_TEST_SUITE_P(OldCompilers, VersionHabit, testing::ValuesIn(kHabits),
                         [](const auto& instance) { return instance.param.name; });

TEST(VersionHabits, ATextWithoutALengthIsReadAsFarAsItsBlockGoes) {
    auto resource = wideVersion({.tables = {{"040904B0", {{"ProductName", "Cargo"}}}}, .translations = {}});
    const std::string key("P\0r\0o\0d\0", 8);
    const auto place = resource.find(key);
    ASSERT_NE(place, std::string::npos);
    putWord(resource, place - 4, 0);
    EXPECT_EQ(versionTexts(resource).productName, "Cargo");
}

TEST(VersionHabits, AnUnknownKindOfValueDoesNoHarm) {
    auto resource = wideVersion(sampleVersion());
    putWord(resource, 4, 7);
    EXPECT_EQ(versionTexts(resource), sampleTexts());
}

TEST(VersionHabits, ARootWithoutALengthOfUseIsReadToTheEnd) {
    auto resource = wideVersion(sampleVersion());
    putWord(resource, 0, 40);
    EXPECT_EQ(versionTexts(resource), sampleTexts());
}

TEST(VersionHabits, SeveralPartsWithTextsAreAllSearched) {
    // Each table is in a part of its own, as the writer writes them.
    const VersionContent content{.tables = {{"040904B0", {}}, {"040704B0", {{"ProductName", "Fracht"}}}},
                                 .translations = {{0x407, 0x4B0}}};
    EXPECT_EQ(versionTexts(wideVersion(content)).productName, "Fracht");
}

} // namespace

} // namespace discaro::disc

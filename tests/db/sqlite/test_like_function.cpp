#include "db/dialect/DialectStore.h"
#include "db/pattern/LikePattern.h"
#include "db/sqlite/LikeFunction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <random>

namespace discaro::db::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class LikeSql : public testing::Test {
protected:
    // Which of the stored names a criterion finds, sorted.
    std::vector<std::string> names(const std::string& criterion) {
        auto found = m_store.found("Files", "file name", criterion);
        std::ranges::sort(found);
        return found;
    }

    void store(const std::vector<std::string>& texts) {
        for (const std::string& text : texts)
            m_store.insertText("Files", "file name", text);
    }

    DialectStore m_store;
};

std::string quotedText(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? "''" : std::string(1, c);
    return result + "'";
}

std::vector<std::string> matching(const std::string& pattern, std::vector<std::string> texts) {
    LikePattern compiled(pattern);
    std::erase_if(texts, [&](const std::string& text) { return !compiled.matches(text); });
    std::ranges::sort(texts);
    return texts;
}

std::string resultOf(const std::string& expression) {
    sqlite3* connection = nullptr;
    sqlite3_open(":memory:", &connection);
    registerLikeFunction(connection);
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(connection, ("SELECT " + expression).c_str(), -1, &statement, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_step(statement), SQLITE_ROW);
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    std::string result = text == nullptr ? "NULL" : text;
    sqlite3_finalize(statement);
    sqlite3_close(connection);
    return result;
}

} // namespace

TEST(LikeFunction, TextAndNumbersMatchInTheirTextForm) {
    EXPECT_EQ(resultOf("discaro_like('A*', 'abc')"), "1");
    EXPECT_EQ(resultOf("discaro_like('b*', 'abc')"), "0");
    EXPECT_EQ(resultOf("discaro_like('12', 12)"), "1");
    EXPECT_EQ(resultOf("discaro_like('1?', 12)"), "1");
    EXPECT_EQ(resultOf("discaro_like('-5', -5)"), "1");
    EXPECT_EQ(resultOf("discaro_like('5', 5.0)"), "1");
    EXPECT_EQ(resultOf("discaro_like('5.0', 5.0)"), "0");
    EXPECT_EQ(resultOf("discaro_like('2.5', 2.5)"), "1");
    EXPECT_EQ(resultOf("discaro_like('1E+20', 1e20)"), "1");
    EXPECT_EQ(resultOf("discaro_like('0.3', 0.1 + 0.2)"), "1");
    EXPECT_EQ(resultOf("discaro_like(12, '12')"), "1");
    EXPECT_EQ(resultOf("discaro_like('*', x'')"), "1");
    EXPECT_EQ(resultOf("discaro_like('', '')"), "1");
}

TEST(LikeFunction, NullGivesNull) {
    EXPECT_EQ(resultOf("discaro_like('*', NULL)"), "NULL");
    EXPECT_EQ(resultOf("discaro_like(NULL, 'a')"), "NULL");
}

TEST(LikeFunction, APatternThatChangesFromRowToRowIsReadAnew) {
    EXPECT_EQ(resultOf("group_concat(discaro_like(p, 'abc'), '') FROM (SELECT 'a*' AS p UNION ALL "
                       "SELECT 'b*' UNION "
                       "ALL SELECT '*c')"),
              "101");
}

TEST_F(LikeSql, CaseWildcardsAndBracketsWorkThroughTheStore) {
    store({"README.TXT", "read[1].txt", "readme", "Setup.exe", "a", ""});
    EXPECT_THAT(names("[file name] like 'readme'"), ElementsAre("readme"));
    EXPECT_THAT(names("[file name] like 'READ*'"), ElementsAre("README.TXT", "read[1].txt", "readme"));
    EXPECT_THAT(names("[file name] like 'read[1]*'"), ElementsAre("read[1].txt"));
    EXPECT_THAT(names("[file name] like 'read?#*'"), ElementsAre("read[1].txt"));
    EXPECT_THAT(names("[file name] like '?'"), ElementsAre("a"));
    EXPECT_THAT(names("[file name] like ''"), ElementsAre(""));
    EXPECT_THAT(names("[file name] like '*'").size(), 6U);
}

TEST_F(LikeSql, NumbersMatchByTheirText) {
    m_store.execute(R"(INSERT INTO Files ("id number", "file size", "number of icons") VALUES
        (1, 100, 1), (2, 2.5, 10), (3, 1e20, 100), (4, NULL, NULL))");
    const auto ids = [&](const std::string& criterion) { return m_store.found("Files", "id number", criterion); };
    EXPECT_THAT(ids("[number of icons] like 1"), ElementsAre("1"));
    EXPECT_THAT(ids("[number of icons] like '1*'"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(ids("[number of icons] like '##'"), ElementsAre("2"));
    EXPECT_THAT(ids("[number of icons] like '10'"), ElementsAre("2"));
    EXPECT_THAT(ids("[number of icons] like 1E+2"), ElementsAre("3"));
    EXPECT_THAT(ids("[number of icons] like '010'"), IsEmpty());
    EXPECT_THAT(ids("[number of icons] like ' 10'"), IsEmpty());
    EXPECT_THAT(ids("[number of icons] like 'x'"), IsEmpty());
    EXPECT_THAT(ids("[number of icons] like ''"), IsEmpty());
    EXPECT_THAT(ids("[number of icons] like 2.5"), IsEmpty());
    EXPECT_THAT(ids("[file size] like 100"), ElementsAre("1"));
    EXPECT_THAT(ids("[file size] like '2.5'"), ElementsAre("2"));
    EXPECT_THAT(ids("[file size] like '*e+*'"), ElementsAre("3"));
    EXPECT_THAT(ids("[file size] like '*'"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(ids("[id number] like '3'"), ElementsAre("3"));
    EXPECT_THAT(ids("[id number] like '99999999999999999999'"), IsEmpty());
    EXPECT_THAT(ids("[id number] like 'C*'"), IsEmpty());
}

TEST_F(LikeSql, BooleansMatchByTheirWord) {
    m_store.execute(R"(INSERT INTO "Master Table" ("scanned cd-roms", "encryption") VALUES (1, 1), (2, 0), (3, NULL))");
    const auto ids = [&](const std::string& criterion) {
        return m_store.found("Master Table", "scanned cd-roms", criterion);
    };
    EXPECT_THAT(ids("[encryption] like 'true'"), ElementsAre("1"));
    EXPECT_THAT(ids("[encryption] like 'F*'"), ElementsAre("2"));
    EXPECT_THAT(ids("[encryption] like '*'"), ElementsAre("1", "2"));
}

TEST_F(LikeSql, DecomposedNamesAreFoundByComposedLetters) {
    store({"cafe\u0301.txt", "CAF\u00c9.TXT", "cafe.txt", "cafe\u0301"});
    EXPECT_THAT(names("[file name] like 'caf\u00e9*'"), ElementsAre("CAF\u00c9.TXT", "cafe\u0301", "cafe\u0301.txt"));
    EXPECT_THAT(names("[file name] like 'cafe\u0301'"), ElementsAre("cafe\u0301"));
    EXPECT_THAT(names("[file name] like 'cafe*'"), ElementsAre("cafe.txt"));
    EXPECT_THAT(names("[file name] like '*\u00c9*'").size(), 3U);
}

TEST_F(LikeSql, SignsThatOnlyLookLikeAsciiAreSignsOfTheirOwn) {
    store({"300K.txt", "300\u212A.txt", "a;b", "a\u037Eb", "\u1FEFx", "`x", "\u212A\u212A", "kk"});
    EXPECT_THAT(names("[file name] like '300k*'"), ElementsAre("300K.txt"));
    EXPECT_THAT(names("[file name] like '300\u212A*'"), ElementsAre("300\u212A.txt"));
    EXPECT_THAT(names("[file name] like 'a;b'"), ElementsAre("a;b"));
    EXPECT_THAT(names("[file name] like '`*'"), ElementsAre("`x"));
    EXPECT_THAT(names("[file name] like '*kk'"), ElementsAre("kk"));
    EXPECT_THAT(names("[file name] like '\u212A*'"), ElementsAre("\u212A\u212A"));
}

TEST_F(LikeSql, LiteralBeginningsEndWhereTheOrderOfNamesDoes) {
    store({"a@", "a@a", "a@A", "a@[", "aa", "a[", "az", "aZz", "b", "a\x7F", "a\x7Fz", "a\u00e9", "{"});
    for (const char* pattern : {"a@*", "aA*", "a[*", "az*", "aZ*", "a\x7F*", "a*", "A@[*"}) {
        LikePattern compiled(pattern);
        auto expected = m_store.column("select [file name] from files");
        std::erase_if(expected, [&](const std::string& name) { return !compiled.matches(name); });
        std::ranges::sort(expected);
        EXPECT_EQ(names("[file name] like '" + std::string(pattern) + "'"), expected) << pattern;
    }
}

TEST_F(LikeSql, TheSearchFindsExactlyWhatThePatternMatches) {
    constexpr std::array<std::string_view, 18> kPieces = {"a",      "A",      "k",      "K",      ";", "`",
                                                          "\u212A", "\u037E", "\u1FEF", "\u0301", "e", "\u00e9",
                                                          "\u00c9", "@",      "[",      "z",      "1", "\xFF"};
    std::mt19937 random(4);
    const auto text = [&](unsigned most) {
        std::string result;
        for (unsigned count = random() % (most + 1); count > 0; --count)
            result += kPieces[random() % kPieces.size()];
        return result;
    };
    std::vector<std::string> stored(1500);
    std::ranges::generate(stored, [&] { return text(5); });
    m_store.execute("BEGIN");
    store(stored);
    m_store.execute("COMMIT");
    size_t found = 0;
    for (int round = 0; round < 1500; ++round) {
        std::string pattern = random() % 2 == 0 ? stored[random() % stored.size()] : text(3);
        constexpr std::array<std::string_view, 5> kEnds = {"", "*", "*a", "?", "*?*"};
        pattern += kEnds[random() % kEnds.size()];
        const auto expected = matching(pattern, stored);
        found += expected.size();
        ASSERT_EQ(names("[file name] like " + quotedText(pattern)), expected) << testing::PrintToString(pattern);
    }
    EXPECT_GT(found, 5000U);
}

} // namespace discaro::db::test

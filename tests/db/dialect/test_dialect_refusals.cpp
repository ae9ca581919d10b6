#include "base/RuntimeError.h"
#include "db/dialect/DialectStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>

namespace discaro::db::test {

using base::ErrorNumber;
using testing::HasSubstr;

namespace {

int number(ErrorNumber error) {
    return static_cast<int>(error);
}

std::string repeated(std::string_view text, size_t times) {
    std::string result;
    for (size_t count = 0; count < times; ++count)
        result += text;
    return result;
}

std::string descriptionOf(std::string_view statement) {
    try {
        parseStatement(statement, catalogueSchema());
        return {};
    } catch (const base::RuntimeError& error) {
        return error.description();
    }
}

// The condition as deep as told, in a form of which every level needs its parentheses.
std::string alternating(size_t levels, std::string_view opening) {
    std::string text;
    for (size_t level = levels; level > 0; --level)
        text.append("[file size] = 1 ").append(level % 2 == 0 ? "or " : "and ").append(opening);
    return text + "[file name] not like 'k;`*'" + std::string(levels, ')');
}

} // namespace

TEST(DialectRefusals, WhatIsNoStatementIsASyntaxError) {
    for (const char* text : {"",
                             "   ",
                             ";",
                             "select",
                             "select *",
                             "select * from",
                             "select from files",
                             "select * files",
                             "select * from files where",
                             "select * from files where and [file size] = 1",
                             "select * from files where [file size]",
                             "select * from files where [file size] =",
                             "select * from files where = 1",
                             "select * from files where ([file size] = 1",
                             "select * from files where [file size] = 1)",
                             "select * from files where ()",
                             "select * from files where [file size] = 1 and",
                             "select * from files where [file size] = 1 [file size] = 2",
                             "select * from files where [file size = 1",
                             "select * from files where [] = 1",
                             "select * from files where [file name] = 'open",
                             "select * from files where [file name] = \"open",
                             "select * from files where [file name] like",
                             "select * from files where [file name] like like",
                             "select * from files where [file name] like [comments]",
                             "select * from files where 'a' like 'a'",
                             "select * from files where [file name] not = 'a'",
                             "select * from files where [file name] is 'a'",
                             "select * from files where [file size] in ()",
                             "select * from files where [file size] in 1",
                             "select * from files where [file size] in (1,)",
                             "select * from files where [file size] in ([file size])",
                             "select * from files where [file size] between 1",
                             "select * from files where [file size] between 1 or 2",
                             "select * from files where not",
                             "select * from files where 1",
                             "select * from files where [file size] == 1",
                             "select * from files where [file size] != 1",
                             "select * from files, drive",
                             "select *, from files",
                             "select , * from files",
                             "select distinct [file name] from files",
                             "select * from files where #1/1/2000#",
                             "select * from files group by [file name]",
                             "select * from [files",
                             "select * from ''",
                             "select * from select",
                             "delete",
                             "delete * files",
                             "delete [file name] from files",
                             "delete * from files order by [file name]",
                             "delete from files where",
                             "select [file name] as from files",
                             "select count( from files",
                             "select count(*  from files",
                             "(select * from files)",
                             "where [file size] = 1"})
        EXPECT_EQ(errorOf(text), number(ErrorNumber::SyntaxError)) << text;
}

TEST(DialectRefusals, NothingButOneSelectOrDeleteGetsThrough) {
    for (const char* text : {"select * from files; delete from files",
                             "select * from files;;",
                             "delete from files; select * from files",
                             "insert into files values (1)",
                             "update files set [file size] = 1",
                             "create table t (a)",
                             "select * from files union select * from drive",
                             "select * from files -- where",
                             "select * from files /* x */",
                             "select * from (select * from files)",
                             "select * from files where [file size] in (select 1)",
                             "select * from files where exists (select 1)",
                             "attach 'x' as y",
                             "pragma user_version = 1",
                             "select * into t from files",
                             "with t as (select 1) select * from t",
                             "select * from files inner join drive on 1 = 1",
                             "select * from files where abs(1) = 1",
                             "select * from files limit 1",
                             "values (1)",
                             "select * from sqlite_master where (1 = 1"})
        EXPECT_NE(errorOf(text), 0) << text;
}

TEST(DialectRefusals, UnknownTablesAreNamed) {
    EXPECT_EQ(errorOf("select * from nowhere"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOf("select * from sqlite_master"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOf("delete * from nowhere"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOf("nowhere"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOf("[no where]"), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(errorOf("no where else"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("drop table files"), number(ErrorNumber::UnknownTable));
    EXPECT_THAT(descriptionOf("select * from [no where]"), HasSubstr("no where"));
    EXPECT_THAT(descriptionOf("[no where]"), HasSubstr("no where"));
}

TEST(DialectRefusals, UnknownFieldsAreNamed) {
    EXPECT_EQ(errorOf("select [nothing] from files"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select drive.* from files"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select rowid from files"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select [*] from files"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select * from files where rowid = 1"), number(ErrorNumber::UnknownField));
    EXPECT_EQ(errorOf("select * from files where [file name] like abc"), number(ErrorNumber::UnknownField));
    EXPECT_THAT(descriptionOf("select * from files where [nothing] = 1"), HasSubstr("nothing"));
    EXPECT_EQ(errorOf("select [file name] as name from files"), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf("delete drive.* from files"), number(ErrorNumber::NotAllowed));
}

TEST(DialectRefusals, TheMessageShowsWhereTheTextBreaks) {
    EXPECT_THAT(descriptionOf("select * from files where [file name] like 'Moby's*' "), HasSubstr("near s*' "));
    EXPECT_THAT(descriptionOf("select * from files where"), HasSubstr("ends too early"));
    const std::string cut = descriptionOf("select * from files where ! " + repeated("\u00e9", 100));
    EXPECT_LT(cut.size(), 120U);
    EXPECT_EQ(cut.substr(cut.size() - 2), "\u00e9");
}

TEST(DialectRefusals, TypedTextCannotLeaveItsPlace) {
    const std::string base = "SELECT files.*  FROM Files IN kvt.mde where [id number] like '*'and [file name] like '";
    const auto typed = [&](const std::string& text) { return errorOf(base + text + "*'  Order by [file name]"); };
    EXPECT_EQ(typed("[a-z]; drop table files --"), 0);
    EXPECT_EQ(typed("\x01\x7F\xFF\xC3("), 0);
    EXPECT_EQ(typed(std::string("a\0b", 3)), 0);
    EXPECT_EQ(typed("it''s"), 0);
    EXPECT_EQ(typed("' or '1'='1"), 0);
    EXPECT_EQ(typed("'; delete from files where '1'='1"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(typed("' union select * from drive where '1'='1"), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(typed("') or discaro_like('*"), number(ErrorNumber::SyntaxError));
}

TEST(DialectRefusals, TypedTextNeverReachesTheSql) {
    const Query query = parseStatement("select [FILE NAME] from files in kvt.mde where [FILE NAME] like 'typed*text' "
                                       "and [COMMENTS] = \"typed\" and [FILE SIZE] in ('12345', 12345.5)",
                                       catalogueSchema());
    EXPECT_EQ(query.where, "\"file name\" >= ?1 COLLATE NOCASE AND \"file name\" < ?2 COLLATE NOCASE AND "
                           "discaro_like(?3, \"file name\") AND \"Comments\" = ?4 COLLATE NOCASE AND \"file size\" IN "
                           "(?5, ?6)");
    EXPECT_EQ(query.bindings.size(), 6U);
}

TEST(DialectRefusals, TwoHundredOpenParenthesesAreTheMost) {
    const auto nested = [](size_t levels) {
        return errorOfCriterion("Files", repeated("(", levels) + "[file size] = 1" + repeated(")", levels));
    };
    EXPECT_EQ(nested(200), 0);
    EXPECT_EQ(nested(201), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(nested(30000), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOfCriterion("Files", repeated("(", 60000)), number(ErrorNumber::SyntaxError));
}

TEST(DialectRefusals, ParenthesesSideBySideAreNotNested) {
    EXPECT_EQ(errorOfCriterion("Files", "[file size] = 1" + repeated(" and ([file size] = 1)", 500)), 0);
}

TEST(DialectRefusals, WhatIsAcceptedTheStorageEngineAccepts) {
    DialectStore store;
    const auto run = [&](const std::string& criterion) {
        if (errorOfCriterion("Files", criterion) != 0)
            return false;
        EXPECT_NO_THROW(store.found("Files", "id number", criterion)) << criterion.substr(0, 200);
        return true;
    };
    size_t deepest = 0;
    for (size_t levels = 1; levels <= 200; ++levels)
        for (const char* opening : {"(", "not (", "not not not("})
            if (run(alternating(levels, opening)))
                deepest = levels;
    EXPECT_GE(deepest, 16U);
    EXPECT_LT(deepest, 200U);
    EXPECT_TRUE(run(repeated("not ", 10000) + "[file size] = 1"));
    EXPECT_TRUE(run("[file size] = 1" + repeated(" and [file size] = 1", 900)));
    EXPECT_TRUE(run("[file size] = 1" + repeated(" or [file name] like 'k;k*'", 500)));
    EXPECT_TRUE(run("[file size] in (1" + repeated(",1", 4999) + ")"));
}

TEST(DialectRefusals, ConditionsHaveAMostNumber) {
    EXPECT_EQ(errorOfCriterion("Files", "[file size] = 1" + repeated(" or [file size] = 1", 1000)),
              number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOfCriterion("Files", "[file size] in (1" + repeated(",1", 5000) + ")"),
              number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select * from files order by [id number]" + repeated(",[id number]", 64)),
              number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf("select [id number]" + repeated(",[id number]", 100) + " from files"),
              number(ErrorNumber::SyntaxError));
}

TEST(DialectRefusals, ATextMayHaveAnyLength) {
    constexpr size_t kLong = 16 << 20;
    const std::string pattern(kLong, 'x');
    EXPECT_EQ(parseCriterion("[file name] like '" + pattern + "'", tableNamed("Files")).bindings,
              std::vector<Value>{pattern});
    EXPECT_EQ(errorOfCriterion("Files", "[Comments] like '*" + std::string(kLong, '?') + "*'"), 0);
    EXPECT_EQ(errorOf("select * from files" + std::string(kLong, ' ')), 0);
    EXPECT_EQ(parseSort(std::string(kLong, ' ') + "[file name]", tableNamed("Files")).size(), 1U);
}

TEST(DialectRefusals, LongTextsThatAreNoneAreRefusedInLinearTime) {
    constexpr size_t kLong = 1 << 20;
    for (const char* piece :
         {"[", "(", "not ", "a ", "1e", "'", "[a] ", "a.", "x,", "-", "1=1 and ", "[file name] is null or "})
        for (const char* head : {"", "select ", "select * from files where ", "select * from files order by "}) {
            const size_t times = kLong / std::string_view(piece).size();
            EXPECT_NE(errorOf(head + repeated(piece, static_cast<int>(times))), 0) << head << piece;
        }
}

TEST(DialectRefusals, AnErrorShowsLittleOfALongText) {
    const std::string name(1 << 20, 'x');
    for (const std::string& text :
         {name, "select * from " + name, "select * from files where [" + name + "] = 1",
          "select * from files where [file size] = '" + name + "'", "select " + name + "(*) from files",
          "select * from files in " + name + "/", "select * from files where " + name}) {
        try {
            parseStatement(text, catalogueSchema());
            ADD_FAILURE() << text.substr(0, 60);
        } catch (const base::RuntimeError& error) {
            EXPECT_LT(error.description().size(), 300U) << text.substr(0, 60);
        }
    }
}

TEST(DialectRefusals, EveryHeadOfAStatementIsAcceptedOrRefused) {
    const std::string whole = "SELECT files.*  FROM Files IN kvt.mde where [id number] like '*'and not ([file name] = "
                              "\"a\" or [file size] in (1, 2.5E+3)) and [Comments] is not null Order by [file name]";
    EXPECT_EQ(errorOf(whole), 0);
    DialectStore store;
    for (size_t length = 0; length < whole.size(); ++length) {
        const std::string head = whole.substr(0, length);
        if (errorOf(head) == 0) {
            EXPECT_NO_THROW(store.rows(head)) << head;
        }
    }
}

TEST(DialectRefusals, ShuffledStatementsNeverBreakTheStorageEngine) {
    constexpr std::array<std::string_view, 44> kPieces = {"select ",
                                                          "* ",
                                                          "from ",
                                                          "files ",
                                                          "where ",
                                                          "[file name] ",
                                                          "[file size] ",
                                                          "[id number] ",
                                                          "like ",
                                                          "'*' ",
                                                          "'a*b' ",
                                                          "'it''s' ",
                                                          "'k' ",
                                                          "5",
                                                          "-",
                                                          "2.5E+3",
                                                          "= ",
                                                          "<> ",
                                                          "< ",
                                                          ">= ",
                                                          "and ",
                                                          "or ",
                                                          "not ",
                                                          "(",
                                                          ")",
                                                          "in ",
                                                          ", ",
                                                          "is ",
                                                          "null ",
                                                          "between ",
                                                          "order by ",
                                                          "desc ",
                                                          "delete ",
                                                          "count",
                                                          "sum",
                                                          "as ",
                                                          "; ",
                                                          "'",
                                                          "[",
                                                          "true ",
                                                          "[Comments] ",
                                                          "\xFF ",
                                                          ".",
                                                          "drive "};
    std::mt19937 random(20240229);
    DialectStore store;
    size_t accepted = 0;
    for (int round = 0; round < 40000; ++round) {
        std::string text = round % 2 == 0 ? "select * from files where " : "";
        for (unsigned count = random() % 9; count > 0; --count)
            text += kPieces[random() % kPieces.size()];
        if (errorOf(text) != 0)
            continue;
        ++accepted;
        const Query query = parseStatement(text, catalogueSchema());
        if (query.kind == Query::Kind::Delete) {
            EXPECT_NO_THROW(store.remove(text)) << text;
        } else {
            EXPECT_NO_THROW(store.rows(text)) << text;
        }
    }
    EXPECT_GT(accepted, 50U);
}

} // namespace discaro::db::test

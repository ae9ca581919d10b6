#include "db/Shelf.h"
#include "db/engine/Store.h"
#include "db/sqlite/StatementCache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;

TEST(TableDefs, EveryFieldIsFoundByItsNameInAnyCapitals) {
    TableDef table{"t", {}};
    for (size_t i = 0; i < kMostFields; ++i)
        table.fields.push_back({"Field number " + std::to_string(i), FieldType::Text});
    for (size_t i = 0; i < table.fields.size(); ++i)
        EXPECT_EQ(table.find("fIELD NUMBER " + std::to_string(i)), static_cast<int>(i));
    EXPECT_EQ(table.find("field number"), -1);
    EXPECT_EQ(table.find("field number 64"), -1);
    EXPECT_EQ(table.find("Field\x0enumber 1"), -1);
}

TEST(TableDefs, OfTwoEqualNamesTheFirstIsFound) {
    const TableDef table{"t", {{"Size", FieldType::Double}, {"size", FieldType::Text}}};
    EXPECT_EQ(table.find("SIZE"), 0);
}

class StoreStatements : public Shelf {};

TEST_F(StoreStatements, OfTheCacheTheOneUnusedLongestGoes) {
    const auto database = open();
    StatementCache cache(database->store()->connection().session(), 2);
    const auto first = cache.get("SELECT 1");
    const auto second = cache.get("SELECT 2");
    EXPECT_EQ(cache.get("SELECT 1"), first);
    const auto third = cache.get("SELECT 3");
    EXPECT_EQ(cache.get("SELECT 1"), first);
    EXPECT_EQ(cache.get("SELECT 3"), third);
    EXPECT_NE(cache.get("SELECT 2"), second);
    EXPECT_TRUE(second->step());
    EXPECT_EQ(second->integer(0), 2);
}

TEST_F(StoreStatements, AFilesOwnSchemaIsNotTrusted) {
    const auto database = open();
    const auto option = [&](int which) {
        int value = -1;
        sqlite3_db_config(database->store()->connection().handle(), which, -1, &value);
        return value;
    };
    EXPECT_EQ(option(SQLITE_DBCONFIG_TRUSTED_SCHEMA), 0);
    EXPECT_EQ(option(SQLITE_DBCONFIG_DEFENSIVE), 1);
    EXPECT_EQ(option(SQLITE_DBCONFIG_DQS_DML), 0) << "a name in quotation marks is never a text";
    EXPECT_EQ(option(SQLITE_DBCONFIG_DQS_DDL), 0);
}

TEST_F(StoreStatements, OneStatementAtATimeIsPrepared) {
    const auto database = open();
    Store& store = *database->store();
    EXPECT_EQ(errorOf([&] { store.prepare("SELECT 1; SELECT 2"); }), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf([&] { store.prepare(""); }), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf([&] { store.prepare("SELECT nothing FROM nowhere"); }), number(ErrorNumber::SyntaxError));
    EXPECT_EQ(errorOf([&] { store.prepare("SELECT 1; "); }), 0);
}

TEST_F(StoreStatements, APlanTellsWhetherRowsAreSortedAndWhetherATableIsScanned) {
    const auto database = open();
    const auto plan = [&](const char* rest) {
        const Plan read = database->store()->connection().plan(std::string("SELECT 1 FROM Files WHERE ") + rest);
        return std::pair(read.sorts, read.scans);
    };
    EXPECT_EQ(plan("\"file name\" >= 'a' ORDER BY \"file name\""), std::pair(false, false));
    EXPECT_EQ(plan("\"file name\" IN ('a', 'b') ORDER BY rowid"), std::pair(true, false));
    EXPECT_EQ(plan("\"file name\" IN ('a', 'b') LIMIT 1 OFFSET 9"), std::pair(false, false));
    EXPECT_EQ(plan("\"file size\" IN (1, 2) ORDER BY rowid"), std::pair(false, true));
    EXPECT_EQ(plan("\"file size\" > 1 LIMIT 1 OFFSET 9"), std::pair(false, true));
    EXPECT_EQ(plan("\"file size\" > 1 ORDER BY \"file size\" DESC"), std::pair(true, true));
    EXPECT_EQ(plan("\"file name\" <> 'a' ORDER BY \"file name\" DESC"), std::pair(false, true));
}

TEST_F(StoreStatements, NamesAreQuoted) {
    EXPECT_EQ(quotedName("a \"b\""), "\"a \"\"b\"\"\"");
}

TEST_F(StoreStatements, ManyFieldsInOneQueryAreRefused) {
    std::string text = "select whole";
    for (int i = 0; i < 64; ++i)
        text += ", whole";
    EXPECT_EQ(errorOf([&] { open()->OpenRecordset(text + " from Things"); }), number(ErrorNumber::SyntaxError));
}

} // namespace
} // namespace discaro::db::test

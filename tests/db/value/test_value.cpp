#include "db/schema/Definitions.h"
#include "db/value/Value.h"

#include <gtest/gtest.h>

namespace discaro::db::test {

TEST(Value, NullIsEmptyAndZero) {
    EXPECT_TRUE(isNull(Value()));
    EXPECT_FALSE(isNull(Value("")));
    EXPECT_EQ(textOf(Value()), "");
    EXPECT_EQ(numberOf(Value()), 0);
}

TEST(Value, EveryKindHasAText) {
    EXPECT_EQ(textOf(Value(true)), "true");
    EXPECT_EQ(textOf(Value(false)), "false");
    EXPECT_EQ(textOf(Value(int64_t{-42})), "-42");
    EXPECT_EQ(textOf(Value(2.5)), "2.5");
    EXPECT_EQ(textOf(Value(1e15)), "1E+15");
    EXPECT_EQ(textOf(Value("as it is")), "as it is");
}

TEST(Value, EveryKindHasANumber) {
    EXPECT_EQ(numberOf(Value(true)), 1);
    EXPECT_EQ(numberOf(Value(false)), 0);
    EXPECT_EQ(numberOf(Value(int64_t{7})), 7);
    EXPECT_EQ(numberOf(Value(2.5)), 2.5);
    EXPECT_EQ(numberOf(Value("12.5 Kb")), 12.5);
    EXPECT_EQ(numberOf(Value("Kb")), 0);
}

TEST(Schema, NamesHaveNoCase) {
    const Schema schema{{{"Prog Tag", {{"id number", FieldType::Integer}, {"CD-Key", FieldType::Text}}}}};
    const TableDef* table = schema.find("prog TAG");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->find("ID Number"), 0);
    EXPECT_EQ(table->find("cd-key"), 1);
    EXPECT_EQ(table->find("CD Key"), -1);
    EXPECT_EQ(schema.find("ProgTag"), nullptr);
}

} // namespace discaro::db::test

#include "catalogue/Discs.h"
#include "catalogue/Schema.h"
#include "db/dialect/Dialect.h"
#include "explorer/CatalogueRig.h"
#include "explorer/Queries.h"
#include "support/QueryPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::explorer {

using testing::HasSubstr;
using testing::Not;

namespace {

// How the storage engine runs the explorer's statements on a real catalogue.
class ExplorerPlans : public testing::Test {
protected:
    std::string plan(const db::Query& query) {
        db::Connection connection(m_rig.path().string(), db::Connection::Mode::ReadOnly);
        const std::string table = db::quotedName(query.table->name);
        return test::queryPlan(connection, "SELECT * FROM " + table + " WHERE " + query.where + " ORDER BY rowid");
    }
    std::string planOf(const std::string& statement) { return plan(db::parseStatement(statement, m_schema)); }
    std::string planOfCriterion(std::string_view table, const std::string& criterion) {
        return plan(db::parseCriterion(criterion, *m_schema.find(table)));
    }

    test::CatalogueRig m_rig;
    db::Schema m_schema = catalogue::catalogueSchema();
};

constexpr const char* kKeys[] = {"C12D1", "C12D1S3S1", "C100D1S99S9S110"};

} // namespace

TEST(DirectoryNumbers, WithAWildcardFindTheRowsOfOthersToo) {
    for (const char* number : {"C1D1*", "C1D?", "C#D1"})
        EXPECT_TRUE(findsOthers(number)) << number;
    for (const char* number : {"C1D1S1", "", "C1D1'", "C1D1%"})
        EXPECT_FALSE(findsOthers(number)) << number;
}

TEST_F(ExplorerPlans, AClickOnADirectorySearchesIndexes) {
    for (const char* key : kKeys) {
        EXPECT_THAT(planOf(filesQuery(key)), HasSubstr("(directory number=?)"));
        EXPECT_THAT(planOf(subdirectoriesQuery(key)), HasSubstr("(Parent id=?)"));
        EXPECT_THAT(planOfCriterion("Directories", catalogue::rowCondition(key)), HasSubstr("(id number=?)"));
        for (const std::string& each : {planOf(filesQuery(key)), planOf(subdirectoriesQuery(key)),
                                        planOfCriterion("Directories", catalogue::rowCondition(key))})
            EXPECT_THAT(each, Not(HasSubstr("SCAN"))) << key;
    }
}

TEST_F(ExplorerPlans, TheChoiceOfADiscSearchesIndexes) {
    EXPECT_THAT(planOf(discDirectoriesQuery("12")), HasSubstr("(drive id number=?)"));
    EXPECT_THAT(planOf(discDirectoriesQuery("12")), Not(HasSubstr("SCAN")));
    EXPECT_THAT(planOfCriterion("Drive", catalogue::rowCondition("12")), Not(HasSubstr("SCAN")));
    EXPECT_THAT(planOf(discQuery("12")), Not(HasSubstr("SCAN")));
}

// Roots are known by their names, which no index serves: this one reads the table, once and in its own order.
TEST_F(ExplorerPlans, ShowAllContentsReadsTheDirectoriesOnce) {
    const std::string read = planOf(std::string(kRootDirectoriesQuery));
    EXPECT_THAT(read, Not(HasSubstr("TEMP B-TREE")));
    EXPECT_EQ(std::ranges::count(read, '\n'), 1) << read;
}

TEST_F(ExplorerPlans, RowsInTheOrderOfTheCatalogueAreNotSortedForIt) {
    for (const std::string& statement : {filesQuery("C12D1"), subdirectoriesQuery("C12D1"), discDirectoriesQuery("12")})
        EXPECT_THAT(planOf(statement), Not(HasSubstr("TEMP B-TREE"))) << statement;
}

} // namespace discaro::explorer

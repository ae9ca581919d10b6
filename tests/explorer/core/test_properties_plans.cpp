#include "catalogue/Discs.h"
#include "catalogue/Schema.h"
#include "db/dialect/Dialect.h"
#include "db/sqlite/Connection.h"
#include "support/QueryPlan.h"
#include "support/catalogue/ScratchCatalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace discaro;
using namespace discaro::test;
using testing::HasSubstr;
using testing::Not;

namespace {

// How the storage engine finds the row of a properties window.
std::string plan(const ScratchCatalogue& catalogue, std::string_view table, const std::string& number) {
    static const db::Schema schema = catalogue::catalogueSchema();
    const db::Query query = db::parseCriterion(catalogue::rowCondition(number), *schema.find(table));
    db::Connection connection(catalogue.path().string(), db::Connection::Mode::ReadOnly);
    return queryPlan(connection, "SELECT * FROM " + db::quotedName(query.table->name) + " WHERE " + query.where +
                                     " ORDER BY rowid LIMIT 1");
}

} // namespace

TEST(PropertiesPlans, NoWindowScansItsTable) {
    const ScratchCatalogue catalogue;
    EXPECT_THAT(plan(catalogue, "Drive", "12"), HasSubstr("SEARCH"));
    EXPECT_THAT(plan(catalogue, "Directories", "C12D1S3"), HasSubstr("(id number=?)"));
    EXPECT_THAT(plan(catalogue, "Files", "4711"), HasSubstr("rowid=?"));
    for (const char* table : {"Drive", "Directories", "Files"})
        EXPECT_THAT(plan(catalogue, table, "12"), Not(HasSubstr("SCAN"))) << table;
}

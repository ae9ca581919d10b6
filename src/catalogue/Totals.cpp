#include "catalogue/Totals.h"

#include "base/RuntimeError.h"
#include "catalogue/Names.h"

#include <memory>
#include <string>

namespace discaro::catalogue {

using base::skipErrors;

namespace {

// A null compares as not different from 1, so a subtree without rows adds nothing; nor does a sum of exactly 1.
bool differsFromOne(const db::Value& sum) {
    return !db::isNull(sum) && db::numberOf(sum) != 1;
}

std::string subtreeQuery(const std::string& directory) {
    return "select sum(Size) As [Total size] , sum([number of files]) as Files , sum([number of "
           "subdirectories])"
           " as subs from directories where [id number] like '" +
           directory + "S*'";
}

struct Total {
    std::string_view own;   // what stands directly in the directory
    std::string_view sum;   // the query's sum over the directories beneath it
    std::string_view total; // where both together go
};

constexpr Total kTotals[] = {
    {directories::kSize, "Total size", directories::kTotalSize},
    {directories::kNumberOfFiles, "Files", directories::kTotalNumberOfFiles},
    {directories::kNumberOfSubdirectories, "subs", directories::kTotalNumberOfSubdirectories},
};

void writeTotal(db::Recordset& directories, db::Recordset& sums, const Total& total) {
    const db::Value own = directories.Fields(total.own).Value();
    const db::Value sum = sums.Fields(total.sum).Value();
    if (differsFromOne(sum) && !db::isNull(own))
        directories(total.total) = db::numberOf(sum) + db::numberOf(own);
    else
        directories(total.total) = own;
}

} // namespace

db::Value totalFileSize(db::Database& catalogue) {
    return catalogue.OpenRecordset("select sum([file Size]) As [Total file size] from files")
        ->Fields("Total file size")
        .Value();
}

void writeMasterTotals(db::Recordset& master, const MasterTotals& totals) {
    master(masterTable::kTotalNumberOfDirectories) = totals.directories;
    master(masterTable::kTotalNumberOfFiles) = totals.files;
    master(masterTable::kTotalSize) = totals.kilobytes;
    master(masterTable::kRealCdRomsScanned) = totals.discs;
}

void rollUpCurrentDirectory(db::Database* catalogue, db::Recordset& directories) {
    std::string number;
    skipErrors([&] { number = db::textOf(directories.Fields(directories::kIdNumber).Value()); });
    std::unique_ptr<db::Recordset> sums;
    if (catalogue != nullptr)
        skipErrors([&] { sums = catalogue->OpenRecordset(subtreeQuery(number)); });
    skipErrors([&] { directories.Edit(); });
    for (const Total& total : kTotals)
        if (sums)
            skipErrors([&] { writeTotal(directories, *sums, total); });
    skipErrors([&] { directories.Update(); });
}

} // namespace discaro::catalogue

#include "explorer/InfoRows.h"

#include "base/RuntimeError.h"
#include "catalogue/Discs.h"
#include "catalogue/Names.h"
#include "explorer/NumberFormats.h"

#include <span>
#include <string_view>

namespace discaro::explorer {

namespace {

using Fact = catalogue::DiscFact;

std::string valueOf(const Fact& fact, db::Recordset& row) {
    const db::Value value = row(fact.field).Value();
    std::string text = fact.whole ? wholeText(value) : db::textOf(value);
    return text += fact.unit;
}

std::vector<InfoRow> rowsOf(std::span<const Fact> facts, const db::DataSource& source) {
    std::vector<InfoRow> rows;
    rows.reserve(facts.size());
    for (const Fact& fact : facts) {
        InfoRow& row = rows.emplace_back(InfoRow{std::string(fact.icon), std::string(fact.text), ""});
        if (!fact.field.empty())
            base::skipErrors([&] { row.value = valueOf(fact, source.Recordset()); });
    }
    return rows;
}

} // namespace

std::vector<InfoRow> discInfo(const db::DataSource& discs) {
    return rowsOf(catalogue::discFacts(), discs);
}

std::vector<InfoRow> directoryInfo(const db::DataSource& directories) {
    using namespace catalogue::directories;
    static constexpr Fact kFacts[] = {
        {"cdnum", "CD-ROM Number", kDriveIdNumber, true},
        {"dname", "Directory Name", kDirectoryName},
        {"dpath", "Directory Path", kDirectoryPath},
        {"", "", ""},
        {"nfile", "Number of Files", kNumberOfFiles, true},
        {"tfile", "Total Number of Files", kTotalNumberOfFiles, true},
        {"nsub", "Number of Subdirectories", kNumberOfSubdirectories, true},
        {"tsub", "Total Number of Subdirectories", kTotalNumberOfSubdirectories, true},
        {"size", "Directory Size", kSize, true, " Kb"},
        {"tsize", "Total Size", kTotalSize, true, " Kb"},
        {"", "", ""},
        {"comment", "Comments", kComments},
    };
    return rowsOf(kFacts, directories);
}

} // namespace discaro::explorer

#include "explorer/InfoRows.h"

#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "explorer/NumberFormats.h"

#include <span>
#include <string_view>

namespace discaro::explorer {

namespace {

enum class Form { AsStored, Whole };

struct Fact {
    std::string_view icon;
    std::string_view text;
    std::string_view field; // empty: no value
    Form form = Form::AsStored;
    std::string_view unit = {};
};

std::string valueOf(const Fact& fact, db::Recordset& row) {
    const db::Value value = row(fact.field).Value();
    std::string text = fact.form == Form::Whole ? wholeText(value) : db::textOf(value);
    return text += fact.unit;
}

std::vector<InfoRow> rowsOf(std::span<const Fact> facts, const db::DataSource& source) {
    std::vector<InfoRow> rows;
    rows.reserve(facts.size());
    for (const Fact& fact : facts) {
        InfoRow& row =
            rows.emplace_back(InfoRow{std::string(fact.icon), std::string(fact.text), ""});
        if (!fact.field.empty())
            base::skipErrors([&] { row.value = valueOf(fact, source.Recordset()); });
    }
    return rows;
}

} // namespace

std::vector<InfoRow> discInfo(const db::DataSource& discs) {
    using namespace catalogue::drive;
    static constexpr Fact kFacts[] = {
        {"cdnum", "CD-ROM Number", kIdNumber, Form::Whole},
        {"pname", "Preferred Name", kPreferedName},
        {"label", "Volume Label", kVolumeName},
        {"snum", "Serial Number", kSerialNumber},
        {"fsys", "File System", kFileSystem},
        {"size", "Total Size", kTotalSize, Form::Whole, " Mb"},
        {"size", "Free Size", kFreeSize, Form::AsStored, " Mb"},
        {"", "", ""},
        {"comment", "Comments", kComments},
        {"autrun", "Autorun", kAutorun},
    };
    return rowsOf(kFacts, discs);
}

std::vector<InfoRow> directoryInfo(const db::DataSource& directories) {
    using namespace catalogue::directories;
    static constexpr Fact kFacts[] = {
        {"cdnum", "CD-ROM Number", kDriveIdNumber, Form::Whole},
        {"dname", "Directory Name", kDirectoryName},
        {"dpath", "Directory Path", kDirectoryPath},
        {"", "", ""},
        {"nfile", "Number of Files", kNumberOfFiles, Form::Whole},
        {"tfile", "Total Number of Files", kTotalNumberOfFiles, Form::Whole},
        {"nsub", "Number of Subdirectories", kNumberOfSubdirectories, Form::Whole},
        {"tsub", "Total Number of Subdirectories", kTotalNumberOfSubdirectories, Form::Whole},
        {"size", "Directory Size", kSize, Form::Whole, " Kb"},
        {"tsize", "Total Size", kTotalSize, Form::Whole, " Kb"},
        {"", "", ""},
        {"comment", "Comments", kComments},
    };
    return rowsOf(kFacts, directories);
}

} // namespace discaro::explorer

#include "explorer/ListingRows.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "catalogue/Names.h"
#include "explorer/FileKinds.h"
#include "explorer/NumberFormats.h"

namespace discaro::explorer {

using base::skipErrors;

namespace {

constexpr std::string_view kFileMark = "id";

} // namespace

bool isFileKey(std::string_view key) {
    return key.ends_with(kFileMark);
}

ListingRow directoryRow(db::Recordset& directories, int listedNode) {
    using namespace catalogue::directories;
    return {.key = directories(kIdNumber).Text(),
            .text = directories(kDirectoryName).Text(),
            .kind = "folder",
            .tag = std::to_string(listedNode),
            .subItems = {}};
}

FileRows::FileRows(db::Recordset& files)
    : m_number(files(catalogue::files::kIdNumber))
    , m_name(files(catalogue::files::kFileName))
    , m_extension(files(catalogue::files::kFileExtension))
    , m_size(files(catalogue::files::kFileSize))
    , m_date(files(catalogue::files::kFileDate))
    , m_attributes(files(catalogue::files::kAttributes))
    , m_icons(files(catalogue::files::kNumberOfIcons)) {}

std::string FileRows::extension(const std::string& fileName) {
    std::string stored;
    skipErrors([&] { stored = m_extension.Text(); });
    if (!stored.empty())
        return stored;
    const size_t dot = fileName.rfind('.');
    if (dot != std::string::npos)
        m_foundExtension = fileName.substr(dot + 1);
    return '.' + base::lowerCase(m_foundExtension);
}

ListingRow FileRows::row() {
    enum Column { Size, SortSize, Extension, Date, SortDate, Attributes, Icons, SortIcons, Count };
    ListingRow row;
    row.tag = m_number.Text();
    row.key = row.tag;
    row.key += kFileMark;
    skipErrors([&] { row.text = m_name.Text(); });
    const std::string found = extension(row.text);
    row.kind = fileKind(found, row.text);
    row.subItems.resize(Count);
    row.subItems[Extension] = found + " File";
    skipErrors([&] {
        const db::Value size = m_size.Value();
        row.subItems[Size] = fileSizeText(size);
        row.subItems[SortSize] = fileSizeSortText(size);
    });
    skipErrors([&] {
        row.subItems[Date] = m_date.Text();
        row.subItems[SortDate] = dateSortText(row.subItems[Date]);
    });
    skipErrors([&] { row.subItems[Attributes] = m_attributes.Text(); });
    skipErrors([&] {
        const db::Value icons = m_icons.Value();
        row.subItems[Icons] = db::textOf(icons);
        row.subItems[SortIcons] = countSortText(icons);
    });
    return row;
}

} // namespace discaro::explorer

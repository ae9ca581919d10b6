#pragma once

#include "db/Recordset.h"

#include <string>
#include <vector>

namespace discaro::explorer {

// One row of the listing. A file's key ends in "id", a directory's does not.
struct ListingRow {
    std::string key;
    std::string text;
    std::string kind;                  // key of its picture
    std::string tag;                   // a file's number, or the index of the tree node that was listed
    std::vector<std::string> subItems; // columns 2 to 9 of a file; none for a directory
};

// What a column of the listing holds, as a number of the row's sub-items from 1.
inline constexpr int kSizeColumn = 1;
inline constexpr int kSortSizeColumn = 2;

bool isFileKey(std::string_view key);

// The row of a directory, from the current row of Directories. Its name is given as stored: the listing shows it in
// upper case behind a blank. Throws as the reading of a field does.
ListingRow directoryRow(db::Recordset& directories, int listedNode);

// The rows of one listing's files, from the rows of Files one after the other.
class FileRows {
public:
    // The recordset outlives this. Throws base::RuntimeError UnknownField when it is none of Files.
    explicit FileRows(db::Recordset& files);

    // The row of the current file. A field that can't be read leaves its place empty; the key's field throws.
    ListingRow row();

private:
    std::string extension(const std::string& fileName);

    db::Field m_number;
    db::Field m_name;
    db::Field m_extension;
    db::Field m_size;
    db::Field m_date;
    db::Field m_attributes;
    db::Field m_icons;
    // A name without a dot takes over what was found in a name before it.
    std::string m_foundExtension;
};

} // namespace discaro::explorer

#pragma once

#include "db/value/Value.h"

#include <string>
#include <string_view>

// What the explorer says.
namespace discaro::explorer {

// Where the disc list can't be filled.
inline constexpr const char* kCatalogueLocked =
    "The catalogue can't be read, because another program has locked it. The list of discs is filled when you come back to this window and that program is done.";
inline constexpr const char* kCatalogueLockedTitle = "Catalogue Locked";

// In place of a listing without rows.
inline constexpr const char* kEmptyDirectory = "This directory is empty";
inline constexpr const char* kNoFiles = "No files in this directory";

// The number of the chosen disc, beside the disc list and at the top of the tree.
std::string discNumberText(std::string_view number);
std::string discNodeText(std::string_view number);

// The status bar: "3 File(s)", whatever the number.
std::string fileCountText(int64_t count);
// A directory's own size, given in kilobytes, in megabytes with two decimals: "Total Size = 1.50 MB".
std::string totalSizeText(const db::Value& kilobytes);
// The sum of the sizes of the selected files in kilobytes, without separators: "File Size = 1536 KB".
std::string fileSizeSumText(double kilobytes);

} // namespace discaro::explorer

#pragma once

#include "db/value/Value.h"

#include <string>

// The texts of the status bar.
namespace discaro::explorer {

// "3 File(s)", whatever the number.
std::string fileCountText(int64_t count);
// A directory's own size, given in kilobytes, in megabytes with two decimals: "Total Size = 1.50 MB".
std::string totalSizeText(const db::Value& kilobytes);
// The sum of the sizes of the selected files in kilobytes, without separators: "File Size = 1536 KB".
std::string fileSizeSumText(double kilobytes);

} // namespace discaro::explorer

#pragma once

#include "db/value/Value.h"

#include <string>
#include <string_view>

// The explorer's number and date texts. They are the same in every country: "," between thousands, "." as the point.
// Halves are rounded away from zero, on the fifteen digits that a number holds.
namespace discaro::explorer {

// Thousands separators and two decimals: "1,234.50". Null gives "", and a text that is no number stays as it is.
std::string standardText(const db::Value& value);

// The standard text without its point and decimals, which are cut and not rounded: 1023.99 gives "1,023". Throws
// base::RuntimeError InvalidValue for null, which has nothing to cut.
std::string wholeText(const db::Value& value);

// A size in kilobytes as a file's row shows it, a whole text of at least "1": "1,536 Kb", and "1 Kb" for an empty file.
std::string fileSizeText(const db::Value& kilobytes);
// The same size in at least twelve digits, rounded, which sorts as text: "000000001536", and at least 1.
std::string fileSizeSortText(const db::Value& kilobytes);

// A count in at least twelve digits in groups of three: "000,000,000,012". Null gives "".
std::string countSortText(const db::Value& count);

// A stored date "MM/dd/yy" as "yy/MM/dd", which sorts right for dates of one century. Also takes four-digit years,
// either order of day and month where only one makes a date, and "yyyy-MM-dd". A text that is no date stays as it is.
std::string dateSortText(std::string_view date);

} // namespace discaro::explorer

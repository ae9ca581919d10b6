#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace discaro::scanner {

// "." and what stands behind the last "." of the whole path; empty when nothing stands there. A file without a "."
// in its name takes the tail of its directory's path, on purpose.
std::string extensionOf(std::string_view path);

// The letters A, H, R, S, D of the attribute bits, in that order.
std::string attributeLetters(unsigned attributes);

// A modification stamp's two fields. With the first blank at place p (from 1) the date is what stands before it and
// the time the last p + 2 characters of the text; without a blank both are empty.
struct StampParts {
    std::string date;
    std::string time;
    bool split = false; // false: the stamp had no blank and the fields stay unset
};
StampParts splitStamp(std::string_view text);

} // namespace discaro::scanner

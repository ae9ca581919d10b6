#pragma once

#include <string>
#include <string_view>

namespace discaro::disc {

// 8-bit text of the 16-bit age as UTF-8. The code page is the number in a version resource's
// translation: 1250 to 1258, 437, 850, 852, 855, 866, 874, 932, 936, 949 and 950 are converted.
// With any other number, and where the bytes are no text of that code page, the rule for text
// without a stated encoding holds.
std::string decodeCodePage(std::string_view bytes, unsigned codePage);

} // namespace discaro::disc

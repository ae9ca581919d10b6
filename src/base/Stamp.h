#pragma once

#include <ctime>
#include <string>

namespace discaro::base {

// A modification stamp as text: "MM/dd/yy hh:mm:ss AM/PM" in local time, two digits everywhere, the hour 01 to 12.
// A stamp at exactly midnight has no time part and no blank: "MM/dd/yy".
std::string stampText(std::time_t stamp);

// The same day in short form: "MM/dd/yy" in local time.
std::string dateText(std::time_t stamp);

} // namespace discaro::base

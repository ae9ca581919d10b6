#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace discaro::db {

// What a field makes of a value that is not of its own type. Each throws DataTypeConversion for what it can't take.

// Rounded half to even; refuses what is not finite or beyond 64 bits.
int64_t integerFrom(double number);
// The whole text, blanks at both ends apart: digits with a sign, or any number, which is rounded.
int64_t integerFrom(std::string_view text);
// Likewise; "." is the point, an exponent may follow.
double doubleFrom(std::string_view text);
// "true" or "false" in any case.
bool booleanFrom(std::string_view text);
// A date and time that exist, as they are stored: "YYYY-MM-DD" or "YYYY-MM-DD HH:MM:SS". Taken in that form or in the
// short one: "MM/dd/yy", or "MM/dd/yyyy", with or without a time behind it, " hh:mm:ss AM" or "PM". Of two digits 80 to
// 99 are years of 1900, all others of 2000.
std::string dateFrom(std::string_view text);
// A stored date in short form; the year has four digits where two would be read as another. A text that is no stored
// date stays as it is.
std::string shortDate(std::string_view stored);

} // namespace discaro::db

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
// The text as it is stored: "YYYY-MM-DD" or "YYYY-MM-DD HH:MM:SS", a date and time that exist.
std::string_view dateFrom(std::string_view text);

} // namespace discaro::db

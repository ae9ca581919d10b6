#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace discaro::base {

// The number at the head of a text. Blanks, tabs and line feeds are skipped wherever they stand, also between
// digits; then an optional sign, digits with at most one decimal point, an optional exponent (E or D). "&H" and
// "&O" begin hexadecimal and octal numbers. Reading stops at the first character that cannot continue the number;
// text that begins with nothing numeric gives 0.
double leadingNumber(std::string_view text);

// A number in general form: up to 15 significant digits, no thousands separator, no blank in front, "1E+15" style
// exponents. Never depends on the locale.
std::string numberText(double number);
std::string numberText(int64_t number);

} // namespace discaro::base

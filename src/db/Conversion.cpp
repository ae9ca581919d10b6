#include "db/Conversion.h"

#include "base/RuntimeError.h"
#include "base/Text.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace discaro::db {

namespace {

[[noreturn]] void refuse(std::string_view what) {
    throw base::RuntimeError(base::ErrorNumber::DataTypeConversion, what);
}

// Without blanks at the ends and without a plus sign, which from_chars does not know.
std::string_view numeral(std::string_view text) {
    text = base::trimBlanks(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    return text;
}

template <typename Number>
bool parseWhole(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

bool parseFinite(std::string_view text, double& number) {
    return parseWhole(text, number) && std::isfinite(number);
}

bool matches(std::string_view text, std::string_view pattern) {
    if (text.size() != pattern.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == '0' ? !digit : text[i] != pattern[i])
            return false;
    }
    return true;
}

int numberAt(std::string_view text, size_t begin, size_t length) {
    int number = 0;
    parseWhole(text.substr(begin, length), number);
    return number;
}

bool dateExists(std::string_view text) {
    using namespace std::chrono;
    const year_month_day date(year(numberAt(text, 0, 4)),
                              month(static_cast<unsigned>(numberAt(text, 5, 2))),
                              day(static_cast<unsigned>(numberAt(text, 8, 2))));
    return date.ok();
}

bool timeExists(std::string_view text) {
    return numberAt(text, 11, 2) < 24 && numberAt(text, 14, 2) < 60 && numberAt(text, 17, 2) < 60;
}

} // namespace

int64_t integerFrom(double number) {
    constexpr double kLimit = 9223372036854775808.0; // 2 to the 63rd
    const double rounded = std::nearbyint(number);
    if (!(rounded >= -kLimit && rounded < kLimit))
        refuse("the number is too large");
    return static_cast<int64_t>(rounded);
}

int64_t integerFrom(std::string_view text) {
    int64_t number = 0;
    if (parseWhole(numeral(text), number))
        return number;
    return integerFrom(doubleFrom(text));
}

double doubleFrom(std::string_view text) {
    double number = 0;
    if (!parseFinite(numeral(text), number))
        refuse("the text is not a number");
    return number;
}

bool booleanFrom(std::string_view text) {
    text = base::trimBlanks(text);
    const bool isTrue = base::equalAscii(text, "true");
    if (!isTrue && !base::equalAscii(text, "false"))
        refuse("the text is neither true nor false");
    return isTrue;
}

std::string_view dateFrom(std::string_view text) {
    text = base::trimBlanks(text);
    const bool withTime = matches(text, "0000-00-00 00:00:00");
    if (!withTime && !matches(text, "0000-00-00"))
        refuse("the text is not a date");
    if (!dateExists(text) || (withTime && !timeExists(text)))
        refuse("there is no such date");
    return text;
}

} // namespace discaro::db

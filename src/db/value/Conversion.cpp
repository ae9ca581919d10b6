#include "db/value/Conversion.h"

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

constexpr std::string_view kDay = "0000-00-00";
constexpr std::string_view kDayAndTime = "0000-00-00 00:00:00";

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
    const year_month_day date(year(numberAt(text, 0, 4)), month(static_cast<unsigned>(numberAt(text, 5, 2))),
                              day(static_cast<unsigned>(numberAt(text, 8, 2))));
    return date.ok();
}

bool timeExists(std::string_view text) {
    return numberAt(text, 11, 2) < 24 && numberAt(text, 14, 2) < 60 && numberAt(text, 17, 2) < 60;
}

std::string_view centuryOf(std::string_view twoDigits) {
    return twoDigits[0] < '8' ? "20" : "19";
}

// " hh:mm:ss AM" as " HH:MM:SS"; an hour that no clock shows stays one.
std::string fullDayTime(std::string_view time) {
    constexpr int kNone = 24;
    const int shown = numberAt(time, 1, 2);
    const int hour = shown < 1 || shown > 12 ? kNone : shown % 12 + (time[10] == 'P' ? 12 : 0);
    return (hour < 10 ? " 0" : " ") + std::to_string(hour) + std::string(time.substr(3, 6));
}

// A text in short form as it is stored; "" for another text.
std::string fromShortForm(std::string_view text) {
    const std::string_view day = text.substr(0, text.find(' '));
    const std::string_view time = text.substr(day.size());
    const bool timed = matches(time, " 00:00:00 AM") || matches(time, " 00:00:00 PM");
    if (!(matches(day, "00/00/00") || matches(day, "00/00/0000")) || (!time.empty() && !timed))
        return {};
    std::string stored(day.size() > 8 ? std::string_view() : centuryOf(day.substr(6)));
    stored.append(day.substr(6)).append("-").append(day.substr(0, 2)).append("-").append(day.substr(3, 2));
    return timed ? stored + fullDayTime(time) : stored;
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

std::string dateFrom(std::string_view text) {
    text = base::trimBlanks(text);
    std::string stored = matches(text, kDay) || matches(text, kDayAndTime) ? std::string(text) : fromShortForm(text);
    if (stored.empty())
        refuse("the text is not a date");
    if (!dateExists(stored) || (stored.size() > kDay.size() && !timeExists(stored)))
        refuse("there is no such date");
    return stored;
}

std::string shortDate(std::string_view stored) {
    const bool withTime = matches(stored, kDayAndTime);
    if (!withTime && !matches(stored, kDay))
        return std::string(stored);
    const std::string century =
        centuryOf(stored.substr(2, 2)) == stored.substr(0, 2) ? "" : std::string(stored.substr(0, 2));
    std::string text(stored.substr(5, 2));
    text.append("/").append(stored.substr(8, 2)).append("/").append(century).append(stored.substr(2, 2));
    if (!withTime)
        return text;
    const int hour = numberAt(stored, 11, 2);
    const int shown = hour % 12 == 0 ? 12 : hour % 12;
    return text.append(shown < 10 ? " 0" : " ")
        .append(std::to_string(shown))
        .append(stored.substr(13, 6))
        .append(hour < 12 ? " AM" : " PM");
}

} // namespace discaro::db

#include "explorer/NumberFormats.h"

#include "base/Number.h"
#include "base/RuntimeError.h"
#include "base/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

namespace discaro::explorer {

namespace {

constexpr int kDecimals = 2;
constexpr int kSignificant = 15;
constexpr size_t kSortDigits = 12;

// The digits of a number, its decimals at the end of them.
struct Digits {
    bool negative = false;
    std::string text; // at least one digit in front of the decimals
};

// The last of the digits goes one up, with what that carries.
void roundUp(std::string& digits) {
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
        if (*digit != '9') {
            ++*digit;
            return;
        }
        *digit = '0';
    }
    digits.insert(digits.begin(), '1');
}

// Halves go away from zero, which is why the library's own rounding does not serve.
Digits digitsOf(double number, int decimals) {
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(number),
                                   std::chars_format::scientific, kSignificant - 1);
    const std::string_view written(buffer.data(), static_cast<size_t>(end.ptr - buffer.data()));
    const size_t mark = written.find('e');
    std::string digits = std::string(1, written[0]).append(written.substr(2, mark - 2));
    int exponent = 0;
    const size_t power = mark + (written[mark + 1] == '+' ? 2 : 1);
    std::from_chars(written.data() + power, written.data() + written.size(), exponent);

    const int wanted = exponent + 1 + decimals;
    if (wanted < 0)
        digits.clear();
    const auto keep = static_cast<size_t>(std::max(wanted, 0));
    const bool up = keep < digits.size() && digits[keep] >= '5';
    digits.resize(keep, '0');
    if (up)
        roundUp(digits);
    const auto least = static_cast<size_t>(decimals) + 1;
    if (digits.size() < least)
        digits.insert(0, least - digits.size(), '0');
    const bool zero = digits.find_first_not_of('0') == std::string::npos;
    return {number < 0 && !zero, digits};
}

std::string grouped(std::string digits) {
    for (auto place = static_cast<std::ptrdiff_t>(digits.size()) - 3; place > 0; place -= 3)
        digits.insert(static_cast<size_t>(place), 1, ',');
    return digits;
}

std::string padded(std::string digits) {
    if (digits.size() < kSortDigits)
        digits.insert(0, kSortDigits - digits.size(), '0');
    return digits;
}

std::string withSign(const Digits& digits, std::string text) {
    if (digits.negative)
        text.insert(text.begin(), '-');
    return text;
}

std::string standardText(double number) {
    if (!std::isfinite(number))
        return base::numberText(number);
    const Digits digits = digitsOf(number, kDecimals);
    const size_t whole = digits.text.size() - kDecimals;
    return withSign(digits, grouped(digits.text.substr(0, whole)) + '.' + digits.text.substr(whole));
}

// The number that a text is, as a whole; none for another text.
std::optional<double> wholeNumber(std::string_view text) {
    const std::string_view trimmed = base::trimBlanks(text);
    double number = 0;
    const auto end = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), number);
    const bool all = end.ec == std::errc() && end.ptr == trimmed.data() + trimmed.size();
    return all ? std::optional(number) : std::nullopt;
}

// Null and a text that is no number have none.
std::optional<double> numberIn(const db::Value& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        return wholeNumber(*text);
    return db::isNull(value) ? std::nullopt : std::optional(db::numberOf(value));
}

std::string withoutDecimals(const std::string& standard) {
    constexpr size_t kCut = 3;
    if (standard.size() < kCut)
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no number to cut");
    return standard.substr(0, standard.size() - kCut);
}

struct Date {
    int year;
    int month;
    int day;

    bool exists() const {
        static constexpr std::array kDays = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        if (month < 1 || month > 12 || day < 1 || day > kDays[static_cast<size_t>(month) - 1])
            return false;
        // Two digits need no century: 00 is 2000, the others are leap years alike in both.
        const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
        return month != 2 || day != 29 || leap;
    }
};

// The numbers of "4/28/99", "04-28-1999" and the like; empty for anything else.
std::vector<int> dateNumbers(std::string_view text) {
    constexpr std::string_view kMarks = "/-.";
    std::vector<int> numbers;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && numbers.size() < 3) {
        int number = 0;
        const auto read = std::from_chars(at, end, number);
        if (read.ec != std::errc() || number < 0 || read.ptr - at > 4)
            return {};
        numbers.push_back(number);
        at = read.ptr;
        if (at != end && numbers.size() < 3 && kMarks.find(*at++) == std::string_view::npos)
            return {};
    }
    return at == end && numbers.size() == 3 ? numbers : std::vector<int>();
}

std::optional<Date> dateOf(std::string_view text) {
    const auto numbers = dateNumbers(base::trimBlanks(text));
    if (numbers.empty())
        return {};
    const int first = numbers[0];
    const int second = numbers[1];
    const int third = numbers[2];
    for (const Date& date : {Date{third, first, second}, Date{third, second, first}, Date{first, second, third}})
        if (date.exists() && date.year <= 9999)
            return date;
    return {};
}

std::string twoDigits(int number) {
    const int last = number % 100;
    return {static_cast<char>('0' + last / 10), static_cast<char>('0' + last % 10)};
}

} // namespace

std::string standardText(const db::Value& value) {
    const auto number = numberIn(value);
    return number ? standardText(*number) : db::textOf(value);
}

std::string wholeText(const db::Value& value) {
    return withoutDecimals(standardText(value));
}

std::string fileSizeText(const db::Value& kilobytes) {
    const std::string standard = standardText(kilobytes);
    const bool less = base::leadingNumber(standard) < 1;
    return withoutDecimals(less ? standardText(1.0) : standard) + " Kb";
}

std::string fileSizeSortText(const db::Value& kilobytes) {
    const double number = numberIn(kilobytes).value_or(0);
    const Digits digits = digitsOf(std::isfinite(number) ? number : 0, 0);
    const bool less = digits.negative || digits.text == "0";
    return padded(less ? "1" : digits.text);
}

std::string countSortText(const db::Value& count) {
    const auto number = numberIn(count);
    if (!number || !std::isfinite(*number))
        return db::textOf(count);
    const Digits digits = digitsOf(*number, 0);
    return withSign(digits, grouped(padded(digits.text)));
}

std::string dateSortText(std::string_view date) {
    const auto read = dateOf(date);
    if (!read)
        return std::string(date);
    return twoDigits(read->year) + '/' + twoDigits(read->month) + '/' + twoDigits(read->day);
}

} // namespace discaro::explorer

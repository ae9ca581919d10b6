#include "base/Number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace discaro::base {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string withoutSpace(std::string_view text) {
    std::string result;
    for (const char c : text)
        if (c != ' ' && c != '\t' && c != '\n')
            result += c;
    return result;
}

// "&H1F" and "&O17"; the caller has seen the '&'.
double prefixedNumber(std::string_view text) {
    if (text.size() < 2)
        return 0;
    const char mark = text[1];
    const int base = mark == 'H' || mark == 'h' ? 16 : mark == 'O' || mark == 'o' ? 8 : 0;
    if (base == 0)
        return 0;
    uint64_t value = 0;
    std::from_chars(text.data() + 2, text.data() + text.size(), value, base);
    return static_cast<double>(value);
}

// The longest head of text that is a decimal number, its exponent mark turned into 'e'.
std::string decimalHead(std::string_view text) {
    std::string head;
    size_t at = 0;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        if (text[at] == '-')
            head += '-';
        ++at;
    }
    bool digits = false;
    bool point = false;
    for (; at < text.size() && (isDigit(text[at]) || (text[at] == '.' && !point)); ++at) {
        point = point || text[at] == '.';
        digits = digits || isDigit(text[at]);
        head += text[at];
    }
    if (!digits)
        return {};
    if (at >= text.size() || std::string_view("EeDd").find(text[at]) == std::string_view::npos)
        return head;
    std::string exponent = "e";
    size_t next = at + 1;
    if (next < text.size() && (text[next] == '-' || text[next] == '+'))
        exponent += text[next++];
    if (next >= text.size() || !isDigit(text[next]))
        return head;
    for (; next < text.size() && isDigit(text[next]); ++next)
        exponent += text[next];
    return head + exponent;
}

// Nearly 0 or beyond all numbers: which of the two tells the place of the first digit that counts.
double outOfRange(std::string_view head) {
    const auto mark = head.find('e');
    const auto digits = head.substr(0, mark);
    const auto point = std::min(digits.find('.'), digits.size());
    const auto first = digits.find_first_of("123456789");
    const auto power = static_cast<double>(point) - static_cast<double>(first);
    const bool raised = mark != std::string_view::npos;
    const bool lowered = raised && head[mark + 1] == '-';
    const double huge = head[0] == '-' ? -HUGE_VAL : HUGE_VAL;
    if (raised && head.size() - mark > 8)
        return lowered ? 0 : huge;
    const double exponent = raised ? std::strtod(std::string(head.substr(mark + 1)).c_str(), nullptr) : 0;
    return exponent + power < 0 ? 0 : huge;
}

} // namespace

double leadingNumber(std::string_view text) {
    const std::string packed = withoutSpace(text);
    if (!packed.empty() && packed[0] == '&')
        return prefixedNumber(packed);
    const std::string head = decimalHead(packed);
    double value = 0;
    const auto result = std::from_chars(head.data(), head.data() + head.size(), value);
    return result.ec == std::errc::result_out_of_range ? outOfRange(head) : value;
}

std::string numberText(double number) {
    if (number == 0)
        return "0";
    std::array<char, 40> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
    std::string text(buffer.data(), result.ptr);
    for (char& c : text)
        if (c == 'e')
            c = 'E';
    return text;
}

std::string numberText(int64_t number) {
    return std::to_string(number);
}

} // namespace discaro::base

#include "base/Stamp.h"

#include <array>

namespace discaro::base {

namespace {

void putTwoDigits(std::string& text, size_t at, int value) {
    text[at] = static_cast<char>('0' + value / 10);
    text[at + 1] = static_cast<char>('0' + value % 10);
}

} // namespace

// Written out by hand: this runs once for each scanned file, and strftime costs as much as the rest of a row.
std::string stampText(std::time_t stamp) {
    std::tm local{};
    if (localtime_r(&stamp, &local) == nullptr)
        return {};
    std::string text = "00/00/00 00:00:00 AM";
    putTwoDigits(text, 0, local.tm_mon + 1);
    putTwoDigits(text, 3, local.tm_mday);
    putTwoDigits(text, 6, (local.tm_year % 100 + 100) % 100);
    if (local.tm_hour == 0 && local.tm_min == 0 && local.tm_sec == 0)
        return text.substr(0, 8);
    putTwoDigits(text, 9, (local.tm_hour + 11) % 12 + 1);
    putTwoDigits(text, 12, local.tm_min);
    putTwoDigits(text, 15, local.tm_sec % 60);
    text[18] = local.tm_hour < 12 ? 'A' : 'P';
    return text;
}

std::string dateText(std::time_t stamp) {
    return stampText(stamp).substr(0, 8);
}

} // namespace discaro::base

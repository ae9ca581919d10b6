#include "disc/medium/DiscTime.h"

#include <chrono>

namespace discaro::disc {

std::time_t secondsOf(const Date& date, int minutesFromGmt) {
    using namespace std::chrono;
    const year_month_day day{year{date.year}, month{date.month}, std::chrono::day{date.day}};
    if (!day.ok() || date.hour > 23 || date.minute > 59 || date.second > 59)
        return 0;
    const auto days = std::time_t{sys_days(day).time_since_epoch().count()};
    const auto clock = std::time_t{date.hour} * 3600 + std::time_t{date.minute} * 60 + date.second;
    return days * 86400 + clock - std::time_t{minutesFromGmt} * 60;
}

namespace {

// An offset out of its range is garbage beside a date that is none, so it counts as GMT.
int minutesOfQuarters(uint8_t byte) {
    const auto quarters = static_cast<int8_t>(byte);
    return quarters >= -48 && quarters <= 56 ? quarters * 15 : 0;
}

// Returns 99999, which is no part of a date, where a byte is no digit.
unsigned digits(Bytes text, size_t at, size_t count) {
    unsigned number = 0;
    for (size_t i = at; i < at + count; ++i) {
        const auto digit = static_cast<unsigned>(byteAt(text, i)) - '0';
        if (digit > 9)
            return 99999;
        number = number * 10 + digit;
    }
    return number;
}

} // namespace

std::time_t recordTime(Bytes stamp) {
    const Date date{1900 + byteAt(stamp, 0), byteAt(stamp, 1), byteAt(stamp, 2),
                    byteAt(stamp, 3),        byteAt(stamp, 4), byteAt(stamp, 5)};
    return secondsOf(date, minutesOfQuarters(byteAt(stamp, 6)));
}

std::time_t digitsTime(Bytes stamp) {
    const auto year = digits(stamp, 0, 4);
    if (year < 1 || year > 9999)
        return 0;
    const Date date{static_cast<int>(year), digits(stamp, 4, 2),  digits(stamp, 6, 2),
                    digits(stamp, 8, 2),    digits(stamp, 10, 2), digits(stamp, 12, 2)};
    return secondsOf(date, minutesOfQuarters(byteAt(stamp, 16)));
}

} // namespace discaro::disc
